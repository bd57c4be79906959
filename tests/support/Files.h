#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Reads a file, which must exist.
std::string ReadText(const std::filesystem::path& file);

/// The documents of the examples; at least one.
std::vector<std::filesystem::path> ExampleDocuments();
