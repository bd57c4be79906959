#pragma once

#include <functional>
#include <optional>
#include <string>

/// Tries something and returns what has come of it, as whole lines; nothing if the rest of the
/// session cannot be had here.
using SessionAttempt = std::function<std::optional<std::string>(const std::string& tried)>;

/// Goes through the file tests/<name>, which has lines of prose ("# ") and things to try ("$ ",
/// further lines of one with "> "); all other lines are what has come of the thing above them.
/// Tries everything again and expects the very same file. With MOX_UPDATE_GOLDEN set in the
/// environment the file is written anew instead, for review in the diff.
void ExpectSession(const std::string& name, const SessionAttempt& attempt);
