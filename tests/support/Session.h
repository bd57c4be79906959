#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Executes a command and returns its result as complete lines, or nothing if the rest of the
/// session is not supported here.
using SessionAttempt = std::function<std::optional<std::string>(const std::string& tried)>;

/// The names of the files in tests/<room>/sessions, without their extension, in order.
std::vector<std::string> SessionNames(const std::string& room);

/// Runs the file tests/<name>, which contains comments ("# ") and commands ("$ ", continued by ">
/// "); all other lines are the result of the command above them. Executes every command again and
/// expects exactly the same file. If the environment variable MOX_UPDATE_GOLDEN is set, writes the
/// file instead, for review in the diff.
void ExpectSession(const std::string& name, const SessionAttempt& attempt);
