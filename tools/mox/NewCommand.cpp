#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/document/Catalogue.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* newFooter = R"(Examples:
  mox new CoreTexture
  mox new CoreMaths --id rim
)";

void PrintNew(const std::string& type, const std::string& id, const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    const auto node = plugins.CreateNode(type);
    if (!node)
        throw Host::HostError({}, Host::UnknownType(type).Message + plugins.SuggestType(type));
    std::cout << Host::FormatNodeFragment(node, id.empty() ? node.Name() : id);
}

} // namespace

void AddNewCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand(
        "new", "Print a new node with its default properties, for pasting into a document");
    auto type = std::make_shared<std::string>();
    auto id = std::make_shared<std::string>();
    command->add_option("TYPE", *type, "Node type, as listed by mox catalogue")
        ->type_name("")
        ->required();
    command->add_option("--id", *id, "Id of the node; by default its name")->type_name("ID");
    command->footer(newFooter);
    command->callback([=, &common] { PrintNew(*type, *id, common); });
}

} // namespace Mox::Tool
