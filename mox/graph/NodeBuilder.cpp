#include "mox/graph/NodeBuilder.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/document/UnknownNode.h"
#include "mox/graph/HostValues.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"
#include "mox/host/NearestName.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <vector>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiProperty;
using Materials::GuiPropertyBag;
using Materials::GuiPropertyKind;

namespace {

/// Sets the kind and value of a property from a string.
/// @param index of the node's record
/// @param fail is called with rule and message if that fails
/// @returns whether the value is valid
template <class Fail>
bool Parse(GuiProperty& property, const DocumentProperty& value, const NodeBuilder& builder,
           std::size_t index, Fail fail)
{
    if (!SetFromText(property, value.Kind, value.Value)) {
        fail("bad-value", Compose("property ", Excerpt(value.Name), ": ", Excerpt(value.Value),
                                  " is not a valid ", FormatKind(value.Kind), " value"));
        return false;
    }
    if (value.Kind != GuiPropertyKind::Node || value.Value.empty())
        return true;
    const auto target = builder.LookUp(index, value.Value);
    if (!target) {
        fail("unknown-node", UnknownNode(value.Value));
        return false;
    }
    property.Node = *target;
    return *target != nullptr;
}

/// The names of the properties that a user can set.
/// @param withHidden whether to include those that only matter for other choices of the node
std::vector<RightName> NamesOf(const PluginNode& node, bool withHidden)
{
    std::vector<RightName> names;
    for (const auto& property : node.Properties().Properties) {
        if (property != node.TypeProperty() && !IsHostValue(property->Name) &&
            (withHidden || property->Visible))
            names.push_back({property->Name});
    }
    return names;
}

/// Returns a suggestion to append to the message that a stored value does not fit a property.
std::string SuggestChoice(const GuiProperty& property, const GuiProperty& stored)
{
    if (property.Kind != GuiPropertyKind::Enum || stored.Kind != GuiPropertyKind::Enum)
        return {};
    std::vector<RightName> names;
    for (const std::string& choice : property.Choices)
        names.push_back({choice});
    return SuggestName(stored.Text, names);
}

/// Loads the stored properties of one node.
class RecordLoader
{
public:
    RecordLoader(const NodeBuilder& builder, std::size_t index, const DocumentNode& record,
                 GraphNode& node)
        : _builder(builder), _index(index), _record(record), _node(node),
          _problems(node.Problems.Loading), _bag(boost::make_shared<GuiPropertyBag>())
    {
        _bag->Version = record.Version;
        auto type = GuiProperty::Create("Type");
        type->SetString(record.Type);
        _bag->Add(type);
    }

    std::set<std::string> Load()
    {
        for (const DocumentProperty& property : _record.Properties) {
            if (!FillIn(property))
                _leftOut.insert(property.Name);
        }
        if (!TryLoad())
            LoadWhatFits();
        if (!_node.IsPlaceholder)
            WarnOfUnknown();
        return std::move(_leftOut);
    }

private:
    Place PlaceOf(int line) const { return {_node.Where.File, line, _node.Id}; }

    bool FillIn(const DocumentProperty& stored)
    {
        const auto fail = [&](ProblemRule rule, const std::string& message) {
            _problems.Fail(rule, PlaceOf(stored.Line), message);
        };
        auto property = GuiProperty::Create(stored.Name);
        if (!Parse(*property, stored, _builder, _index, fail))
            return false;
        try {
            CallLibrary(PlaceOf(stored.Line), [&] { _bag->Add(property); });
        } catch (const HostError& error) {
            fail("doubled-property", error.Message);
            return false;
        }
        _filledIn.push_back(&stored);
        return true;
    }

    bool TryLoad()
    {
        try {
            _node.Gui.LoadProperties(PlaceOf(_record.Line), _bag);
            return true;
        } catch (const HostError&) {
            return false;
        }
    }

    /// Loads the properties individually after the set as a whole was rejected, to find the cause.
    void LoadWhatFits()
    {
        const GuiPropertyBag& own = _node.Gui.Properties();
        for (const auto& property : own.Properties) {
            const auto stored = _bag->Index.find(property->Name);
            if (_bag->Version > own.Version || stored == _bag->Index.end())
                continue;
            try {
                CallLibrary(_node.Where, [&] { property->CopyFrom(stored->second); });
            } catch (const HostError& error) {
                Refuse(property->Name, error.Message + SuggestChoice(*property, *stored->second));
            }
        }
        try {
            _node.Gui.LoadProperties(PlaceOf(_record.Line), _bag);
        } catch (const HostError& error) {
            _problems.Fail("properties-refused", error);
        }
    }

    void Refuse(const std::string& name, const std::string& message)
    {
        const auto record =
            std::find_if(_filledIn.begin(), _filledIn.end(),
                         [&](const DocumentProperty* stored) { return stored->Name == name; });
        _problems.Fail("property-mismatch",
                       PlaceOf(record == _filledIn.end() ? _record.Line : (*record)->Line),
                       message);
        const auto entry = _bag->Index.find(name);
        std::erase(_bag->Properties, entry->second);
        _bag->Index.erase(entry);
        _leftOut.insert(name);
    }

