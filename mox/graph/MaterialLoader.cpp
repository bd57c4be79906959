#include "mox/graph/MaterialLoader.h"

#include "mox/Text.h"
#include "mox/graph/EdgeRules.h"
#include "mox/graph/GraphOrder.h"
#include "mox/graph/StoredNode.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPropertyKind;

/// Each circle that is told of costs a walk over the whole graph, so that a document full of them
/// is given up on after some.
constexpr int mostCircles = 100;

class MaterialLoader
{
public:
    MaterialLoader(const MaterialDocument& document, NodeMaker maker, ProblemList& problems)
        : _document(document), _problems(problems), _graph(std::move(maker), document.File)
    {}

    MaterialGraph Load()
    {
        _graph.Reserve(_document.Nodes.size(), _document.Edges.size());
        _created.reserve(_document.Nodes.size());
        for (const DocumentNode& node : _document.Nodes)
            CreateNode(node);
        LoadNodes();
        BuildPorts();
        for (const DocumentEdge& edge : _document.Edges)
            LayEdge(edge);
        OrderByEdges();
        MaterialGraph material(std::move(_graph));
        material.Description = _document.Description;
        material.RenderState = _document.RenderState;
        material.Bindings = _document.Bindings;
        material.Comments = _document.Comments;
        return material;
    }

private:
    struct CreatedNode
    {
        const DocumentNode* Stored;
        bool IsLoaded = false;
        bool IsBuilt = false; ///< has its ports or has refused them
    };

    void CreateNode(const DocumentNode& stored)
    {
        GraphNode node;
        node.Id = stored.Id;
        node.Where = {_document.File, stored.Line, stored.Id, {}};
        if (_graph.FindNode(stored.Id)) {
            _problems.Fail("doubled-id", node.Where, "another node has this id already");
            return;
        }
        try {
            const MadeNode made = Make(stored.Type, node.Where);
            node.Gui = made.Gui;
            node.IsPlaceholder = made.IsPlaceholder;
        } catch (const HostError& error) {
            _problems.Fail("no-placeholder", error);
            _missing.insert(stored.Id);
            return;
        }
        node.Stored.Id = stored.Id;
        node.Stored.Type = stored.Type;
        node.Stored.Version = stored.Version;
        node.Stored.Line = stored.Line;
        node.Stored.Comments = stored.Comments;
        node.Stored.LastComments = stored.LastComments;
        const std::size_t index = _graph.CreateNode(std::move(node));
        _graph.AttachNode(index, GraphStore::None);
        _created.push_back({&stored});
        if (!HasReferences(stored))
            FinishNode(index);
    }

    static bool HasReferences(const DocumentNode& stored)
    {
        return std::any_of(stored.Properties.begin(), stored.Properties.end(),
                           [](const DocumentProperty& property) {
                               return property.Kind == GuiPropertyKind::Node;
                           });
    }

    /// A node that needs no other one is finished while it is in the cache. What is wrong with it
    /// waits until all nodes are made, as that of the others does.
    void FinishNode(std::size_t index)
    {
        ProblemList found;
        LoadNode(index, found);
        if (!found.Problems().empty())
            _found.emplace(index, std::move(found));
        BuildPorts(index);
    }

    MadeNode Make(const std::string& type, const Place& where)
    {
        try {
            MadeNode made = _graph.Maker().Make(type, where);
            // A document without the type has been reported by its reader.
            if (made.IsPlaceholder && !type.empty()) {
                _problems.Warn("unknown-type", where,
                               Compose("no plug-in offers the type \"", type, "\""));
            }
            return made;
        } catch (const HostError& error) {
            MadeNode made{_graph.Maker().MakePlaceholder(type, where), true};
            _problems.Fail("node-failed", error);
            return made;
        }
    }

    void LoadNodes()
    {
        for (std::size_t index = 0; index < _created.size(); ++index) {
            if (!_created[index].IsLoaded)
                LoadNode(index, _problems);
            else if (const auto found = _found.find(index); found != _found.end())
                _problems.Append(found->second);
        }
    }

    void LoadNode(std::size_t index, ProblemList& problems)
    {
        const GraphNode& node = _graph.Nodes()[index];
        const DocumentNode& stored = *_created[index].Stored;
        _graph.SetStoredProperties(
            index, _missing.empty()
                       ? LoadStored(_graph, node, stored, {}, problems)
                       : LoadStored(_graph, node, WithoutMissing(stored), {}, problems));
        _graph.RefreshReferences(index);
        _created[index].IsLoaded = true;
    }

    /// References to nodes that could not be made are no problem of their own.
    DocumentNode WithoutMissing(DocumentNode stored) const
    {
        std::erase_if(stored.Properties, [this](const DocumentProperty& property) {
            return property.Kind == GuiPropertyKind::Node && _missing.contains(property.Value);
        });
        return stored;
    }

    /// A node that refers to another one may copy from it as it builds its ports.
    void BuildPorts()
    {
        for (const std::size_t index : OrderByReference()) {
            if (!_created[index].IsBuilt)
                BuildPorts(index);
            if (const auto refusal = _portless.find(index); refusal != _portless.end())
                _problems.Fail("ports-refused", refusal->second);
        }
    }

