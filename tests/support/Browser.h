#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>

/// Quotes a path for a shell.
std::string Quoted(const std::filesystem::path& path);

/// Runs a shell command.
/// @param log file that receives its output
/// @throws std::runtime_error with its output if it fails
void RunCommand(const std::string& command, const std::filesystem::path& log);

/// Whether Node.js and Chromium are installed.
bool HasBrowser();

/// Sends a request to a headless browser with software rendering. The page is
/// tests/languages/browser/draw.html, which describes the request, or "index.html" of a folder.
/// @returns one result per run
/// @throws std::runtime_error if it does not respond
nlohmann::json AskBrowser(const nlohmann::json& request, const std::filesystem::path& page = {});
