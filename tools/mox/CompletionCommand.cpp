#include "Commands.h"
#include "ProgramHelp.h"
#include "mox/Text.h"

#include <iostream>
#include <string_view>

namespace Mox::Tool {

namespace {

using Materials::Compose;
using Words = std::vector<std::string>;

constexpr const char* completionFooter = R"(Examples:
  source <(mox completion bash)
  mox completion bash > ~/.local/share/bash-completion/completions/mox
  mox completion zsh > ~/.zfunc/_mox
  mox completion fish > ~/.config/fish/completions/mox.fish
)";

std::string Join(const Words& words, const char* separator)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

bool IsFile(const ArgumentHelp& argument)
{
    return argument.Value.starts_with("FILE");
}

bool IsFolder(const ArgumentHelp& argument)
{
    return argument.Value.starts_with("DIR");
}

bool IsValueOption(const ArgumentHelp& argument)
{
    return !argument.IsPositional && !argument.Value.empty();
}

Words CommandNames(const ProgramHelp& help)
{
    Words names;
    for (const CommandHelp& command : help.Commands)
        names.push_back(command.Name);
    return names;
}

Words OptionNames(const CommandHelp& command)
{
    Words names;
    for (const ArgumentHelp& argument : command.Arguments) {
        if (!argument.IsPositional)
            names.insert(names.end(), argument.Names.begin(), argument.Names.end());
    }
    return names;
}

/// Escapes quotes and special characters for use between single quotes.
std::string Escape(const std::string& text, std::string_view specials, const char* escapedQuote)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '\'')
            escaped += escapedQuote;
        else
            escaped += specials.find(c) == std::string_view::npos ? std::string(1, c)
                                                                  : std::string{'\\', c};
    }
    return escaped;
}

/// The arguments of compgen that list the possible values of an argument.
std::string BashSource(const ArgumentHelp& argument)
{
    if (!argument.Choices.empty())
        return Compose("-W '", Join(argument.Choices, " "), "'");
    if (IsFile(argument))
        return "-f";
    return IsFolder(argument) ? "-d" : "";
}

std::string BashCommandCase(const CommandHelp& command, const Words& programOptions)
{
    Words options = OptionNames(command);
    options.insert(options.end(), programOptions.begin(), programOptions.end());
    std::string source;
    for (const ArgumentHelp& argument : command.Arguments) {
        if (argument.IsPositional)
            source = BashSource(argument);
    }
    return Compose("    ", command.Name, ") options='", Join(options, " "), "' source=(", source,
                   ") ;;\n");
}

/// Generates the cases that complete the values of a command's options by the previous word.
std::string BashValueCases(const CommandHelp& command, const std::string& pattern)
{
    std::string text;
    for (const ArgumentHelp& argument : command.Arguments) {
        if (!IsValueOption(argument))
            continue;
        Words patterns;
        for (const std::string& name : argument.Names)
            patterns.push_back(Compose(pattern, ":", name));
        text += Compose("    ", Join(patterns, " | "), ") options= source=(", BashSource(argument),
                        ") ;;\n");
    }
    return text;
}

std::string ZshEscape(const std::string& text)
{
    return Escape(text, "[]:\\", "'\\''");
}

std::string ZshAction(const ArgumentHelp& argument)
{
    if (!argument.Choices.empty())
        return Compose("(", Join(argument.Choices, " "), ")");
    if (IsFile(argument))
        return "_files";
    return IsFolder(argument) ? "_files -/" : " ";
}

/// Formats an argument in the syntax of _arguments.
std::string ZshArgument(const ArgumentHelp& argument)
{
    const std::string value =
        argument.Value.empty() ? "" : Compose(":", argument.Value, ":", ZshAction(argument));
    if (argument.IsPositional)
        return Compose("'", argument.IsRepeated ? "*" : "1", value, "'");
    const std::string names = argument.Names.size() == 1
                                  ? argument.Names.front()
                                  : Compose("{", Join(argument.Names, ","), "}");
    const std::string exclusion =
        argument.IsRepeated ? "*" : Compose("(", Join(argument.Names, " "), ")");
    return Compose("'", exclusion, "'", names, "'[", ZshEscape(argument.Text), "]", value, "'");
}

std::string ZshArguments(const CommandHelp& command, const char* indent)
{
    std::string text;
    for (const ArgumentHelp& argument : command.Arguments)
        text += Compose(" \\\n", indent, ZshArgument(argument));
    return text;
}

std::string FishEscape(const std::string& text)
{
    return Escape(text, "\\", "\\'");
}

