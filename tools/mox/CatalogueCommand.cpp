#include "CatalogueTable.h"
#include "Commands.h"
#include "LoadPlugins.h"
#include "ProblemMessage.h"
#include "mox/Text.h"
#include "mox/document/Catalogue.h"
#include "mox/host/File.h"
#include "mox/json/CatalogueJson.h"

#include <filesystem>
#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* catalogueFooter =
    R"(Where the ports hang on a property, those of its other values stand below
those of a new node, as far as they differ.

Examples:
  mox catalogue
  mox catalogue CoreMaths CoreSwizzle
  mox catalogue --json | jq '.[].type'
  mox catalogue --icons icons
)";

void WriteIcons(const std::vector<Host::CatalogueEntry>& entries,
                const std::filesystem::path& folder)
{
    Host::CreateFolder(folder);
    for (const Host::CatalogueEntry& entry : entries) {
        if (entry.Type.Icon.empty())
            continue;
        const std::string name = entry.Type.TypeName + ".png";
        if (!Host::StaysInFolder(name)) {
            throw Host::HostError(entry.Plugin.string(),
                                  Materials::Compose("the icon of the type \"", entry.Type.TypeName,
                                                     "\" would be written outside the folder"));
        }
        Host::WritePng(Host::DecodeXpm(entry.Type.Icon), folder / name);
    }
}

} // namespace

void AddCatalogueCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("catalogue", "List node types with their ports and properties");
    auto types = std::make_shared<std::vector<std::string>>();
    auto isJson = std::make_shared<bool>(false);
    auto iconFolder = std::make_shared<std::string>();
    command->add_option("TYPE", *types, "The only node types to list")->type_name("");
    command->add_flag("--json", *isJson, "Print JSON for programs");
    command
        ->add_option("--icons", *iconFolder, "Also write each type's icon to this folder, as PNG")
        ->type_name("DIR");
    command->footer(catalogueFooter);
    command->callback([=, &common] {
        const Host::PluginSet plugins = LoadPlugins(common);
        Host::ProblemList problems;
        const auto entries = Host::DescribeCatalogue(plugins, *types, problems);
        const Host::NodeFiles files(plugins);
        if (!iconFolder->empty())
            WriteIcons(entries, *iconFolder);
        std::cout << (*isJson ? Host::FormatJsonLines(Host::CatalogueToJson(entries, files))
                              : FormatCatalogueAsTable(entries, files));
        for (const Host::Problem& problem : problems.Problems())
            std::cerr << FormatMessage(problem) << '\n';
        if (problems.HasErrors())
            throw CLI::RuntimeError(failureStatus);
    });
}

} // namespace Mox::Tool
