#include "Commands.h"
#include "ProgramHelp.h"
#include "mox/Text.h"

#include <algorithm>
#include <iostream>
#include <sstream>

namespace Mox::Tool {

namespace {

using Materials::Compose;

constexpr const char* manualFooter = R"(Examples:
  mox manual | man -l -
  mox manual > /usr/local/share/man/man1/mox.1
)";

/// Wraps prose at the line length that is customary in manual pages.
std::string Wrap(const std::string& text)
{
    constexpr std::size_t lineLength = 70;
    std::string wrapped;
    std::size_t lineStart = 0;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const bool isFull = wrapped.size() - lineStart + word.size() > lineLength;
        if (!wrapped.empty())
            wrapped += isFull ? '\n' : ' ';
        if (isFull)
            lineStart = wrapped.size();
        wrapped += word;
    }
    return wrapped;
}

/// Escapes a string so that roff prints it unchanged.
std::string Escape(const std::string& text)
{
    std::string escaped;
    bool isLineStart = true;
    for (const char c : text) {
        if (isLineStart && (c == '.' || c == '\''))
            escaped += "\\&"; // prevents a request
        isLineStart = c == '\n';
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else
            escaped += c;
    }
    return escaped;
}

std::string ToUpper(std::string text)
{
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

std::string Bold(const std::string& text)
{
    return Compose("\\fB", Escape(text), "\\fR");
}

std::string Italic(const std::string& text)
{
    return Compose("\\fI", Escape(text), "\\fR");
}

std::string FormatArgument(const ArgumentHelp& argument)
{
    std::string names;
    for (const std::string& name : argument.Names) {
        names += names.empty() ? "" : ", ";
        names += argument.IsPositional ? Italic(name) : Bold(name);
    }
    if (!argument.IsPositional && !argument.Value.empty())
        names += " " + Italic(argument.Value);
    std::string values;
    for (const std::string& choice : argument.Choices)
        values += (values.empty() ? ";\none of\n" : ",\n") + Bold(choice);
    if (!argument.Default.empty())
        values += ";\nthe default is\n" + Bold(argument.Default);
    return Compose(".TP\n", names, "\n", Escape(Wrap(argument.Text)), values, ".\n");
}

std::string FormatSynopsis(const CommandHelp& command)
{
    std::string text = Compose(Bold("mox " + command.Name), " [", Italic("options"), "]");
    for (const ArgumentHelp& argument : command.Arguments) {
        if (!argument.IsPositional)
            continue;
        const std::string name = Compose(Italic(argument.Value), argument.IsRepeated ? "..." : "");
        text += argument.IsRequired ? " " + name : Compose(" [", name, "]");
    }
    return text + "\n";
}

/// Formats headings with formatHeading, keeps indented lines as they are, and treats other lines as
/// prose.
template <class FormatHeading>
std::string FormatFooter(const std::string& footer, FormatHeading formatHeading)
{
    std::string text;
    std::istringstream lines(footer);
    bool isLiteral = false;
    bool isNewParagraph = true;
    const auto endLiteral = [&] {
        text += isLiteral ? ".fi\n.RE\n" : "";
        isLiteral = false;
    };
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) {
            endLiteral();
            isNewParagraph = true;
        } else if (line.starts_with(' ')) {
            text += isLiteral ? "" : ".RS 2\n.nf\n";
            isLiteral = true;
            text +=
                Escape(line.substr(std::min<std::size_t>(2, line.find_first_not_of(' ')))) + "\n";
        } else if (line.ends_with(':')) {
            text += formatHeading(line.substr(0, line.size() - 1));
            isNewParagraph = false;
        } else {
            text += isNewParagraph ? ".PP\n" : "";
            text += Escape(line) + "\n";
            isNewParagraph = false;
        }
    }
    endLiteral();
    return text;
}

std::string FormatCommand(const CommandHelp& command)
{
    std::string text = Compose(".SS ", Bold(command.Name), "\n", FormatSynopsis(command), ".PP\n",
                               Escape(Wrap(command.Text)), ".\n");
    for (const ArgumentHelp& argument : command.Arguments)
        text += FormatArgument(argument);
    return text + FormatFooter(command.Footer, [](const std::string& heading) {
               return Compose(".PP\n", Bold(heading), "\n");
           });
}

std::string FormatManualPage(const ProgramHelp& help, const std::string& version)
{
    const CommandHelp& program = help.Program;
    std::string text =
        Compose(".TH ", ToUpper(program.Name), " 1 \"\" \"", program.Name, " ", version,
                "\" \"User Commands\"\n.SH NAME\n", program.Name, " \\- ",
                Escape(Wrap(program.Text)), "\n.SH SYNOPSIS\n", Bold(program.Name), " [",
                Italic("options"), "] ", Italic("command"), " ...\n.SH OPTIONS\n");
    for (const ArgumentHelp& argument : program.Arguments)
        text += FormatArgument(argument);
    text += ".SH COMMANDS\n";
    for (const CommandHelp& command : help.Commands)
        text += FormatCommand(command);
    return text + FormatFooter(program.Footer, [](const std::string& heading) {
               return Compose(".SH ", ToUpper(Escape(heading)), "\n");
           });
}

} // namespace

void AddManualCommand(CLI::App& program)
{
    auto* command = program.add_subcommand("manual", "Print the manual page of this program");
    command->footer(manualFooter);
    command->callback(
        [&program] { std::cout << FormatManualPage(DescribeProgram(program), MOX_VERSION); });
}

} // namespace Mox::Tool
