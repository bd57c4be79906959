#include "mox/json/CatalogueJson.h"

#include "mox/document/PropertyText.h"

namespace Mox::Host {

namespace {

using Materials::GuiProperty;
using Materials::GuiPropertyKind;

Json DescribePorts(const CataloguePorts& ports)
{
    Json list = Json::array();
    for (const auto& [name, label, components, precision] : ports) {
        Json row = {{"name", name}, {"label", label}};
        if (components)
            row["components"] = *components;
        if (!precision.empty())
            row["precision"] = precision;
        list.push_back(row);
    }
    return list;
}

Json DescribeVariants(const std::vector<CatalogueVariant>& variants)
{
    Json list = Json::array();
    for (const auto& [property, value, inputs, outputs] : variants) {
        Json row = {{"property", property}, {"value", value}};
        if (inputs)
            row["inputs"] = DescribePorts(*inputs);
        if (outputs)
            row["outputs"] = DescribePorts(*outputs);
        list.push_back(row);
    }
    return list;
}

/// @param file describes the type; may be null
Json DescribeProperty(const GuiProperty& property, const NodeFile* file)
{
    Json row = {{"name", property.Name},
                {"kind", FormatKind(property.Kind)},
                {"default", ValueToJson(property)},
                {"help", property.Help},
                {"visible", property.Visible},
                {"editable", property.Editable}};
    if (!property.Choices.empty())
        row["choices"] = property.Choices;
    const NodeProperty* described = file ? file->FindProperty(property.Name) : nullptr;
    if (described && described->Range)
        row["range"] = {described->Range->first, described->Range->second};
    return row;
}

} // namespace

Json ValueToJson(const GuiProperty& property)
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

Json CatalogueToJson(const std::vector<CatalogueEntry>& entries, const NodeFiles& files)
{
    Json rows = Json::array();
    for (const CatalogueEntry& entry : entries) {
        const auto file = files.Find(entry.Type.TypeName);
        Json properties = Json::array();
        for (const auto& property : entry.Properties)
            properties.push_back(DescribeProperty(*property, file.get()));
        rows.push_back({{"type", entry.Type.TypeName},
                        {"label", entry.Type.Label},
                        {"library", entry.Type.Library},
                        {"help", file ? file->Help : ""},
                        {"listed", entry.Type.Listed},
                        {"hasIcon", entry.Type.Icon || (file && !file->Icon.empty())},
                        {"version", entry.Version},
                        {"inputs", DescribePorts(entry.Inputs)},
                        {"outputs", DescribePorts(entry.Outputs)},
                        {"variants", DescribeVariants(entry.Variants)},
                        {"properties", properties}});
    }
    return rows;
}

} // namespace Mox::Host