std::string FishArgument(const ArgumentHelp& argument, const std::string& condition)
{
    std::string text = "complete -c mox" + condition;
    if (!argument.IsPositional) {
        for (const std::string& name : argument.Names)
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        text += Compose(" -d '", FishEscape(argument.Text), "'");
    }
    if (IsFile(argument))
        text += argument.IsPositional ? " -F" : " -r -F";
    else if (IsFolder(argument))
        text += " -x -a '(__fish_complete_directories)'";
    else if (!argument.Choices.empty())
        text += Compose(" -x -a '", Join(argument.Choices, " "), "'");
    else if (!argument.Value.empty())
        text += " -x";
    return text + "\n";
}

std::string FormatBashCompletion(const ProgramHelp& help)
{
    const Words programOptions = OptionNames(help.Program);
    Words valueOptions;
    for (const ArgumentHelp& argument : help.Program.Arguments) {
        if (IsValueOption(argument))
            valueOptions.insert(valueOptions.end(), argument.Names.begin(), argument.Names.end());
    }
    std::string commandCases;
    std::string valueCases = BashValueCases(help.Program, "*");
    for (const CommandHelp& command : help.Commands) {
        commandCases += BashCommandCase(command, programOptions);
        valueCases += BashValueCases(command, command.Name);
    }
    return Compose(R"(# Completes the command line of mox in bash; printed by "mox completion bash".
_mox()
{
    local word=${COMP_WORDS[COMP_CWORD]} command= options= i
    local -a source=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        )",
                   Join(valueOptions, " | "), R"() ((++i)) ;;
        -*) ;;
        *) command=${COMP_WORDS[i]}; break ;;
        esac
    done
    case $command in
    '') options=')",
                   Join(programOptions, " "), "' source=(-W '", Join(CommandNames(help), " "),
                   "') ;;\n", commandCases, R"(    esac
    case $command:${COMP_WORDS[COMP_CWORD - 1]} in
)",
                   valueCases, R"(    esac
    [[ $options && $word == -* ]] && source=(-W "$options")
    COMPREPLY=()
    ((${#source[@]})) || return 0
    mapfile -t COMPREPLY < <(compgen "${source[@]}" -- "$word")
    [[ ${source[0]} == -W ]] || compopt -o filenames 2>/dev/null
    return 0
}
complete -F _mox mox
)");
}

std::string FormatZshCompletion(const ProgramHelp& help)
{
    std::string commands;
    std::string cases;
    for (const CommandHelp& command : help.Commands) {
        commands += Compose("            ", command.Name, ":'", ZshEscape(command.Text), "'\n");
        cases += Compose("        ", command.Name, ")\n            _arguments",
                         ZshArguments(command, "                "),
                         ZshArguments(help.Program, "                "), " ;;\n");
    }
    return Compose(R"(#compdef mox
# Completes the command line of mox in zsh; printed by "mox completion zsh".
_mox()
{
    local curcontext=$curcontext state line
    local -a commands
    typeset -A opt_args
    _arguments -C)",
                   ZshArguments(help.Program, "        "), R"( \
        '1: :->command' \
        '*:: :->argument'
    case $state in
    command)
        commands=(
)",
                   commands, R"(        )
        _describe command commands ;;
    argument)
        case $line[1] in
)",
                   cases, R"(        esac ;;
    esac
}
if [[ $funcstack[1] == _mox ]]; then _mox "$@"; else compdef _mox mox; fi
)");
}

std::string FormatFishCompletion(const ProgramHelp& help)
{
    std::string text = "# Completes the command line of mox in fish; printed by \"mox completion "
                       "fish\".\ncomplete -c mox -f\n";
    for (const ArgumentHelp& argument : help.Program.Arguments)
        text += FishArgument(argument, "");
    for (const CommandHelp& command : help.Commands) {
        text += Compose("complete -c mox -n __fish_use_subcommand -a ", command.Name, " -d '",
                        FishEscape(command.Text), "'\n");
    }
    for (const CommandHelp& command : help.Commands) {
        for (const ArgumentHelp& argument : command.Arguments) {
            text += FishArgument(argument,
                                 Compose(" -n '__fish_seen_subcommand_from ", command.Name, "'"));
        }
    }
    return text;
}

} // namespace

void AddCompletionCommand(CLI::App& program)
{
    auto* command = program.add_subcommand("completion", "Print a completion script for a shell");
    auto shell = std::make_shared<std::string>();
    command->add_option("SHELL", *shell, "The shell")
        ->type_name("")
        ->required()
        ->check(CLI::IsMember({"bash", "fish", "zsh"}));
    command->footer(completionFooter);
    command->callback([shell, &program] {
        const ProgramHelp help = DescribeProgram(program);
        if (*shell == "bash")
            std::cout << FormatBashCompletion(help);
        else if (*shell == "fish")
            std::cout << FormatFishCompletion(help);
        else
            std::cout << FormatZshCompletion(help);
    });
}

} // namespace Mox::Tool
