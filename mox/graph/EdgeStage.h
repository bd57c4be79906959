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

/// The edges of an update: which of those that a change concerns are to be shown, and what is wrong
/// with the others. Before Commit the nodes and edges of the view stay as they are.
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

    /// Erases the records of shown edges whose port a new node does not have.
    void EraseLost(DocumentEdit& edit) const;

    /// Judges the edges that steps and new nodes concern, by themselves.
    /// @param done as DocumentEdit has it
    void Judge(const std::vector<DocumentStep>& done);

    /// Judges all edges of the document. Where they run in circles, some are left out.
    void JudgeAll();

    /// Reports what is wrong with edges that were shown before or are new.
    void ReportNewErrors(ProblemList& problems) const;

    /// An edge that would close a cycle.
    struct Circle
    {
        HostError Error;
        bool IsNew; ///< false if the edge was there before but not shown: a problem already
    };

    /// Puts what was judged in the table of links, edge by edge, and edges that were problems last.
    /// So a cycle that is found among the others is one that the change makes.
    /// @returns the first edge that closes a cycle, or nothing
    std::optional<Circle> Admit();

    /// Whether there is nothing to do.
    bool IsEmpty() const { return _new.empty() && _hidden.empty() && _notes.empty(); }

    /// Take edges out of the view, and put new ones in; nodes change in between.
    void CommitHidden() noexcept;
    void CommitNew() noexcept;

    /// Where edges run in circles, as JudgeAll found them.
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
    std::vector<std::size_t> _ranks; ///< place in the document by edge, once it is needed

    /// What is to be done.
    std::vector<std::size_t> _hidden;
    std::vector<std::pair<std::size_t, GraphView::NewEdge>> _new;
    std::size_t _firstRevived = 0;   ///< place in _new from which edges were problems before
    std::vector<std::size_t> _notes; ///< verdicts of other edges

    /// What Admit has done to the links: those are edges of _hidden and _new.
    std::size_t _removedLinks = 0;
    std::size_t _addedLinks = 0;
};

} // namespace Mox::Host
