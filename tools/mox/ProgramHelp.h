#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Mox::Tool {

/// What the command line says of one option or positional argument.
struct ArgumentHelp
{
    std::vector<std::string> Names;   ///< as they are typed; of a positional its placeholder
    std::string Value;                ///< placeholder, such as "DIR"; empty for a flag
    std::vector<std::string> Choices; ///< all values, where they are few
    std::string Default;              ///< value where the option is not given, if the help shows it
    std::string Text;
    bool IsPositional;
    bool IsRequired;
    bool IsRepeated; ///< takes several values or may stand several times
};

/// What the command line says of one command, or of the program as a whole.
struct CommandHelp
{
    std::string Name;
    std::string Text;
    std::vector<ArgumentHelp> Arguments; ///< of a command its own; those of the program go with all
    std::string Footer;                  ///< lines that begin at the left are headings or prose
};

struct ProgramHelp
{
    CommandHelp Program;
    std::vector<CommandHelp> Commands;
};

/// Reads the definition of a command line, so that manual and completions never fall behind it.
ProgramHelp DescribeProgram(const CLI::App& program);

} // namespace Mox::Tool
