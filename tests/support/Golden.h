#pragma once

#include <string>

/// Expects text to be what the file tests/<name> holds. With MOX_UPDATE_GOLDEN set in the
/// environment the file is written instead, for review in the diff.
void ExpectGolden(const std::string& name, const std::string& text);