    void WarnOfUnknown()
    {
        std::vector<const DocumentProperty*> unknown;
        for (const DocumentProperty* stored : _filledIn) {
            if (!_node.Gui.Properties().Index.contains(stored->Name))
                unknown.push_back(stored);
        }
        if (unknown.empty())
            return;
        ShowProperties();
        for (const DocumentProperty* stored : unknown) {
            _problems.Warn("unknown-property", PlaceOf(stored->Line),
                           Compose("the type \"", _record.Type, "\" has no property \"",
                                   stored->Name, "\"; the property is kept but has no effect",
                                   SuggestProperty(stored->Name, _node)));
        }
    }

    /// Makes the properties visible that matter for the loaded choices. A node does this when it
    /// updates its ports. BuildPorts updates them again and reports a failure.
    void ShowProperties()
    {
        try {
            _node.Gui.UpdatePorts(PlaceOf(_record.Line));
        } catch (const HostError&) {
        }
    }

    const NodeBuilder& _builder;
    std::size_t _index;
    const DocumentNode& _record;
    const GraphNode& _node;
    ProblemList& _problems;
    boost::shared_ptr<GuiPropertyBag> _bag;
    std::vector<const DocumentProperty*> _filledIn; ///< record properties in the bag
    std::set<std::string> _leftOut;
};

} // namespace

std::string SuggestProperty(std::string_view name, const GraphNode& node)
{
    if (!node.IsShown() || node.IsPlaceholder)
        return {};
    const std::string suggestion = SuggestName(name, NamesOf(node.Gui, true));
    return suggestion.empty() ? SuggestName(name, NamesOf(node.Gui, false)) : suggestion;
}

GraphNode NodeBuilder::Make(std::size_t index, const DocumentNode& record) const
{
    GraphNode node;
    node.Id = record.Id;
    node.Where = {_document.Document().File, record.Line, record.Id};
    ProblemList& problems = node.Problems.Making;
    if (_document.FindNode(record.Id) != index) {
        problems.Fail("doubled-id", node.Where, "another node already has this id");
        return node;
    }
    MadeNode made;
    try {
        made = _maker.Make(record.Type, node.Where);
        // A missing type has already been reported by the reader of the document.
        if (made.IsPlaceholder && !record.Type.empty()) {
            problems.Warn("unknown-type", node.Where,
                          UnknownType(record.Type).Message + _maker.SuggestType(record.Type));
        }
    } catch (const HostError& error) {
        try {
            made = {_maker.MakePlaceholder(record.Type, node.Where), true};
            problems.Fail("node-failed", error);
        } catch (const HostError& missing) {
            problems.Fail("no-placeholder", missing);
        }
    }
    node.Gui = made.Gui;
    node.IsPlaceholder = made.IsPlaceholder;
    // The type may be read before the placeholder has loaded it.
    if (node.IsPlaceholder && node.Gui)
        node.Gui.TypeProperty()->SetString(record.Type);
    return node;
}

std::set<std::string> NodeBuilder::Load(GraphNode& node, std::size_t index,
                                        const DocumentNode& record) const
{
    return RecordLoader(*this, index, record, node).Load();
}

void NodeBuilder::BuildPorts(GraphNode& node) const
{
    try {
        node.Gui.UpdatePorts(node.Where);
    } catch (const HostError& error) {
        node.Problems.Building.Fail("ports-refused", error);
    }
    node.OutputUses.assign(node.Gui.OutputPorts().size(), 0);
}

GraphNode NodeBuilder::Build(std::size_t index, const DocumentNode& record) const
{
    GraphNode node = Make(index, record);
    if (node.IsShown()) {
        Load(node, index, record);
        BuildPorts(node);
    }
    return node;
}

void NodeBuilder::Set(GuiProperty& property, const DocumentProperty& value, std::size_t index,
                      const Place& where) const
{
    if (value.Kind == GuiPropertyKind::Node && !value.Value.empty() &&
        !_document.FindNode(value.Value))
        throw HostError(where, UnknownNode(value.Value, _document.Document()));
    const auto fail = [&](const char*, const std::string& message) {
        throw HostError(where, message);
    };
    const auto parsed = GuiProperty::Create(value.Name);
    if (Parse(*parsed, value, *this, index, fail))
        CallLibrary(where, [&] { property.CopyFrom(parsed); });
}

std::optional<boost::shared_ptr<GuiNode>> NodeBuilder::LookUp(std::size_t referrer,
                                                              const std::string& id) const
{
    const auto target = _document.FindNode(id);
    if (!target)
        return std::nullopt;
    if (BrokenReferences.contains({referrer, *target}))
        return boost::shared_ptr<GuiNode>();
    return _nodeAt(*target).Gui.Handle();
}

std::string NodeBuilder::IdOf(const GuiNode* node) const
{
    const auto index = _view.Find(node);
    return index ? _nodeAt(*index).Id : std::string();
}

boost::shared_ptr<GuiNode> NodeBuilder::Renew(const boost::shared_ptr<GuiNode>& node) const
{
    const auto index = _view.Find(node.get());
    return index ? _nodeAt(*index).Gui.Handle() : node;
}

} // namespace Mox::Host
