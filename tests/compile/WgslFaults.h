#pragma once

#include <string>
#include <vector>

/// Finds constructs in a WGSL program that the base language does not allow, although browsers
/// accept them:
///     - stores to several components
///     - pointers to components, elements or members
///     - names with a double underscore
/// @returns a message for each, with the statement; the program must have one statement per line
std::vector<std::string> FindWgslFaults(const std::string& text);
