#include "Commands.h"
#include "DocumentSource.h"
#include "LoadPlugins.h"
#include "mox/document/MaterialDiff.h"
#include "mox/host/Excerpt.h"
#include "mox/json/RecordJson.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr int differentStatus = 1;
constexpr int troubleStatus = 2; ///< as in other comparison programs

constexpr const char* diffFooter =
    R"(The order of nodes, edges and properties and the notation of numbers are
ignored. The exit status is 0 if the materials are equivalent, 1 if they
differ, and 2 if one of them cannot be read.

Examples:
  mox diff old/rim.xml new/rim.xml
  git show HEAD:rim.xml | mox diff - rim.xml
)";

struct DiffOptions
{
    std::string Before;
    std::string After;
    bool IsJson = false;
};

std::vector<Host::MaterialDifference> FindDifferences(const DiffOptions& options,
                                                      const CommonOptions& common)
{
    try {
        return Host::FindDifferences(ReadDocument(options.Before), ReadDocument(options.After),
                                     LoadPlugins(common));
    } catch (const std::exception& error) {
        std::cerr << "mox: " << Host::MessageLine(error.what()) << '\n';
        throw CLI::RuntimeError(troubleStatus);
    }
}

void Diff(const DiffOptions& options, const CommonOptions& common)
{
    RequireOneStandardInput(options.Before, options.After);
    const std::vector<Host::MaterialDifference> differences = FindDifferences(options, common);
    if (options.IsJson) {
        std::cout << Host::FormatDifferencesAsJson(differences);
    } else {
        for (const Host::MaterialDifference& difference : differences)
            std::cout << Host::MessageLine(difference.Text) << '\n';
    }
    if (!differences.empty())
        throw CLI::RuntimeError(differentStatus);
}

} // namespace

void AddDiffCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("diff", "Describe the differences between two materials");
    const auto options = std::make_shared<DiffOptions>();
    AddDocument(*command, "BEFORE", options->Before);
    AddDocument(*command, "AFTER", options->After);
    command->add_flag("--json", options->IsJson, "Print the differences as JSON");
    command->footer(diffFooter);
    command->callback([options, &common] { Diff(*options, common); });
}

} // namespace Mox::Tool
