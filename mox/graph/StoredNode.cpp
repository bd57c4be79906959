#include "mox/graph/StoredNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/NodeSnapshot.h"
#include "mox/host/Excerpt.h"
#include "mox/host/LibraryCall.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiProperty;
using Materials::GuiPropertyBag;
using Materials::GuiPropertyKind;

namespace {

bool HasName(const std::vector<DocumentProperty>& properties, const std::string& name)
{
    return std::any_of(properties.begin(), properties.end(),
                       [&](const DocumentProperty& property) { return property.Name == name; });
}

/// Gives property the kind and value of a text.
/// @param fail is called with rule and message if that cannot be
template <class Fail>
bool Parse(const GraphStore& graph, GuiProperty& property, const DocumentProperty& value, Fail fail)
{
    if (!SetFromText(property, value.Kind, value.Value)) {
        fail("bad-value", Compose("property ", Excerpt(value.Name), ": ", Excerpt(value.Value),
                                  " is no ", FormatKind(value.Kind), " value"));
        return false;
    }
    if (value.Kind != GuiPropertyKind::Node || value.Value.empty())
        return true;
    const auto target = graph.FindNode(value.Value);
    if (!target) {
        fail("unknown-node", Compose("there is no node \"", value.Value, "\""));
        return false;
    }
    property.Node = graph.Nodes()[*target].Gui.Handle();
    return true;
}

/// Loads the stored properties of one node.
class StoredLoader
{
public:
    StoredLoader(const GraphStore& graph, const GraphNode& node, const DocumentNode& stored,
                 ProblemList& problems)
        : _graph(graph), _node(node), _gui(node.Gui), _stored(stored), _problems(problems),
          _bag(boost::make_shared<GuiPropertyBag>())
    {
        _bag->Version = stored.Version;
        auto type = GuiProperty::Create("Type");
        type->SetString(stored.Type);
        _bag->Add(type);
    }

    std::vector<DocumentProperty> Load(const std::vector<DocumentProperty>& values)
    {
        for (const DocumentProperty& property : _stored.Properties) {
            if (FillIn(property, values))
                _fitting.push_back(property);
        }
        if (!TryLoad())
            LoadWhatFits();
        return std::move(_fitting);
    }

private:
    Place PlaceOf(int line) const { return {_node.Where.File, line, _node.Id, {}}; }

    bool FillIn(const DocumentProperty& stored, const std::vector<DocumentProperty>& values)
    {
        const auto fail = [&](const char* rule, const std::string& message) {
            _problems.Fail(rule, PlaceOf(stored.Line), message);
        };
        auto property = GuiProperty::Create(stored.Name);
        if (stored.Kind == GuiPropertyKind::Node && HasName(values, stored.Name))
            property->Kind = GuiPropertyKind::Node;
        else if (!Parse(_graph, *property, stored, fail))
            return false;
        try {
            _bag->Add(property);
        } catch (const ShaderError& error) {
            fail("doubled-property", error.Message);
            return false;
        }
        if (!_node.IsPlaceholder && !_gui.Properties().Index.contains(stored.Name)) {
            _problems.Warn("unknown-property", PlaceOf(stored.Line),
                           Compose("the type \"", _stored.Type, "\" has no property \"",
                                   stored.Name, "\"; it is kept but has no effect"));
        }
        return true;
    }

    bool TryLoad()
    {
        try {
            _gui.LoadProperties(PlaceOf(_stored.Line), _bag);
            return true;
        } catch (const HostError&) {
            return false;
        }
    }

    /// A set that is refused as a whole is searched for the properties that are the cause.
    void LoadWhatFits()
    {
        for (const auto& property : _gui.Properties().Properties) {
            const auto stored = _bag->Index.find(property->Name);
            if (_bag->Version > _gui.Properties().Version || stored == _bag->Index.end())
                continue;
            try {
                property->CopyFrom(stored->second);
            } catch (const ShaderError& error) {
                Refuse(property->Name, error.Message);
            }
        }
        try {
            _gui.LoadProperties(PlaceOf(_stored.Line), _bag);
        } catch (const HostError& error) {
            _problems.Fail("properties-refused", error);
        }
    }

    void Refuse(const std::string& name, const std::string& message)
    {
        const auto line =
            std::find_if(_fitting.begin(), _fitting.end(),
                         [&](const DocumentProperty& property) { return property.Name == name; });
        _problems.Fail("property-mismatch",
                       PlaceOf(line == _fitting.end() ? _stored.Line : line->Line), message);
        const auto entry = _bag->Index.find(name);
        std::erase(_bag->Properties, entry->second);
        _bag->Index.erase(entry);
        if (line != _fitting.end())
            _fitting.erase(line);
    }

    const GraphStore& _graph;
    const GraphNode& _node;
    const PluginNode& _gui;
    const DocumentNode& _stored;
    ProblemList& _problems;
    boost::shared_ptr<GuiPropertyBag> _bag;
    std::vector<DocumentProperty> _fitting;
};

} // namespace

bool SetFromDocument(const GraphStore& graph, GuiProperty& property, const DocumentProperty& value,
                     const Place& where, ProblemList& problems)
{
    const auto parsed = GuiProperty::Create(value.Name);
    const auto fail = [&](const char* rule, const std::string& message) {
        problems.Fail(rule, where, message);
    };
    if (!Parse(graph, *parsed, value, fail))
        return false;
    try {
        CallLibrary(where, [&] { property.CopyFrom(parsed); });
    } catch (const HostError& error) {
        problems.Fail("property-mismatch", error);
        return false;
    }
    return true;
}

std::vector<DocumentProperty> LoadStored(const GraphStore& graph, const GraphNode& node,
                                         const DocumentNode& stored,
                                         const std::vector<DocumentProperty>& values,
                                         ProblemList& problems)
{
    auto fitting = StoredLoader(graph, node, stored, problems).Load(values);
    for (const DocumentProperty& value : values) {
        const auto property = node.Gui.Properties().Index.find(value.Name);
        if (property != node.Gui.Properties().Index.end())
            SetFromDocument(graph, *property->second, value, node.Where, problems);
    }
    return fitting;
}

PluginNode MakeAsStored(const GraphStore& graph, const GraphNode& node)
{
    GraphNode copy;
    copy.Id = node.Id;
    copy.Where = node.Where;
    copy.IsPlaceholder = node.IsPlaceholder;
    copy.Gui = node.IsPlaceholder ? graph.Maker().MakePlaceholder(node.Stored.Type, node.Where)
                                  : graph.Maker().Make(node.Stored.Type, node.Where).Gui;
    ProblemList ignored; // what does not fit any more was reported when the node came
    LoadStored(graph, copy, node.Stored, {}, ignored);
    return copy.Gui;
}

AddNode DescribeNode(const GraphStore& graph, std::size_t index)
{
    const GraphNode& node = graph.Nodes()[index];
    AddNode step{node.Stored, {}, {}};
    const auto asStored = MakeAsStored(graph, node);
    for (std::size_t i = 0; i < asStored.Properties().Properties.size(); ++i) {
        const GuiProperty& property = *node.Gui.Properties().Properties[i];
        // The id in a stored reference may mean another node by now, or none.
        const bool isStoredReference = property.Kind == GuiPropertyKind::Node &&
                                       HasName(node.Stored.Properties, property.Name);
        if (isStoredReference || !HaveSameValue(property, *asStored.Properties().Properties[i]))
            step.Values.push_back(graph.Describe(property));
    }
    const std::size_t next = graph.Nodes().Next(index);
    if (next != GraphStore::None)
        step.Before = graph.Nodes()[next].Id;
    return step;
}

} // namespace Mox::Host
