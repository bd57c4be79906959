#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Mox::Tool {

/// The documentation of an option or positional argument.
struct ArgumentHelp
{
    std::vector<std::string> Names;   ///< as typed; the placeholder if positional
    std::string Value;                ///< placeholder, such as "DIR"; empty for a flag
    std::vector<std::string> Choices; ///< all values, if there are few
    std::string Default;              ///< default value, if shown in the help
    std::string Text;
    bool IsPositional;
    bool IsRequired;
    bool IsRepeated; ///< accepts several values or may be repeated
};

/// The documentation of a command, or of the program as a whole.
struct CommandHelp
{
    std::string Name;
    std::string Text;
    std::vector<ArgumentHelp> Arguments; ///< of the command; the program's apply to all
    std::string Footer;                  ///< lines without indentation are headings or prose
};

struct ProgramHelp
{
    CommandHelp Program;
    std::vector<CommandHelp> Commands;
};

/// Extracts the documentation from a command line, without hidden commands, so that manual and
/// completions are always up to date.
ProgramHelp DescribeProgram(const CLI::App& program);

} // namespace Mox::Tool
