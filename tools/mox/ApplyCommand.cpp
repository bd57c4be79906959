#include "Commands.h"
#include "LoadPlugins.h"
#include "ReplaceDocument.h"
#include "mox/Text.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/json/ChangeJson.h"
#include "mox/json/JsonText.h"

#include <iostream>

namespace Mox::Tool {

namespace {

using Materials::Compose;

constexpr const char* applyFooter =
    R"(The change is made as a whole or not at all: if one of its steps does not fit,
nothing is written. What was wrong with the material before is no obstacle.
docs/json.md describes the form of a change.

Examples:
  mox apply rim.xml brighter.json
  mox apply rim.xml brighter.json -o brighter.xml
  make_change.py | mox apply rim.xml -
)";

struct ApplyOptions
{
    std::string File;
    std::string Change; ///< "-" for standard input
    std::string Output; ///< empty for the document itself
    bool IsForced = false;
};

/// As much as a change may be long, and a byte more if there is more.
std::string ReadStandardInput()
{
    std::string text(Host::JsonLimits().Bytes + 1, '\0');
    std::cin.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::cin.gcount()));
    return text;
}

/// As messages name the source of a change.
std::string NameOf(const std::string& source)
{
    return source == "-" ? "standard input" : source;
}

Host::GraphChange ReadChange(const std::string& source)
{
    return Host::ParseChangeJson(source == "-" ? ReadStandardInput() : Host::ReadFile(source),
                                 NameOf(source));
}

void Apply(const ApplyOptions& options, const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    const Host::GraphChange change = ReadChange(options.Change);
    Host::MaterialGraph graph(Host::ReadMaterialDocument(options.File), Host::NodeMaker(plugins));
    try {
        graph.Apply(change);
    } catch (const Host::RefusedStep& refusal) {
        throw Host::HostError(Host::Place(NameOf(options.Change)),
                              Compose("/steps/", refusal.Step, " is refused: ", refusal.what()));
    }
    const std::string& output = options.Output.empty() ? options.File : options.Output;
    Host::RequireNoInput(output, {options.Change});
    if (!options.IsForced)
        RequireReplaceable(output);
    Host::WriteIfChanged(output, Host::FormatMaterialDocument(graph.Document()));
}

} // namespace

void AddApplyCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("apply", "Make a change of a material, given as JSON");
    const auto options = std::make_shared<ApplyOptions>();
    command->add_option("FILE", options->File, "Material document")->type_name("")->required();
    command
        ->add_option("CHANGE", options->Change,
                     "File with the change as JSON; - for standard input")
        ->type_name("")
        ->required();
    command
        ->add_option("-o,--output", options->Output,
                     "Write the document to this file and not back to its own")
        ->type_name("FILE");
    command->add_flag("--force", options->IsForced,
                      "Also replace a document that is read-only or has other hard links");
    command->footer(applyFooter);
    command->callback([options, &common] { Apply(*options, common); });
}

} // namespace Mox::Tool
