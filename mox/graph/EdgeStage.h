#pragma once

#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphOrder.h"
#include "mox/graph/GraphView.h"
#include "mox/graph/NodeStage.h"
#include "mox/host/HostError.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// The edges of an update: determines which of the edges affected by a change are shown, and
/// collects the problems of the others. Nodes and edges of the view are not modified before Commit.
class EdgeStage
{
public:
    /// @param view, document and nodes must outlive the stage
    EdgeStage(GraphView& view, const IndexedDocument& document, const NodeStage& nodes)
        : _view(view), _document(document), _nodes(nodes)
    {}
    EdgeStage(const EdgeStage&) = delete;
    EdgeStage& operator=(const EdgeStage&) = delete;
    ~EdgeStage();

    /// Erases the records of shown edges whose port does not exist on a new node.
    void EraseLost(DocumentEdit& edit) const;

    /// Checks the edges affected by steps and new nodes, each individually.
    /// @param done as in DocumentEdit
    void Judge(const std::vector<DocumentStep>& done);

    /// Checks all edges of the document. If edges form cycles, some of them are omitted.
    void JudgeAll();

    /// Reports the problems of edges that were shown before or are new.
    void ReportNewErrors(ProblemList& problems) const;

    /// An edge that would close a cycle.
    struct Circle
    {
        HostError Error;
        bool IsNew; ///< false if the edge existed before but was not shown
    };

    /// Adds the checked edges to the link table one by one; edges that had problems before come
    /// last. A cycle found among the other edges is therefore caused by the change.
    /// @returns the first edge that closes a cycle, or nullopt
    std::optional<Circle> Admit();

    /// Whether there is nothing to commit.
    bool IsEmpty() const { return _new.empty() && _hidden.empty() && _notes.empty(); }

    /// Remove edges from the view, and add new ones; nodes are replaced between the two calls.
    void CommitHidden() noexcept;
    void CommitNew() noexcept;

    /// The cycles of edges that JudgeAll found.
    ProblemList Circles;

private:
    struct Verdict
    {
        std::size_t Index;
        GraphEdge Edge; ///< without its object
        bool IsShown = false;
        bool IsInserted = false;
    };

    using Input = std::pair<std::string_view, std::string_view>; ///< id and port of the head

    std::vector<Input> FindInputs(const std::vector<DocumentStep>& done) const;
    std::vector<std::size_t> InDocumentOrder(std::vector<std::size_t> edges);
    bool IsAsShown(std::size_t edge) const;
    bool WasProblem(const Verdict& verdict) const;

    Verdict JudgeOne(std::size_t index) const;
    void RefuseSecond(Verdict& verdict) const;
    std::optional<std::size_t> FindEnd(const std::string& id, GraphEdge& edge) const;
    std::vector<OrderLink> LinksOfVerdicts(const std::vector<std::size_t>& positions) const;
    void LeaveOutCircles();
    void Prepare();

    GraphView& _view;
    const IndexedDocument& _document;
    const NodeStage& _nodes;
    std::vector<Verdict> _verdicts;
    std::vector<std::size_t> _ranks; ///< positions of edges in the document, computed on demand

    /// The pending changes.
    std::vector<std::size_t> _hidden;
    std::vector<std::pair<std::size_t, GraphView::NewEdge>> _new;
    std::size_t _firstRevived = 0;   ///< index in _new of the first edge that had a problem before
    std::vector<std::size_t> _notes; ///< indices of the verdicts on all other edges

    /// The changes that Admit has made to the links, as numbers of edges in _hidden and _new.
    std::size_t _removedLinks = 0;
    std::size_t _addedLinks = 0;
};

} // namespace Mox::Host
