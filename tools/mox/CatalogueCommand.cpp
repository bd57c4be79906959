#include "Commands.h"
#include "LoadPlugins.h"

#include <iomanip>
#include <iostream>

namespace Mox::Tool {

namespace {

void PrintRow(const std::string& type, const std::string& label, const std::string& library,
              const std::string& listed)
{
    std::cout << std::left << std::setw(18) << type << std::setw(20) << label << std::setw(10)
              << library << listed << '\n';
}

void PrintCatalogue(const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    PrintRow("TYPE", "LABEL", "LIBRARY", "LISTED");
    for (const Host::Plugin& plugin : plugins.Plugins()) {
        for (const auto& row : plugin.Descriptions())
            PrintRow(row.TypeName, row.Label, row.Library, row.Listed ? "yes" : "no");
    }
}

} // namespace

void AddCatalogueCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("catalogue", "List the node types of all plug-ins");
    command->callback([&common] { PrintCatalogue(common); });
}

} // namespace Mox::Tool