    void BuildPorts(std::size_t index)
    {
        const GraphNode& node = _graph.Nodes()[index];
        try {
            node.Gui.UpdatePorts(node.Where);
        } catch (const HostError& error) {
            _portless.emplace(index, error);
            _graph.SetRefusedPorts(index, true);
        }
        _graph.JoinPorts(index);
        _created[index].IsBuilt = true;
    }

    std::vector<std::size_t> OrderByReference()
    {
        for (int circles = 0;; ++circles) {
            std::vector<OrderLink> links;
            for (std::size_t index = 0; index < _graph.Nodes().IndexEnd(); ++index) {
                for (const std::size_t target : _graph.References().Targets(index))
                    links.emplace_back(target, index);
            }
            const GraphOrder order = OrderNodes(_graph.Nodes().IndexEnd(), links);
            if (order.Cycle.empty())
                return order.Order;
            std::vector<std::size_t> circle(order.Cycle.rbegin(), order.Cycle.rend());
            RefuseReferenceCircle(_graph, circle, _problems);
            EmptyReferences(circle.back(), _graph.Nodes()[circle.front()]);
            for (std::size_t i = 0; circles == mostCircles && i < _graph.Nodes().IndexEnd(); ++i) {
                for (const std::size_t target : std::vector(_graph.References().Targets(i)))
                    EmptyReferences(i, _graph.Nodes()[target]);
            }
        }
    }

    void EmptyReferences(std::size_t index, const GraphNode& target)
    {
        const GraphNode& node = _graph.Nodes()[index];
        for (const auto& property : node.Gui.Properties().Properties) {
            if (property->Node == target.Gui.Handle())
                property->Node.reset();
        }
        std::vector<DocumentProperty> stored = node.Stored.Properties;
        std::erase_if(stored, [&](const DocumentProperty& property) {
            return property.Kind == GuiPropertyKind::Node && property.Value == target.Id;
        });
        _graph.SetStoredProperties(index, std::move(stored));
        _graph.RefreshReferences(index);
    }

    void LayEdge(const DocumentEdge& edge)
    {
        Place where{_document.File, edge.Line, {}, {}};
        const auto tail = FindEnd(edge.Tail, where);
        const auto head = FindEnd(edge.Head, where);
        if (!tail || !head || _portless.contains(*tail) || _portless.contains(*head))
            return;
        if (!CheckEdge(_graph, *tail, edge.TailPort, *head, edge.HeadPort, where, _problems))
            return;
        const std::size_t index = _graph.CreateEdge(*tail, edge.TailPort, *head, edge.HeadPort,
                                                    std::move(where), edge.Comments);
        _graph.AttachEdge(index, GraphStore::None);
    }

    std::optional<std::size_t> FindEnd(const std::string& id, const Place& where)
    {
        const auto index = _graph.FindNode(id);
        if (!index && !_missing.contains(id))
            _problems.Fail("unknown-node", where, Compose("there is no node \"", id, "\""));
        return index;
    }

    /// One pass over all edges, whatever the order in which the document has them.
    void OrderByEdges()
    {
        for (int circles = 0;; ++circles) {
            std::vector<OrderLink> links;
            links.reserve(_graph.Edges().size());
            for (const GraphEdge& edge : _graph.Edges())
                links.emplace_back(edge.Tail, edge.Head);
            const GraphOrder order = OrderNodes(_graph.Nodes().IndexEnd(), links);
            if (order.Cycle.empty()) {
                _graph.Order().Assign(order.Order);
                return;
            }
            RefuseCircle(_graph, order.Cycle, _graph.Nodes()[order.Cycle.front()].Where, _problems);
            DropEdges(order.Cycle.back(), order.Cycle.front());
            if (circles == mostCircles)
                DropAllEdges();
        }
    }

    void DropEdges(std::size_t tail, std::size_t head)
    {
        const auto links = _graph.Links().In(head);
        for (const std::size_t edge : std::vector<std::size_t>(links.begin(), links.end())) {
            if (_graph.Edges()[edge].Tail == tail)
                DropEdge(edge);
        }
    }

    void DropAllEdges()
    {
        while (_graph.Edges().size() > 0)
            DropEdge(_graph.Edges().begin().Index());
    }

    void DropEdge(std::size_t edge)
    {
        _graph.DetachEdge(edge);
        _graph.ReleaseEdge(edge);
    }

    const MaterialDocument& _document;
    ProblemList& _problems;
    GraphStore _graph;
    std::vector<CreatedNode> _created; ///< by index
    std::unordered_map<std::size_t, ProblemList>
        _found;                               ///< in loading nodes, until it is their turn
    std::unordered_set<std::string> _missing; ///< ids of nodes that could not be made
    std::unordered_map<std::size_t, HostError> _portless; ///< nodes that refused to build ports
};

} // namespace

MaterialGraph LoadMaterial(const MaterialDocument& document, NodeMaker maker, ProblemList& problems)
{
    return MaterialLoader(document, std::move(maker), problems).Load();
}

MaterialGraph LoadMaterial(const MaterialDocument& document, const PluginSet& plugins,
                           ProblemList& problems)
{
    return LoadMaterial(document, NodeMaker(plugins), problems);
}

MaterialGraph LoadMaterial(const MaterialDocument& document, const PluginSet& plugins)
{
    ProblemList problems;
    MaterialGraph material = LoadMaterial(document, plugins, problems);
    problems.ThrowFirstError();
    return material;
}

} // namespace Mox::Host
