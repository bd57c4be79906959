#include "mox/nodefile/NodeFile.h"

#include <algorithm>
#include <set>

namespace Mox::Host {

namespace {

using Materials::GuiPropertyKind;

std::string ReplaceAll(std::string text, std::string_view word, const std::string& with)
{
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at))
        text.replace(at, word.size(), with);
    return text;
}

void AddProperties(const NodeConditions& conditions, std::set<std::string>& names)
{
    for (const Condition& condition : conditions)
        names.insert(condition.Name);
}

template <class Part>
void AddProperties(const std::vector<Part>& parts, std::set<std::string>& names)
{
    for (const Part& part : parts)
        AddProperties(part.When, names);
}

/// Returns the properties that determine which parts the node has.
std::set<std::string> DecidingProperties(const NodeFile& file)
{
    std::set<std::string> names;
    AddProperties(file.Inputs, names);
    AddProperties(file.Outputs, names);
    AddProperties(file.Samplers, names);
    AddProperties(file.Bodies, names);
    return names;
}

std::vector<std::string> ValuesOf(const NodeProperty& property)
{
    if (property.Kind == GuiPropertyKind::Bool)
        return {"false", "true"};
    std::vector<std::string> values;
    for (const NodeChoice& choice : property.Choices)
        values.push_back(choice.Name);
    return values;
}

} // namespace

const NodeProperty* NodeFile::FindProperty(std::string_view name) const
{
    const auto found = std::ranges::find(Properties, name, &NodeProperty::Name);
    return found == Properties.end() ? nullptr : &*found;
}

bool Holds(const NodeConditions& conditions, const NodeSettings& settings)
{
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition& condition) {
        const auto& values = condition.Values;
        return std::find(values.begin(), values.end(), settings.at(condition.Name)) != values.end();
    });
}

NodeSettings SettingsOf(const NodeFile& file, const Materials::GuiPropertyBag& properties)
{
    NodeSettings settings;
    for (const NodeProperty& property : file.Properties) {
        const Materials::GuiProperty& own = *properties.Index.at(property.Name);
        if (property.Kind == GuiPropertyKind::Enum)
            settings[property.Name] = own.GetEnum();
        else if (property.Kind == GuiPropertyKind::Bool)
            settings[property.Name] = own.GetBool() ? "true" : "false";
    }
    return settings;
}

std::vector<NodeSettings> ListSettings(const NodeFile& file)
{
    NodeSettings first;
    for (const NodeProperty& property : file.Properties) {
        if (const auto values = ValuesOf(property); !values.empty())
            first[property.Name] = values.front();
    }
    std::vector<NodeSettings> all = {first};
    for (const std::string& name : DecidingProperties(file)) {
        const std::vector<std::string> values = ValuesOf(*file.FindProperty(name));
        if (values.size() > mostSettings / all.size())
            return {};
        std::vector<NodeSettings> more;
        for (const NodeSettings& settings : all) {
            for (const std::string& value : values) {
                more.push_back(settings);
                more.back()[name] = value;
            }
        }
        all = std::move(more);
    }
    return all;
}

std::string FillPlaceholders(std::string text, const ShaderType& type)
{
    const ShaderType scalar(type.Component, 1, 1, 1);
    text = ReplaceAll(std::move(text), "$type", type.Format());
    text = ReplaceAll(std::move(text), "$scalar", scalar.Format());
    return ReplaceAll(std::move(text), "$count", std::to_string(type.Columns));
}

} // namespace Mox::Host
