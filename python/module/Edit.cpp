#include "Edit.h"

#include "mox/authoring/GuiPropertyBag.h"
#include "mox/document/PropertyText.h"
#include "mox/json/ChangeJson.h"

#include <algorithm>

namespace Mox::Python {

namespace {

Host::Json ToJson(const Edit::Texts& values)
{
    Host::Json json = Host::Json::object();
    for (const auto& [name, value] : values)
        json[name] = value;
    return json;
}

Host::Json ToJson(const char* step, const PortView& tail, const PortView& head)
{
    return {{"do", step},
            {"tail", tail.Node.Id},
            {"tailPort", tail.Name},
            {"head", head.Node.Id},
            {"headPort", head.Name}};
}

} // namespace

NodeView Edit::Add(const std::string& type, const std::optional<std::string>& id,
                   const std::vector<GivenValue>& values, const std::string& before)
{
    std::string name = id.value_or(type);
    for (int number = 2; !id && IsTaken(name); ++number)
        name = type + std::to_string(number);
    const Host::CatalogueEntry* entry = _material->GetLibrary().FindType(type);
    _added[name] = type;
    Host::Json properties = Host::Json::array();
    for (const GivenValue& value : values)
        properties.push_back(ToProperty(name, value));
    Host::Json step = {{"do", "addNode"},
                       {"id", name},
                       {"type", type},
                       {"version", entry ? entry->Version : 0},
                       {"properties", std::move(properties)}};
    if (!before.empty())
        step["before"] = before;
    AddStep(std::move(step));
    return {_material, name, shared_from_this()};
}

void Edit::Remove(const std::string& node)
{
    AddStep({{"do", "removeNode"}, {"id", node}});
}

NodeView Edit::Rename(const std::string& node, const std::string& newId)
{
    AddStep({{"do", "renameNode"}, {"id", node}, {"newId", newId}});
    if (const auto added = _added.find(node); added != _added.end())
        _added[newId] = added->second;
    const auto renamed = _renamed.find(node);
    _renamed[newId] = renamed == _renamed.end() ? node : renamed->second;
    return {_material, newId, shared_from_this()};
}

void Edit::Connect(const PortView& tail, const PortView& head, bool replace)
{
    if (replace) {
        const bool isNew = head.Node.Draft && head.Node.Draft->IsOpen();
        if (const auto source = isNew ? std::nullopt : head.Source())
            AddStep(ToJson("removeEdge", *source, head));
    }
    AddStep(ToJson("addEdge", tail, head));
}

void Edit::Disconnect(const PortView& tail, const PortView& head)
{
    AddStep(ToJson("removeEdge", tail, head));
}

void Edit::Set(const std::string& node, const std::vector<GivenValue>& values)
{
    Host::Json settings = Host::Json::array();
    for (const GivenValue& value : values) {
        Host::Json setting = ToProperty(node, value);
        setting["node"] = node;
        settings.push_back(std::move(setting));
    }
    AddStep({{"do", "setProperties"}, {"settings", std::move(settings)}});
}

void Edit::SetPart(const char* name, const Texts& values)
{
    AddStep({{"do", name}, {"values", ToJson(values)}});
}

void Edit::SetBinding(const std::string& stream, const std::string& tag, const Texts& values)
{
    AddStep({{"do", "setBinding"}, {"stream", stream}, {"tag", tag}, {"values", ToJson(values)}});
}

void Edit::RemoveBinding(const std::string& stream, const std::string& tag)
{
    AddStep({{"do", "removeBinding"}, {"stream", stream}, {"tag", tag}});
}

Host::GraphChange Edit::Change() const
{
    const Host::Json change = {{"version", Host::ChangeJsonVersion}, {"steps", _steps}};
    const std::string text = Host::FormatJson(change);
    const py::gil_scoped_release release;
    return Host::ParseChangeJson(text, "edit");
}

void Edit::Finish()
{
    _isOpen = false;
    if (!_steps.empty())
        _material->Apply(Change(), _title);
}

void Edit::AddStep(Host::Json step)
{
    if (!_isOpen)
        throw Host::HostError({}, "the with block of this Edit has ended");
    _steps.push_back(std::move(step));
}

bool Edit::IsTaken(const std::string& id) const
{
    return _added.contains(id) || _renamed.contains(id) ||
           _material->Use([&](const auto& graph) { return graph.HasId(id); });
}

/// The keyword for the kind of a property. For a property that does not exist it is a guess, which
/// is refused when the change is applied.
std::string Edit::KindOf(const std::string& node, const GivenValue& value) const
{
    std::optional<Materials::GuiPropertyKind> kind;
    if (const auto added = _added.find(node); added != _added.end()) {
        if (const Host::CatalogueEntry* entry = _material->GetLibrary().FindType(added->second)) {
            for (const auto& property : entry->Properties) {
                if (property->Name == value.Name)
                    kind = property->Kind;
            }
        }
    } else {
        const auto renamed = _renamed.find(node);
        const std::string& id = renamed == _renamed.end() ? node : renamed->second;
        kind = _material->Use([&](const Host::MaterialGraph& graph) {
            std::optional<Materials::GuiPropertyKind> found;
            const auto number = graph.FindNode(id);
            if (!number)
                return found;
            for (const Host::DocumentProperty& property :
                 graph.Document().Nodes[*number].Properties) {
                if (property.Name == value.Name)
                    found = property.Kind;
            }
            const auto& index = graph.Nodes()[*number].Gui.Properties().Index;
            if (const auto property = index.find(value.Name); property != index.end())
                found = property->second->Kind;
            return found;
        });
    }
    return std::string(Host::FormatKind(kind.value_or(value.Guess)));
}

Host::Json Edit::ToProperty(const std::string& node, const GivenValue& value) const
{
    return {{"name", value.Name}, {"kind", KindOf(node, value)}, {"value", value.Text}};
}

} // namespace Mox::Python
