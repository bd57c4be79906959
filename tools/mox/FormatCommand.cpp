#include "Commands.h"
#include "DocumentSource.h"
#include "LoadPlugins.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/HostError.h"
#include "mox/layout/MaterialLayout.h"

#include <iostream>
#include <optional>

namespace Mox::Tool {

namespace {

constexpr const char* formatFooter =
    R"(Formatting is stable: writing a canonical document again does not change it,
and changing a value changes one line. Nothing in a document is lost. With
--check, the exit status is 1 if a document is not canonical. A document
that cannot be read does not stop the others. A document that is read-only
or has other hard links is written only with --force: it is replaced, and
its other names keep the old content. With --tidy, the nodes are also
arranged in columns from left to right. A document from standard input goes
to standard output. A folder stands for all material documents in it and in
its subfolders, but not for MaterialX documents.

Examples:
  mox format rim.xml
  mox format materials --check
  mox format rim.xml --tidy
  make_material.py | mox format - >rim.xml
)";

struct FormatOptions
{
    std::vector<std::string> Files;
    bool IsCheck = false;
    bool IsForced = false;
    bool IsTidied = false;
};

/// @param plugins null to keep the positions of nodes
std::string FormatText(const std::string& name, const std::string& text,
                       const Host::PluginSet* plugins)
{
    Host::MaterialDocument document = Host::ParseMaterialDocument(name, text);
    if (!plugins)
        return Host::FormatMaterialDocument(document);
    Host::MaterialGraph graph(std::move(document), Host::NodeMaker(*plugins));
    graph.Apply(Host::LayOutMaterial(graph));
    return Host::FormatMaterialDocument(graph.Document());
}

/// @returns whether the document is in canonical form afterwards
bool FormatDocument(const std::string& file, const FormatOptions& options,
                    const Host::PluginSet* plugins)
{
    const std::string name = SourceName(file);
    const std::string original = ReadReplacedSource(file);
    const std::string text = FormatText(name, original, plugins);
    if (IsStandardInput(file) && !options.IsCheck) {
        std::cout << text;
        return true;
    }
    if (original == text)
        return true;
    if (options.IsCheck) {
        std::cout << name << '\n';
        return false;
    }
    if (!options.IsForced)
        RequireReplaceable(file);
    Host::WriteIfChanged(file, text);
    return true;
}

void FormatDocuments(const FormatOptions& options, const CommonOptions& common)
{
    std::optional<Host::PluginSet> plugins;
    if (options.IsTidied)
        plugins = LoadPlugins(common);
    bool isInForm = true;
    for (const Host::MaterialFile& material :
         FindDocuments(options.Files, 1, Host::FoundFormats::MaterialDocument)) {
        try {
            isInForm &= FormatDocument(material.Document, options, plugins ? &*plugins : nullptr);
        } catch (const Host::HostError& error) {
            std::cerr << "mox: " << error.what() << '\n';
            isInForm = false;
        }
    }
    if (!isInForm)
        throw CLI::RuntimeError(failureStatus);
}

} // namespace

void AddFormatCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("format", "Rewrite material documents in canonical form");
    const auto options = std::make_shared<FormatOptions>();
    AddDocuments(*command, options->Files)->required();
    auto* check = command->add_flag("--check", options->IsCheck,
                                    "List the documents that would change, without changing them");
    command
        ->add_flag("--force", options->IsForced,
                   "Also replace documents that are read-only or have other hard links")
        ->excludes(check);
    command->add_flag("--tidy", options->IsTidied, "Also arrange the nodes");
    command->footer(formatFooter);
    command->callback([=, &common] { FormatDocuments(*options, common); });
}

} // namespace Mox::Tool
