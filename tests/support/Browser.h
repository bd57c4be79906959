#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>

/// A path as a shell reads it.
std::string Quoted(const std::filesystem::path& path);

/// Runs a command of a shell.
/// @param log file that gets what it prints
/// @throws std::runtime_error with what it printed if it fails
void RunCommand(const std::string& command, const std::filesystem::path& log);

/// Whether Node.js and Chromium are installed.
bool HasBrowser();

/// Lets a headless browser that renders in software work on a request. The page is
/// tests/languages/browser/draw.html, which describes the request, or "index.html" of a folder.
/// @returns its answers, one for each run
/// @throws std::runtime_error if it does not answer
nlohmann::json AskBrowser(const nlohmann::json& request, const std::filesystem::path& page = {});
