#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The bytes of a file, which must be there.
std::string ReadText(const std::filesystem::path& file);

/// The documents of the examples, of which there are some.
std::vector<std::filesystem::path> ExampleDocuments();
