#include "mox/host/MaterialLoader.h"

#include "mox/Text.h"
#include "mox/host/GraphOrder.h"
#include "mox/host/LibraryCall.h"
#include "mox/host/PropertyText.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiProperty;
using Materials::GuiPropertyBag;
using Materials::GuiPropertyKind;

constexpr const char* placeholderType = "CoreDefault";

class MaterialLoader
{
public:
    MaterialLoader(const MaterialDocument& document, const PluginSet& plugins)
        : _document(document), _plugins(plugins)
    {}

    MaterialGraph Load()
    {
        for (const DocumentNode& node : _document.Nodes)
            CreateNode(node);
        for (std::size_t i = 0; i < _document.Nodes.size(); ++i)
            LoadNode(i);
        // A node that refers to another one may copy from it as it builds its ports.
        for (const std::size_t i : OrderByReference()) {
            const MaterialGraph::Node& node = _graph.Nodes()[i];
            CallLibrary(node.Where, [&] { node.Gui->UpdatePorts({}); });
        }
        for (const DocumentEdge& edge : _document.Edges) {
            _graph.Connect(edge.Tail, edge.TailPort, edge.Head, edge.HeadPort,
                           {_document.File, edge.Line, {}, {}});
        }
        return std::move(_graph);
    }

private:
    void CreateNode(const DocumentNode& node)
    {
        const Place where = PlaceOf(node, node.Line);
        auto created = CallLibrary(where, [&] { return _plugins.CreateNode(node.Type); });
        const bool isPlaceholder = !created;
        if (isPlaceholder)
            created = CallLibrary(where, [&] { return _plugins.CreateNode(placeholderType); });
        if (!created) {
            throw HostError(where, Compose("no plug-in offers the type \"", node.Type,
                                           "\", nor a placeholder for it"));
        }
        _graph.AddNode(node.Id, created, isPlaceholder, where);
    }

    void LoadNode(std::size_t index)
    {
        const DocumentNode& node = _document.Nodes[index];
        const auto bag = boost::make_shared<GuiPropertyBag>();
        bag->Version = node.Version;
        auto type = GuiProperty::Create("Type");
        type->SetString(node.Type);
        bag->Add(type);
        for (const DocumentProperty& stored : node.Properties) {
            const Place where = PlaceOf(node, stored.Line);
            auto property = GuiProperty::Create(stored.Name);
            if (!SetFromText(*property, stored.Kind, stored.Value)) {
                throw HostError(where, Compose("property \"", stored.Name, "\": \"", stored.Value,
                                               "\" is no ", FormatKind(stored.Kind), " value"));
            }
            if (stored.Kind == GuiPropertyKind::Node && !stored.Value.empty()) {
                const std::size_t target = _graph.FindNode(stored.Value, where);
                property->Node = _graph.Nodes()[target].Gui;
                _references.emplace_back(target, index);
            }
            CallLibrary(where, [&] { bag->Add(property); });
        }
        GuiNode& target = *_graph.Nodes()[index].Gui;
        try {
            CallLibrary(PlaceOf(node, node.Line), [&] { target.LoadProperties(bag); });
        } catch (const HostError& error) {
            throw HostError(PlaceOf(node, FailingLine(node, target, bag)), error.Message);
        }
    }

    /// After a failed load: the line of the first stored property that does not fit, or else, since
    /// the set as a whole was refused, of the node.
    static int FailingLine(const DocumentNode& node, const GuiNode& target,
                           const boost::shared_ptr<GuiPropertyBag>& bag)
    {
        if (bag->Version > target.Properties->Version)
            return node.Line;
        for (const auto& property : target.Properties->Properties) {
            const auto stored = bag->Index.find(property->Name);
            if (stored == bag->Index.end())
                continue;
            try {
                property->CopyFrom(stored->second);
            } catch (const ShaderError&) {
                for (const DocumentProperty& line : node.Properties) {
                    if (line.Name == property->Name)
                        return line.Line;
                }
            }
        }
        return node.Line;
    }

    std::vector<std::size_t> OrderByReference() const
    {
        const GraphOrder order = OrderNodes(_graph.Nodes().size(), _references);
        if (order.Cycle.empty())
            return order.Order;
        // References run against the order that they ask for.
        std::string path;
        for (auto i = order.Cycle.rbegin(); i != order.Cycle.rend(); ++i)
            path += Compose("\"", _graph.Nodes()[*i].Id, "\" -> ");
        const MaterialGraph::Node& first = _graph.Nodes()[order.Cycle.back()];
        throw HostError(first.Where,
                        Compose("references run in a circle: ", path, "\"", first.Id, "\""));
    }

    Place PlaceOf(const DocumentNode& node, int line) const
    {
        return {_document.File, line, node.Id, {}};
    }

    const MaterialDocument& _document;
    const PluginSet& _plugins;
    MaterialGraph _graph;
    std::vector<OrderLink> _references; ///< from the node referred to to the one that refers
};

} // namespace

MaterialGraph LoadMaterial(const MaterialDocument& document, const PluginSet& plugins)
{
    return MaterialLoader(document, plugins).Load();
}

} // namespace Mox::Host
