#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/host/Icon.h"
#include "mox/host/PropertyText.h"

#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

namespace Mox::Tool {

namespace {

constexpr const char* footer = R"(Examples:
  mox catalogue
  mox catalogue --json | jq '.[].type'
  mox catalogue --icons icons
)";

using Json = nlohmann::ordered_json;
using Materials::Compose;
using Materials::GuiPort;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

/// A value as JSON has it; an empty reference to a node is null.
Json ValueOf(const GuiProperty& property)
{
    switch (property.Kind) {
    case GuiPropertyKind::Bool:
        return property.Integer == 1;
    case GuiPropertyKind::Integer:
        return property.Integer;
    case GuiPropertyKind::Float:
        return property.Floats[0];
    case GuiPropertyKind::Colour:
        return Json(property.Floats);
    case GuiPropertyKind::String:
    case GuiPropertyKind::Enum:
        return property.Text;
    case GuiPropertyKind::Node:
        break;
    }
    return nullptr;
}

Json DescribePorts(const std::vector<GuiPort>& ports)
{
    Json list = Json::array();
    for (const GuiPort& port : ports) {
        Json row = {{"name", port.Name}, {"label", port.Label}};
        if (port.CountFixed)
            row["components"] = port.ComponentCount;
        if (port.PrecisionFixed)
            row["precision"] = GetComponentName(port.Precision);
        list.push_back(row);
    }
    return list;
}

Json DescribeProperty(const GuiProperty& property)
{
    Json row = {{"name", property.Name},        {"kind", Host::FormatKind(property.Kind)},
                {"default", ValueOf(property)}, {"help", property.Help},
                {"visible", property.Visible},  {"editable", property.Editable}};
    if (!property.Choices.empty())
        row["choices"] = property.Choices;
    return row;
}

/// One row for each type: the one source of the table for people and of the JSON for programs.
Json DescribeCatalogue(const Host::PluginSet& plugins)
{
    Json rows = Json::array();
    for (const Host::Plugin& plugin : plugins.Plugins()) {
        for (const auto& description : plugin.Descriptions()) {
            const auto node = plugin.CreateNode(description.TypeName);
            Json properties = Json::array();
            for (const auto& property : node->Properties->Properties)
                properties.push_back(DescribeProperty(*property));
            rows.push_back({{"type", description.TypeName},
                            {"label", description.Label},
                            {"library", description.Library},
                            {"listed", description.Listed},
                            {"hasIcon", description.Icon != nullptr},
                            {"version", node->Properties->Version},
                            {"inputs", DescribePorts(node->InputPorts)},
                            {"outputs", DescribePorts(node->OutputPorts)},
                            {"properties", properties}});
        }
    }
    return rows;
}

std::string FormatPorts(const Json& ports)
{
    std::string text;
    for (const Json& port : ports) {
        text += Compose(text.empty() ? "" : ", ", port["name"].get<std::string>(), " \"",
                        port["label"].get<std::string>(), "\"");
        if (port.contains("components"))
            text += Compose(" x", port["components"].get<int>());
        if (port.contains("precision"))
            text += " " + port["precision"].get<std::string>();
    }
    return text.empty() ? "none" : text;
}

std::string FormatProperty(const Json& property)
{
    const Json& value = property["default"];
    std::string text = Compose("    ", property["name"].get<std::string>(), ": ",
                               property["kind"].get<std::string>(), ", ", value.dump());
    if (property.contains("choices")) {
        std::string choices;
        for (const Json& choice : property["choices"])
            choices += (choices.empty() ? "" : ", ") + choice.get<std::string>();
        text += Compose(", one of: ", choices);
    }
    return Compose(text, property["visible"] ? "" : " (hidden)", "\n",
                   property["help"].empty() || property["help"] == ""
                       ? ""
                       : Compose("        ", property["help"].get<std::string>(), "\n"));
}

void PrintTable(const Json& rows)
{
    for (const Json& row : rows) {
        std::cout << row["type"].get<std::string>() << "  \"" << row["label"].get<std::string>()
                  << "\"  library " << row["library"].get<std::string>()
                  << (row["listed"] ? "" : "  not listed")
                  << "\n  inputs:  " << FormatPorts(row["inputs"])
                  << "\n  outputs: " << FormatPorts(row["outputs"]) << "\n  properties:\n";
        for (const Json& property : row["properties"])
            std::cout << FormatProperty(property);
        std::cout << '\n';
    }
}

void WriteIcons(const Host::PluginSet& plugins, const std::filesystem::path& folder)
{
    Host::CreateFolder(folder);
    for (const Host::Plugin& plugin : plugins.Plugins()) {
        for (const auto& row : plugin.Descriptions()) {
            if (row.Icon)
                Host::WritePng(Host::DecodeXpm(row.Icon), folder / (row.TypeName + ".png"));
        }
    }
}

} // namespace

void AddCatalogueCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("catalogue", "List the node types of all plug-ins");
    auto isJson = std::make_shared<bool>(false);
    auto iconFolder = std::make_shared<std::string>();
    command->add_flag("--json", *isJson, "Print JSON for programs");
    command
        ->add_option("--icons", *iconFolder, "Also write each type's icon to this folder, as PNG")
        ->type_name("DIR");
    command->footer(footer);
    command->callback([=, &common] {
        const Host::PluginSet plugins = LoadPlugins(common);
        const Json rows = DescribeCatalogue(plugins);
        if (*isJson)
            std::cout << rows.dump(2) << '\n';
        else
            PrintTable(rows);
        if (!iconFolder->empty())
            WriteIcons(plugins, *iconFolder);
    });
}

} // namespace Mox::Tool
