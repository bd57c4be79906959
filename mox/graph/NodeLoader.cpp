#include "mox/graph/NodeLoader.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Excerpt.h"
#include "mox/host/LibraryCall.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <map>
#include <vector>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiProperty;
using Materials::GuiPropertyBag;
using Materials::GuiPropertyKind;

namespace {

/// Gives property the kind and value of a text.
/// @param fail is called with rule and message if that cannot be
/// @returns whether the value counts
template <class Fail>
bool Parse(GuiProperty& property, const DocumentProperty& value, const NodeLookUp& lookUp,
           Fail fail)
{
    if (!SetFromText(property, value.Kind, value.Value)) {
        fail("bad-value", Compose("property ", Excerpt(value.Name), ": ", Excerpt(value.Value),
                                  " is no ", FormatKind(value.Kind), " value"));
        return false;
    }
    if (value.Kind != GuiPropertyKind::Node || value.Value.empty())
        return true;
    const auto target = lookUp(value.Value);
    if (!target) {
        fail("unknown-node", Compose("there is no node \"", value.Value, "\""));
        return false;
    }
    property.Node = *target;
    return *target != nullptr;
}

/// Loads the stored properties of one node.
class RecordLoader
{
public:
    RecordLoader(const DocumentNode& record, const GraphNode& node, const NodeLookUp& lookUp,
                 ProblemList& problems)
        : _record(record), _node(node), _lookUp(lookUp), _problems(problems),
          _bag(boost::make_shared<GuiPropertyBag>())
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
        if (!Parse(*property, stored, _lookUp, fail))
            return false;
        try {
            _bag->Add(property);
        } catch (const ShaderError& error) {
            fail("doubled-property", error.Message);
            return false;
        }
        _lines.emplace(stored.Name, stored.Line);
        if (!_node.IsPlaceholder && !_node.Gui.Properties().Index.contains(stored.Name)) {
            _problems.Warn("unknown-property", PlaceOf(stored.Line),
                           Compose("the type \"", _record.Type, "\" has no property \"",
                                   stored.Name, "\"; it is kept but has no effect"));
        }
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

    /// A set that is refused as a whole is searched for the properties that are the cause.
    void LoadWhatFits()
    {
        const GuiPropertyBag& own = _node.Gui.Properties();
        for (const auto& property : own.Properties) {
            const auto stored = _bag->Index.find(property->Name);
            if (_bag->Version > own.Version || stored == _bag->Index.end())
                continue;
            try {
                property->CopyFrom(stored->second);
            } catch (const ShaderError& error) {
                Refuse(property->Name, error.Message);
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
        const auto line = _lines.find(name);
        _problems.Fail("property-mismatch",
                       PlaceOf(line == _lines.end() ? _record.Line : line->second), message);
        const auto entry = _bag->Index.find(name);
        std::erase(_bag->Properties, entry->second);
        _bag->Index.erase(entry);
        _leftOut.insert(name);
    }

    const DocumentNode& _record;
    const GraphNode& _node;
    const NodeLookUp& _lookUp;
    ProblemList& _problems;
    boost::shared_ptr<GuiPropertyBag> _bag;
    std::map<std::string, int> _lines; ///< of the properties in the bag
    std::set<std::string> _leftOut;
};

} // namespace

std::set<std::string> LoadRecord(const DocumentNode& record, const GraphNode& node,
                                 const NodeLookUp& lookUp, ProblemList& problems)
{
    return RecordLoader(record, node, lookUp, problems).Load();
}

bool SetFromDocument(GuiProperty& property, const DocumentProperty& value, const NodeLookUp& lookUp,
                     const Place& where, ProblemList& problems)
{
    const auto parsed = GuiProperty::Create(value.Name);
    const auto fail = [&](ProblemRule rule, const std::string& message) {
        problems.Fail(rule, where, message);
    };
    if (!Parse(*parsed, value, lookUp, fail))
        return false;
    try {
        CallLibrary(where, [&] { property.CopyFrom(parsed); });
    } catch (const HostError& error) {
        problems.Fail("property-mismatch", error);
        return false;
    }
    return true;
}

} // namespace Mox::Host
