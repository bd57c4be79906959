#include "Commands.h"
#include "CompletionScripts.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* completionFooter = R"(Examples:
  source <(mox completion bash)
  mox completion bash > ~/.local/share/bash-completion/completions/mox
  mox completion zsh > ~/.zfunc/_mox
  mox completion fish > ~/.config/fish/completions/mox.fish
)";

} // namespace

void AddCompletionCommand(CLI::App& program)
{
    auto* command = program.add_subcommand(
        "completion", "Print a script by which a shell completes the command line of this program");
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
