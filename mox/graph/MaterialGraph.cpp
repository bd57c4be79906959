#include "mox/graph/MaterialGraph.h"

#include "mox/document/PropertyText.h"
#include "mox/document/UnknownNode.h"
#include "mox/graph/EdgeStage.h"
#include "mox/graph/GraphEdit.h"
#include "mox/graph/HostValues.h"
#include "mox/graph/NodeStage.h"

#include <algorithm>
#include <map>

namespace Mox::Host {

using Materials::GuiPropertyKind;

namespace {

/// Rebuilds the nodes whose records were changed by steps.
/// @returns whether it succeeded, i.e. references do not form a cycle
bool Follow(const std::vector<DocumentStep>& done, const MaterialDocument& document,
            NodeStage& nodes)
{
    std::map<std::size_t, const RecordChange<DocumentNode>*>
        firsts; // changes with the oldest records
    for (const DocumentStep& step : done) {
        if (const auto* node = std::get_if<RecordChange<DocumentNode>>(&step))
            firsts.emplace(node->Index, node);
    }
    std::vector<std::size_t> changed;
    std::vector<std::size_t> reread;
    for (const auto& [index, first] : firsts) {
        const bool isSame = first->Content && document.Nodes.Holds(index) &&
                            AreSameButForHostValues(*first->Content, document.Nodes[index]);
        (isSame ? reread : changed).push_back(index);
    }
    if (!nodes.Rebuild(changed).empty())
        return false;
    for (const std::size_t index : reread)
        nodes.RereadHostValues(index);
    return true;
}

} // namespace

MaterialGraph::MaterialGraph(NodeMaker maker) : MaterialGraph({}, std::move(maker))
{}

MaterialGraph::MaterialGraph(MaterialDocument document, NodeMaker maker)
    : _maker(std::move(maker)), _document(std::move(document)), _view(BuildView())
{}

DocumentChange MaterialGraph::Apply(const GraphChange& change)
{
    DocumentEdit edit(_document);
    {
        NodeStage nodes(_view, _document, _maker);
        GraphEdit steps(edit, nodes);
        for (std::size_t i = 0; i < change.Steps.size(); ++i) {
            try {
                std::visit(steps, change.Steps[i]);
            } catch (const HostError& error) {
                throw RefusedStep(error, i);
            }
        }
        EdgeStage edges(_view, _document, nodes);
        edges.EraseLost(edit);
        edges.Judge(edit.Done());

        ProblemList broken;
        nodes.ReportNewErrors(broken);
        edges.ReportNewErrors(broken);
        WithSuggestions(broken, Document()).ThrowFirstError();
        const auto circle = edges.Admit();
        if (circle && circle->IsNew)
            throw circle->Error;
        if (!circle && (!_view.HasCircles() || (nodes.Staged().empty() && edges.IsEmpty())))
            return Commit(edit, nodes, edges);
    }
    return CommitAnew(edit);
}

DocumentChange MaterialGraph::Undo(DocumentChange inverse)
{
    DocumentEdit edit(_document);
    for (DocumentStep& step : inverse.Steps)
        edit.Do(std::move(step));
    {
        NodeStage nodes(_view, _document, _maker);
        EdgeStage edges(_view, _document, nodes);
        bool isFree = Follow(edit.Done(), Document(), nodes); // whether there are no cycles
        if (isFree) {
            edges.Judge(edit.Done());
            isFree = !edges.Admit() &&
                     (!_view.HasCircles() || (nodes.Staged().empty() && edges.IsEmpty()));
        }
        if (isFree)
            return Commit(edit, nodes, edges);
    }
    return CommitAnew(edit);
}

DocumentNode MaterialGraph::WithoutReferences(std::size_t node,
                                              const std::vector<std::string>& ids) const
{
    const NodeBuilder builder(_view, _document, _maker, [this](std::size_t index) -> const Node& {
        return _view.Node(index);
    });
    PropertyEdit edit(builder, node, Document().Nodes[node]);
    for (const std::string& id : ids)
        edit.EmptyReferences(id);
    if (edit.HasChanged())
        edit.Settle();
    return edit.Record();
}

std::optional<std::size_t> MaterialGraph::FindNode(const std::string& id) const
{
    const auto index = _document.FindNode(id);
    return index && _view.Node(*index).IsShown() ? index : std::nullopt;
}

std::size_t MaterialGraph::FindNode(const std::string& id, const Place& where) const
{
    const auto index = FindNode(id);
    if (!index)
        throw HostError(where, UnknownNode(id, Document()));
    return *index;
}

std::string MaterialGraph::IdOf(const Materials::GuiNode* node) const
{
    const auto index = _view.Find(node);
    return index ? _view.Node(*index).Id : std::string();
}

bool MaterialGraph::HasLooseEdge(std::size_t head, const std::string& headPort) const
{
    const auto edges = _document.EdgesInto(_view.Node(head).Id, headPort);
    return std::any_of(edges.begin(), edges.end(), [&](std::size_t edge) {
        return _view.Edge(edge).IsShown() && _view.Edge(edge).IsLoose;
    });
}

/// Builds a new view from the document.
GraphView MaterialGraph::BuildView() const
{
    GraphView view;
    view.Reserve(Document().Nodes.IndexEnd(), Document().Edges.IndexEnd());
    {
        NodeStage nodes(view, _document, _maker);
        nodes.BuildAll();
        EdgeStage edges(view, _document, nodes);
        edges.JudgeAll();
        std::set<NodeReference> broken = nodes.Builder().BrokenReferences;
        nodes.Commit();
        edges.CommitNew();
        view.SetCircles(std::move(broken), std::move(nodes.ReferenceCircles),
                        std::move(edges.Circles));
    }
    return view;
}

/// Moves the new nodes and edges into the view.
DocumentChange MaterialGraph::Commit(DocumentEdit& edit, NodeStage& nodes,
                                     EdgeStage& edges) noexcept
{
    edges.CommitHidden();
    nodes.Commit();
    edges.CommitNew();
    return edit.Finish();
}

/// Rebuilds the view: if there are cycles, the omitted links depend on the whole document.
DocumentChange MaterialGraph::CommitAnew(DocumentEdit& edit)
{
    _view = BuildView();
    return edit.Finish();
}

} // namespace Mox::Host
