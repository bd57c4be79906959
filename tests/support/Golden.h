#pragma once

#include <string>

/// Expects text to equal the content of the file tests/<name>. If the environment variable
/// MOX_UPDATE_GOLDEN is set, writes the file instead, for review in the diff.
void ExpectGolden(const std::string& name, const std::string& text);
