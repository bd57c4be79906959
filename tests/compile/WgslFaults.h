#pragma once

#include <string>
#include <vector>

/// Finds constructs in a WGSL program that the base language does not allow, although some browsers
/// accept them:
///     - stores to several components
///     - pointers to components, elements or members
///     - two pointers to the same variable in one call
///     - constant expressions whose value is infinite, NaN or undefined
///     - derivatives, or texture reads that compute them, in non-uniform control flow without the
///       directive that allows them
///     - names with a double underscore
/// @returns a message for each, with the statement; the program must be formatted as ours are: one
///          statement per line, indented by tabs
std::vector<std::string> FindWgslFaults(const std::string& text);
