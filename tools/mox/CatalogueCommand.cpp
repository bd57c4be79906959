#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/File.h"
#include "mox/host/Icon.h"
#include "mox/host/LibraryCall.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>

namespace Mox::Tool {

namespace {

constexpr const char* footer =
    R"(Where the ports hang on a property, those of its other values stand below
those of a new node, as far as they differ.

Examples:
  mox catalogue
  mox catalogue CoreMaths CoreSwizzle
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

/// All values of a property, as far as there is a list of them.
std::vector<std::string> ListValues(const GuiProperty& property)
{
    if (property.Kind == GuiPropertyKind::Enum)
        return property.Choices;
    if (property.Kind == GuiPropertyKind::Bool)
        return {"false", "true"};
    return {};
}

/// The ports that a single property gives a new node, for each value that makes them others.
Json DescribeVariants(const std::function<Host::PluginNode()>& create, const Host::Place& where)
{
    const auto usual = create();
    const Json inputs = DescribePorts(usual.InputPorts());
    const Json outputs = DescribePorts(usual.OutputPorts());
    Json list = Json::array();
    for (const auto& property : usual.Properties().Properties) {
        if (!property->Editable)
            continue;
        for (const std::string& value : ListValues(*property)) {
            const auto node =
                create(); // what one value sets besides the ports is not the next one's
            Host::SetFromText(*node.Properties().Get(property->Name), property->Kind, value);
            node.UpdatePorts(where);
            Json row = {{"property", property->Name}, {"value", value}};
            if (Json ports = DescribePorts(node.InputPorts()); ports != inputs)
                row["inputs"] = std::move(ports);
            if (Json ports = DescribePorts(node.OutputPorts()); ports != outputs)
                row["outputs"] = std::move(ports);
            if (row.contains("inputs") || row.contains("outputs"))
                list.push_back(std::move(row));
        }
    }
    return list;
}

Json DescribeType(const Host::Plugin& plugin, const Host::PluginType& description,
                  const Host::Place& where)
{
    const auto create = [&] { return plugin.CreateNode(description.TypeName, where); };
    const auto node = create();
    Json properties = Json::array();
    for (const auto& property : node.Properties().Properties)
        properties.push_back(DescribeProperty(*property));
    return {{"type", description.TypeName},
            {"label", description.Label},
            {"library", description.Library},
            {"listed", description.Listed},
            {"hasIcon", !description.Icon.empty()},
            {"version", node.Properties().Version},
            {"inputs", DescribePorts(node.InputPorts())},
            {"outputs", DescribePorts(node.OutputPorts())},
            {"variants", DescribeVariants(create, where)},
            {"properties", properties}};
}

/// @param types nothing asks for all
bool IsAskedFor(const std::string& type, const std::vector<std::string>& types)
{
    return types.empty() || std::find(types.begin(), types.end(), type) != types.end();
}

/// One row for each type: the one source of the table for people and of the JSON for programs.
/// @param types the only ones, or nothing for all
/// @throws HostError if no plug-in offers one of them, or if a type cannot be created
Json DescribeCatalogue(const Host::PluginSet& plugins, const std::vector<std::string>& types)
{
    Json rows = Json::array();
    std::set<std::string> unknown(types.begin(), types.end());
    for (const Host::Plugin& plugin : plugins.Plugins()) {
        for (const auto& description : plugin.Types()) {
            const std::string& type = description.TypeName;
            if (!IsAskedFor(type, types))
                continue;
            unknown.erase(type);
            const Host::Place where(plugin.File().string());
            rows.push_back(
                Host::CallLibrary(where, [&] { return DescribeType(plugin, description, where); }));
        }
    }
    if (!unknown.empty())
        throw UnknownType(*unknown.begin());
    return rows;
}

/// JSON as a string; it holds only UTF-8, so other bytes of a plug-in's texts are replaced.
std::string Dump(const Json& json, int indent = -1)
{
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::string Text(const Json& value)
{
    return value.get<std::string>();
}

std::string FormatPorts(const Json& ports)
{
    std::string text;
    for (const Json& port : ports) {
        text +=
            Compose(text.empty() ? "" : ", ", Text(port["name"]), " \"", Text(port["label"]), "\"");
        if (port.contains("components"))
            text += Compose(" x", port["components"].get<int>());
        if (port.contains("precision"))
            text += " " + Text(port["precision"]);
    }
    return text.empty() ? "none" : text;
}

/// Lines of at most a hundred characters, each behind the indent; only blanks become line ends.
std::string Wrap(std::string_view text, std::string_view indent)
{
    constexpr std::size_t lineLength = 100;
    const std::size_t room = lineLength - indent.size();
    std::string lines;
    while (text.size() > room) {
        const std::size_t blank = text.rfind(' ', room);
        const std::size_t end = blank == std::string_view::npos || blank == 0 ? room : blank;
        lines += Compose(indent, text.substr(0, end), "\n");
        text.remove_prefix(end == blank ? end + 1 : end);
    }
    return lines + Compose(indent, text, "\n");
}

/// The text behind a heading, further lines below its first.
std::string WrapBehind(std::string_view heading, std::string_view text)
{
    return Wrap(text, std::string(heading.size(), ' ')).replace(0, heading.size(), heading);
}

void PrintVariant(const Json& variant)
{
    std::cout << "  with \"" << Text(variant["property"]) << "\" = " << Text(variant["value"])
              << '\n';
    for (const auto& [key, heading] :
         {std::pair("inputs", "    inputs   "), std::pair("outputs", "    outputs  ")}) {
        if (variant.contains(key))
            std::cout << WrapBehind(heading, FormatPorts(variant[key]));
    }
}

void PrintProperty(const Json& property)
{
    constexpr std::string_view indent = "      ";
    const std::string value = property["default"].is_null() ? "none" : Dump(property["default"]);
    std::cout << std::left << "  " << std::setw(18) << Text(property["name"]) + " " << std::setw(9)
              << Text(property["kind"]) << value << (property["visible"] ? "" : "  (hidden)")
              << (property["editable"] ? "" : "  (locked)") << '\n';
    if (property.contains("choices")) {
        std::string choices;
        for (const Json& choice : property["choices"])
            choices += Compose(choices.empty() ? "one of: " : ", ", Text(choice));
        std::cout << Wrap(choices, indent);
    }
    if (const std::string help = Text(property["help"]); !help.empty())
        std::cout << Wrap(help, indent);
}

/// The width of an overview column: two blanks behind the longest entry.
int WidthOf(const Json& rows, const char* key, std::string_view title)
{
    std::size_t longest = title.size();
    for (const Json& row : rows)
        longest = std::max(longest, Text(row[key]).size());
    return static_cast<int>(longest + 2);
}

/// An overview with a line for each type, then each type by itself.
void PrintTable(const Json& rows)
{
    const int typeWidth = WidthOf(rows, "type", "TYPE");
    const int labelWidth = WidthOf(rows, "label", "LABEL");
    const int libraryWidth = WidthOf(rows, "library", "LIBRARY");
    const auto printRow = [=](const auto& type, const auto& label, const auto& library,
                              const auto& listed) {
        std::cout << std::left << std::setw(typeWidth) << type << std::setw(labelWidth) << label
                  << std::setw(libraryWidth) << library << listed << '\n';
    };
    printRow("TYPE", "LABEL", "LIBRARY", "LISTED");
    for (const Json& row : rows) {
        printRow(Text(row["type"]), Text(row["label"]), Text(row["library"]),
                 row["listed"] ? "yes" : "no");
    }
    for (const Json& row : rows) {
        std::cout << '\n'
                  << Text(row["type"]) << '\n'
                  << WrapBehind("  inputs   ", FormatPorts(row["inputs"]))
                  << WrapBehind("  outputs  ", FormatPorts(row["outputs"]));
        for (const Json& variant : row["variants"])
            PrintVariant(variant);
        std::cout << '\n';
        for (const Json& property : row["properties"])
            PrintProperty(property);
    }
}

void WriteIcons(const Host::PluginSet& plugins, const std::vector<std::string>& types,
                const std::filesystem::path& folder)
{
    Host::CreateFolder(folder);
    for (const Host::Plugin& plugin : plugins.Plugins()) {
        for (const auto& row : plugin.Types()) {
            if (row.Icon.empty() || !IsAskedFor(row.TypeName, types))
                continue;
            const std::string name = row.TypeName + ".png";
            if (!Host::StaysInFolder(name)) {
                throw Host::HostError(Host::Place(plugin.File().string()),
                                      Compose("the icon of the type \"", row.TypeName,
                                              "\" would be written outside the folder"));
            }
            Host::WritePng(Host::DecodeXpm(row.Icon), folder / name);
        }
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
    command->footer(footer);
    command->callback([=, &common] {
        const Host::PluginSet plugins = LoadPlugins(common);
        const Json rows = DescribeCatalogue(plugins, *types);
        if (!iconFolder->empty())
            WriteIcons(plugins, *types, *iconFolder);
        if (*isJson)
            std::cout << Dump(rows, 2) << '\n';
        else
            PrintTable(rows);
    });
}

} // namespace Mox::Tool
