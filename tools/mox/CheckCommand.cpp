#include "Commands.h"
#include "DocumentSource.h"
#include "LoadEnvironment.h"
#include "LoadPlugins.h"
#include "Targets.h"
#include "mox/check/EnvironmentCheck.h"
#include "mox/check/MaterialCheck.h"
#include "mox/check/NodeFileCheck.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/json/ProblemReport.h"

#include <iostream>
#include <utility>

namespace Mox::Tool {

namespace {

constexpr const char* checkFooter =
    R"(A folder stands for all materials in it and in its subfolders, in .xml and .mtlx
files. All problems of a material are reported at once. With --nodes, the node
files in the given folders are also checked, and with --environment, the given
environment. Neither option requires a material. The exit status is 1 if there
is an error, or a warning with --strict, and 0 otherwise.

Examples:
  mox check rim.xml
  mox check materials --strict
  make_material.py | mox check -
  mox check --nodes nodes
  mox check --environment studio
  mox check materials --sarif >problems.sarif
)";

struct CheckOptions
{
    std::vector<std::string> Files;
    std::string Environment;
    bool IsJson = false;
    bool IsSarif = false;
    bool IsStrict = false;
};

std::string Format(const std::vector<Host::Problem>& problems, const CheckOptions& options)
{
    if (options.IsJson)
        return Host::FormatProblemsAsJson(problems);
    if (options.IsSarif)
        return Host::FormatProblemsAsSarif(problems, MOX_VERSION);
    return Host::FormatProblemsAsText(problems);
}

Host::ProblemList FindProblems(const CheckOptions& options, const CommonOptions& common)
{
    const auto materials = FindDocuments(options.Files, 1);
    const Host::PluginSet plugins = LoadPlugins(common);
    const auto targetCheck = MakeTargetCheck();
    Host::ProblemList problems;
    Host::Environment environment;
    try {
        environment = LoadEnvironment(options.Environment);
    } catch (const Host::HostError& error) {
        problems.Fail("environment-file", error);
        return problems;
    }
    if (!options.Environment.empty())
        Host::CheckEnvironment(environment, problems);
    Host::CheckNodeFiles(common.NodeFolders, plugins, environment, problems);
    for (const Host::MaterialFile& material : materials) {
        Host::ProblemList found;
        Host::MaterialDocument document = ReadDocument(material.Document, found);
        const auto graph = Host::OpenMaterial(std::move(document), plugins, found);
        Host::CheckMaterial(graph, SourceName(material.Document), environment, targetCheck.get(),
                            found);
        problems.Append(found);
    }
    return problems;
}

void Check(const CheckOptions& options, const CommonOptions& common)
{
    if (options.Files.empty() && common.NodeFolders.empty() && options.Environment.empty())
        throw CLI::RequiredError("FILE");
    const Host::ProblemList problems = FindProblems(options, common);
    std::cout << Format(problems.Problems(), options);
    if (problems.HasErrors() || (options.IsStrict && !problems.Problems().empty()))
        throw CLI::RuntimeError(failureStatus);
}

} // namespace

void AddCheckCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("check", "Find all problems of materials");
    const auto options = std::make_shared<CheckOptions>();
    AddDocuments(*command, options->Files);
    auto* json = command->add_flag("--json", options->IsJson, "Print the problems as JSON");
    command
        ->add_flag("--sarif", options->IsSarif,
                   "Print a SARIF log for build systems and code review")
        ->excludes(json);
    command->add_flag("--strict", options->IsStrict, "Treat warnings as errors");
    AddEnvironmentOption(*command, options->Environment);
    command->footer(checkFooter);
    command->callback([options, &common] { Check(*options, common); });
}

} // namespace Mox::Tool
