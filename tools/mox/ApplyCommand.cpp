#include "Commands.h"
#include "DocumentSource.h"
#include "LoadPlugins.h"
#include "mox/Text.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/json/ChangeJson.h"

#include <iostream>

namespace Mox::Tool {

namespace {

using Materials::Compose;

constexpr const char* applyFooter =
    R"(The change is applied completely or not at all: if one of its steps is invalid,
nothing is written. Existing problems of the material do not prevent a change.
docs/json.md describes the format of a change.

Examples:
  mox apply rim.xml brighter.json
  mox apply rim.xml brighter.json -o brighter.xml
  make_change.py | mox apply rim.xml -
  mox apply - brighter.json <rim.xml | mox check -
)";

struct ApplyOptions
{
    std::string File;
    std::string Change;
    std::string Output; ///< if empty, the document itself or standard output
    bool IsForced = false;
};

void Apply(const ApplyOptions& options, const CommonOptions& common)
{
    RequireOneStandardInput(options.File, options.Change);
    const Host::PluginSet plugins = LoadPlugins(common);
    const Host::GraphChange change =
        Host::ParseChangeJson(ReadSource(options.Change), SourceName(options.Change));
    Host::MaterialDocument document =
        Host::ParseMaterialDocument(SourceName(options.File), ReadReplacedSource(options.File));
    Host::MaterialGraph graph(std::move(document), Host::NodeMaker(plugins));
    try {
        graph.Apply(change);
    } catch (const Host::RefusedStep& refusal) {
        throw Host::HostError(Host::Place(SourceName(options.Change)),
                              Compose("/steps/", refusal.Step, " is refused: ", refusal.what()));
    }
    const std::string text = Host::FormatMaterialDocument(graph.Document());
    if (IsStandardInput(options.File) && options.Output.empty()) {
        std::cout << text;
        return;
    }
    const std::string& output = options.Output.empty() ? options.File : options.Output;
    Host::RequireNoInput(output, {options.Change});
    if (!options.IsForced)
        RequireReplaceable(output);
    Host::WriteIfChanged(output, text);
}

} // namespace

void AddApplyCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("apply", "Apply a change in JSON format to a material");
    const auto options = std::make_shared<ApplyOptions>();
    AddDocument(*command, "FILE", options->File);
    command
        ->add_option("CHANGE", options->Change, "JSON file with the change; - for standard input")
        ->type_name("")
        ->required();
    command
        ->add_option("-o,--output", options->Output,
                     "Write the document to this file instead of to FILE, or instead of to "
                     "standard output if FILE is -")
        ->type_name("FILE");
    command->add_flag("--force", options->IsForced,
                      "Also replace a document that is read-only or has other hard links");
    command->footer(applyFooter);
    command->callback([options, &common] { Apply(*options, common); });
}

} // namespace Mox::Tool
