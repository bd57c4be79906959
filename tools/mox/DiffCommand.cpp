#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/check/MaterialDiff.h"
#include "mox/host/Excerpt.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr int differentStatus = 1;
constexpr int troubleStatus = 2; ///< as people and scripts know it from other comparing programs

constexpr const char* diffFooter =
    R"(The order of nodes, edges and properties does not count, nor how a number is
written. The exit status is 0 if the materials mean the same, 1 if they differ
and 2 if one of them cannot be read.

Examples:
  mox diff old/rim.xml new/rim.xml
)";

std::vector<std::string> FindDifferences(const std::string& before, const std::string& after,
                                         const CommonOptions& common)
{
    try {
        return Host::DescribeDifferences(Host::ReadMaterialDocument(before),
                                         Host::ReadMaterialDocument(after), LoadPlugins(common));
    } catch (const std::exception& error) {
        std::cerr << "mox: " << Host::MessageLine(error.what()) << '\n';
        throw CLI::RuntimeError(troubleStatus);
    }
}

void Diff(const std::string& before, const std::string& after, const CommonOptions& common)
{
    const std::vector<std::string> differences = FindDifferences(before, after, common);
    for (const std::string& line : differences)
        std::cout << Host::MessageLine(line) << '\n';
    if (!differences.empty())
        throw CLI::RuntimeError(differentStatus);
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
    command->footer(diffFooter);
    command->callback([=, &common] { Diff(*before, *after, common); });
}

} // namespace Mox::Tool
