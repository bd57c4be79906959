#include "Commands.h"
#include "ManualPage.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* manualFooter = R"(Examples:
  mox manual | man -l -
  mox manual > /usr/local/share/man/man1/mox.1
)";

} // namespace

void AddManualCommand(CLI::App& program)
{
    auto* command = program.add_subcommand("manual", "Print the manual page of this program");
    command->footer(manualFooter);
    command->callback(
        [&program] { std::cout << FormatManualPage(DescribeProgram(program), MOX_VERSION); });
}

} // namespace Mox::Tool
