#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/check/MaterialDiff.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* footer =
    R"(The order of nodes, edges and properties does not count, nor how a number is
written. The exit status is 0 if the materials mean the same and 1 if they
differ.

Examples:
  mox diff old/rim.xml new/rim.xml
)";

void Diff(const std::string& before, const std::string& after, const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    const auto differences = Host::DescribeDifferences(Host::ReadMaterialDocument(before),
                                                       Host::ReadMaterialDocument(after), plugins);
    for (const std::string& line : differences)
        std::cout << line << '\n';
    if (!differences.empty())
        throw CLI::RuntimeError(failureStatus);
}

} // namespace

void AddDiffCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("diff", "Say in words how the meaning of two materials differs");
    const auto before = std::make_shared<std::string>();
    const auto after = std::make_shared<std::string>();
    command->add_option("BEFORE", *before, "Material document")->type_name("")->required();
    command->add_option("AFTER", *after, "Material document")->type_name("")->required();
    command->footer(footer);
    command->callback([=, &common] { Diff(*before, *after, common); });
}

} // namespace Mox::Tool
