#pragma once

#include <functional>
#include <string>

/// Goes through the file tests/<name>, in which each line behind "> " is something to try, lines
/// behind "# " are comments, and all others are what has come of the line above them. Tries
/// everything again and expects the very same file. With MOX_UPDATE_GOLDEN set in the environment
/// the file is written anew instead, for review in the diff.
/// @param attempt takes a line and returns what has come of it, as whole lines
void ExpectSession(const std::string& name,
                   const std::function<std::string(const std::string& line)>& attempt);
