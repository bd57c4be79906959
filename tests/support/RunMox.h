#pragma once

#include <string>

struct Outcome
{
    int Status;
    std::string Text; ///< standard output and standard error
};

/// Runs the program in the folder of the tests.
/// @param arguments as a shell reads them
/// @param environment variables to set, such as "A=b"
Outcome RunMox(const std::string& arguments, const std::string& environment = "");

/// Runs a command of the shell.
Outcome RunShell(const std::string& command);
