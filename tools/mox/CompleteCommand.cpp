#include "Commands.h"
#include "LoadPlugins.h"
#include "ProgramHelp.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <string_view>

namespace Mox::Tool {

namespace {

/// Reads the words of an incomplete command line and prints what the next word can be: one
/// candidate per line, with a tab and a description where there is one. The line ":files" or
/// ":folders" means that the shell should add the names of files or folders.
class Completion
{
public:
    /// @param common must outlive the completion
    Completion(const ProgramHelp& help, const CommonOptions& common)
        : _common(common), _commands(help.Commands), _arguments(help.Program.Arguments)
    {}

    void Read(const std::string& word)
    {
        if (_option)
            _option.reset(); // the word is its value
        else if (word.starts_with('-') && word != "-")
            ReadOption(word);
        else if (_hasCommand)
            ++_positionalCount;
        else
            ReadCommand(word);
    }

    /// @param start what has been typed of the next word; the shell selects the candidates that
    ///        begin with it
    void Print(const std::string& start) const
    {
        if (_option)
            PrintValues(*_option);
        else if (start.starts_with('-'))
            PrintOptions();
        else if (_hasCommand)
            PrintPositional();
        else
            PrintCommands();
    }

private:
    void ReadOption(const std::string& name)
    {
        for (const ArgumentHelp& argument : _arguments) {
            if (!argument.Value.empty() && std::ranges::count(argument.Names, name) > 0)
                _option = argument;
        }
    }

    void ReadCommand(const std::string& name)
    {
        _hasCommand = true;
        for (const CommandHelp& command : _commands) {
            if (command.Name == name)
                _arguments.insert(_arguments.begin(), command.Arguments.begin(),
                                  command.Arguments.end());
        }
    }

    void PrintCommands() const
    {
        for (const CommandHelp& command : _commands)
            std::cout << command.Name << '\t' << command.Text << '\n';
    }

    void PrintOptions() const
    {
        for (const ArgumentHelp& argument : _arguments) {
            for (const std::string& name : argument.Names) {
                if (!argument.IsPositional)
                    std::cout << name << '\t' << argument.Text << '\n';
            }
        }
    }

    void PrintPositional() const
    {
        std::size_t place = 0;
        for (const ArgumentHelp& argument : _arguments) {
            if (argument.IsPositional && (place++ == _positionalCount || argument.IsRepeated))
                return PrintValues(argument);
        }
    }

    void PrintValues(const ArgumentHelp& argument) const
    {
        constexpr std::string_view filePlaceholders[] = {"FILE", "BEFORE", "AFTER", "CHANGE",
                                                         "MESH"};
        if (std::ranges::any_of(filePlaceholders, [&](std::string_view placeholder) {
                return argument.Value.starts_with(placeholder);
            }))
            std::cout << ":files\n";
        if (argument.Value.starts_with("DIR"))
            std::cout << ":folders\n";
        if (argument.Value == "TYPE")
            PrintTypes();
        for (const std::string& choice : argument.Choices)
            std::cout << choice << '\n';
    }

    void PrintTypes() const
    {
        const Host::PluginSet plugins = LoadPlugins(_common);
        for (const Host::Plugin& plugin : plugins.Plugins()) {
            for (const Host::PluginType& type : plugin.Types()) {
                if (type.Listed)
                    std::cout << type.TypeName << '\t' << type.Label << '\n';
            }
        }
    }

    const CommonOptions& _common;
    std::vector<CommandHelp> _commands;
    std::vector<ArgumentHelp> _arguments; ///< of the command, if it has been read, and the program
    std::optional<ArgumentHelp> _option;  ///< expects its value as the next word
    bool _hasCommand = false;
    std::size_t _positionalCount = 0;
};

} // namespace

void AddCompleteCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("complete", "Print how a command line can continue");
    command->group(""); // hides it, because only shells need it
    auto words = std::make_shared<std::vector<std::string>>();
    command->add_option("WORD", *words, "The command line without the program, after --")
        ->type_name("")
        ->required();
    command->callback([words, &program, &common] {
        Completion completion(DescribeProgram(program), common);
        const std::string start = words->back();
        words->pop_back();
        for (const std::string& word : *words)
            completion.Read(word);
        completion.Print(start);
    });
}

} // namespace Mox::Tool
