#include "mox/nodefile/NodeRules.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"
#include "mox/host/NearestName.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPropertyKind;

constexpr std::size_t mostParts = 200; ///< elements below the root

/// Names of the properties that every node has.
constexpr std::string_view standardProperties[] = {"Type",         "Name",      "BindingIndex",
                                                   "BindingGroup", "PositionX", "PositionY",
                                                   "Description",  "Help Url"};

class NodeRules
{
public:
    NodeRules(const NodeFile& file, const Place& where) : _file(file), _where(where) {}

    void Check() const
    {
        const std::size_t parts = _file.Properties.size() + _file.Inputs.size() +
                                  _file.Outputs.size() + _file.Samplers.size() +
                                  _file.Functions.size() + _file.Bodies.size();
        if (parts > mostParts)
            throw HostError(_where, Compose("a node has more than ", mostParts, " parts"));
        if (_file.IsCompiled)
            return;
        CheckHead();
        CheckProperties();
        CheckConditions(_file.Inputs);
        CheckConditions(_file.Outputs);
        CheckConditions(_file.Bodies);
        CheckConditions(_file.Samplers);
        for (const NodeSampler& sampler : _file.Samplers) {
            CheckCondition(sampler.Srgb.value_or(NodeConditions()), sampler.Line);
            CheckCondition(sampler.Alpha.value_or(NodeConditions()), sampler.Line);
        }
        for (const NodeInput& input : _file.Inputs)
            CheckSource(input);
        CheckEverySetting();
    }

private:
    [[noreturn]] void Fail(int line, const std::string& message) const
    {
        throw HostError(Place(_file.File, line), message);
    }

    /// Returns a suggestion to append to the message that no property of these kinds has this name.
    std::string SuggestProperty(const std::string& name,
                                std::initializer_list<GuiPropertyKind> kinds) const
    {
        std::vector<RightName> names;
        for (const NodeProperty& property : _file.Properties) {
            if (std::ranges::count(kinds, property.Kind) > 0)
                names.push_back({property.Name});
        }
        return SuggestName(name, names);
    }

    void CheckHead() const
    {
        if (!ShaderNode::IsValidCgName(_file.Library))
            throw HostError(_where, Compose(Excerpt(_file.Library), " is not a valid Cg name"));
        if (!_file.TypeName.starts_with(_file.Library)) {
            throw HostError(_where, Compose("the type \"", _file.TypeName,
                                            "\" does not start with the name of its library, \"",
                                            _file.Library, "\""));
        }
        if (_file.Title.empty())
            return;
        const NodeProperty* title = _file.FindProperty(_file.Title);
        if (!title || title->Kind != GuiPropertyKind::Enum)
            throw HostError(_where, Compose("the title is ", Excerpt(_file.Title),
                                            ", which is not an enum property",
                                            SuggestProperty(_file.Title, {GuiPropertyKind::Enum})));
    }

    void CheckProperties() const
    {
        for (const NodeProperty& property : _file.Properties) {
            if (std::find(std::begin(standardProperties), std::end(standardProperties),
                          property.Name) != std::end(standardProperties)) {
                Fail(property.Line,
                     Compose("every node already has a property \"", property.Name, "\""));
            }
        }
    }

    template <class Part>
    void CheckConditions(const std::vector<Part>& parts) const
    {
        for (const Part& part : parts)
            CheckCondition(part.When, part.Line);
    }

    void CheckCondition(const NodeConditions& conditions, int line) const
    {
        for (const Condition& condition : conditions) {
            const NodeProperty* property = _file.FindProperty(condition.Name);
            if (!property || (property->Kind != GuiPropertyKind::Enum &&
                              property->Kind != GuiPropertyKind::Bool)) {
                Fail(line, Compose("a condition reads ", Excerpt(condition.Name),
                                   ", which is not an enum or bool property",
                                   SuggestProperty(condition.Name, {GuiPropertyKind::Enum,
                                                                    GuiPropertyKind::Bool})));
            }
            for (const std::string& value : condition.Values) {
                const bool isKnown =
                    property->Kind == GuiPropertyKind::Bool
                        ? value == "true" || value == "false"
                        : std::ranges::count(property->Choices, value, &NodeChoice::Name) > 0;
                if (!isKnown) {
                    Fail(line, Compose("the property \"", property->Name, "\" has no value ",
                                       Excerpt(value)));
                }
            }
        }
    }

    void CheckSource(const NodeInput& input) const
    {
        if (input.Source != NodeSource::Property)
            return;
        const NodeProperty* property = _file.FindProperty(input.SourceText);
        if (!property || property->Kind == GuiPropertyKind::Enum) {
            Fail(input.Line,
                 Compose("the input reads ", Excerpt(input.SourceText),
                         ", which is not a bool, integer, float or colour property",
                         SuggestProperty(input.SourceText,
                                         {GuiPropertyKind::Bool, GuiPropertyKind::Integer,
                                          GuiPropertyKind::Float, GuiPropertyKind::Colour})));
        }
        if (!input.IsPort())
            return;
        if (property->Kind == GuiPropertyKind::Colour ? input.Count != 3
                                                      : property->Kind != GuiPropertyKind::Float) {
            Fail(input.Line,
                 "a port can read only a float property, or a colour property if its count is 3");
        }
    }

    template <class Part>
    void CheckNames(const std::vector<Part>& parts, const NodeSettings& settings,
                    std::set<std::string>& names) const
    {
        for (const Part& part : parts) {
            if (Holds(part.When, settings) && !names.insert(part.Name).second) {
                Fail(part.Line,
                     Compose("the name \"", part.Name, "\" is used twice", Describe(settings)));
            }
        }
    }

    void CheckEverySetting() const
    {
        const std::vector<NodeSettings> all = ListSettings(_file);
        if (all.empty()) {
            throw HostError(_where, Compose("the conditions distinguish more than ", mostSettings,
                                            " combinations of values"));
        }
        for (const NodeSettings& settings : all) {
            std::set<std::string> names;
            CheckNames(_file.Inputs, settings, names);
            CheckNames(_file.Samplers, settings, names);
            CheckNames(_file.Outputs, settings, names);
            const auto holds = [&](const auto& part) { return Holds(part.When, settings); };
            if (std::none_of(_file.Outputs.begin(), _file.Outputs.end(), holds))
                throw HostError(_where, Compose("the node has no output", Describe(settings)));
            if (std::none_of(_file.Bodies.begin(), _file.Bodies.end(), holds))
                throw HostError(_where, Compose("the node has no body", Describe(settings)));
        }
    }

    static std::string Describe(const NodeSettings& settings)
    {
        std::string text;
        for (const auto& [name, value] : settings)
            text += Compose(text.empty() ? " with " : ", ", name, "=", value);
        return text;
    }

    const NodeFile& _file;
    const Place& _where;
};

} // namespace

void CheckNodeRules(const NodeFile& file, const Place& where)
{
    NodeRules(file, where).Check();
}

} // namespace Mox::Host
