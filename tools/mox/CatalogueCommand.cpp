#include "Commands.h"
#include "DocumentSource.h"
#include "LoadPlugins.h"
#include "mox/Text.h"
#include "mox/document/Catalogue.h"
#include "mox/document/PropertyText.h"
#include "mox/host/File.h"
#include "mox/json/CatalogueJson.h"
#include "mox/nodefile/NodeFiles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <string_view>

namespace Mox::Tool {

namespace {

using Host::CatalogueEntry;
using Host::CataloguePorts;
using Materials::Compose;
using Materials::GuiProperty;

constexpr const char* catalogueFooter =
    R"(If ports depend on a property, the ports of a new node are listed first,
followed by the ports that differ for each other value of the property.

Examples:
  mox catalogue
  mox catalogue CoreMaths CoreSwizzle
  mox catalogue --json | jq '.[].type'
  mox catalogue --icons icons
)";

void WriteIcons(const std::vector<Host::CatalogueEntry>& entries, const Host::NodeFiles& files,
                const std::filesystem::path& folder)
{
    Host::CreateFolder(folder);
    for (const Host::CatalogueEntry& entry : entries) {
        const Host::XpmTable icon = files.FindIcon(entry.Type);
        if (icon.empty())
            continue;
        const std::string name = entry.Type.TypeName + ".png";
        if (!Host::StaysInFolder(name)) {
            throw Host::HostError(entry.Type.File,
                                  Materials::Compose("the icon of the type \"", entry.Type.TypeName,
                                                     "\" would be written outside the folder"));
        }
        Host::WritePng(Host::DecodeXpm(icon), folder / name);
    }
}

std::string FormatPorts(const CataloguePorts& ports)
{
    std::string text;
    for (const auto& [name, label, components, precision] : ports) {
        text += Compose(text.empty() ? "" : ", ", name, " \"", label, "\"");
        if (components)
            text += Compose(" x", *components);
        if (!precision.empty())
            text += " " + precision;
    }
    return text.empty() ? "none" : text;
}

/// Wraps a string into indented lines of at most 100 characters, at spaces if possible.
std::string Wrap(std::string_view text, std::string_view indent)
{
    constexpr std::size_t lineLength = 100;
    const std::size_t room = lineLength - indent.size();
    std::string lines;
    while (text.size() > room) {
        const std::size_t space = text.rfind(' ', room);
        const std::size_t end = space == std::string_view::npos || space == 0 ? room : space;
        lines += Compose(indent, text.substr(0, end), "\n");
        text.remove_prefix(end == space ? end + 1 : end);
    }
    return lines + Compose(indent, text, "\n");
}

/// Formats a string after a heading, with further lines aligned to the first.
std::string WrapAfter(std::string_view heading, std::string_view text)
{
    return Wrap(text, std::string(heading.size(), ' ')).replace(0, heading.size(), heading);
}

/// Pads a string with spaces to a width.
std::string Pad(std::string_view text, std::size_t width)
{
    std::string padded(text);
    padded.resize(std::max(text.size(), width), ' ');
    return padded;
}

std::string FormatVariant(const Host::CatalogueVariant& variant)
{
    std::string text = Compose("  with \"", variant.Property, "\" = ", variant.Value, "\n");
    if (variant.Inputs)
        text += WrapAfter("    inputs   ", FormatPorts(*variant.Inputs));
    if (variant.Outputs)
        text += WrapAfter("    outputs  ", FormatPorts(*variant.Outputs));
    return text;
}

/// @param file describes the type; may be null
std::string FormatProperty(const GuiProperty& property, const Host::NodeFile* file)
{
    constexpr std::string_view indent = "      ";
    const std::string value = property.Kind == Materials::GuiPropertyKind::Node
                                  ? "none"
                                  : Host::FormatJson(Host::ValueToJson(property));
    std::string text =
        Compose("  ", Pad(property.Name + " ", 18), Pad(Host::FormatKind(property.Kind), 9), value,
                property.Visible ? "" : "  (hidden)", property.Editable ? "" : "  (locked)", "\n");
    if (!property.Choices.empty()) {
        std::string choices;
        for (const std::string& choice : property.Choices)
            choices += Compose(choices.empty() ? "one of: " : ", ", choice);
        text += Wrap(choices, indent);
    }
    const Host::NodeProperty* described = file ? file->FindProperty(property.Name) : nullptr;
    if (described && described->Range) {
        const auto& [low, high] = *described->Range;
        text += Compose(indent, "from ", low, " to ", high, "\n");
    }
    if (!property.Help.empty())
        text += Wrap(property.Help, indent);
    return text;
}

/// Formats the overview as columns, two spaces wider than their longest entries.
std::string FormatOverview(const std::vector<CatalogueEntry>& entries)
{
    std::vector<std::array<std::string, 4>> rows = {{"TYPE", "LABEL", "LIBRARY", "LISTED"}};
    for (const CatalogueEntry& entry : entries) {
        const Host::PluginType& type = entry.Type;
        rows.push_back({type.TypeName, type.Label, type.Library, type.Listed ? "yes" : "no"});
    }
    std::array<std::size_t, 3> widths{};
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size() + 2);
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i)
            text += Pad(row[i], widths[i]);
        text += row.back() + "\n";
    }
    return text;
}

std::string FormatCatalogueAsTable(const std::vector<CatalogueEntry>& entries,
                                   const Host::NodeFiles& files)
{
    std::string text = FormatOverview(entries);
    for (const CatalogueEntry& entry : entries) {
        const auto file = files.Find(entry.Type.TypeName);
        text += Compose("\n", entry.Type.TypeName, "\n",
                        file && !file->Help.empty() ? Wrap(file->Help, "  ") : "",
                        WrapAfter("  inputs   ", FormatPorts(entry.Inputs)),
                        WrapAfter("  outputs  ", FormatPorts(entry.Outputs)));
        for (const Host::CatalogueVariant& variant : entry.Variants)
            text += FormatVariant(variant);
        text += "\n";
        for (const auto& property : entry.Properties)
            text += FormatProperty(*property, file.get());
    }
    return text;
}

} // namespace

void AddCatalogueCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("catalogue", "List node types with their ports and properties");
    auto types = std::make_shared<std::vector<std::string>>();
    auto isJson = std::make_shared<bool>(false);
    auto iconFolder = std::make_shared<std::string>();
    command->add_option("TYPE", *types, "Node types to list; by default, all types are listed")
        ->type_name("");
    command->add_flag("--json", *isJson, "Print JSON");
    command
        ->add_option("--icons", *iconFolder,
                     "Also write the icon of each type to this folder, as PNG")
        ->type_name("DIR");
    command->footer(catalogueFooter);
    command->callback([=, &common] {
        const Host::PluginSet plugins = LoadPlugins(common);
        Host::ProblemList problems;
        const auto entries = Host::DescribeCatalogue(plugins, *types, problems);
        const Host::NodeFiles files(plugins);
        if (!iconFolder->empty())
            WriteIcons(entries, files, *iconFolder);
        std::cout << (*isJson ? Host::FormatJsonLines(Host::CatalogueToJson(entries, files))
                              : FormatCatalogueAsTable(entries, files));
        PrintProblems(problems);
        if (problems.HasErrors())
            throw CLI::RuntimeError(failureStatus);
    });
}

} // namespace Mox::Tool
