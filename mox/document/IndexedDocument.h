#pragma once

#include "mox/document/DocumentChange.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// A document that is being edited, with tables that tell which of its records name an id.
///
/// The tables may name more than there is: what a change replaces stays in them until Forget. So a
/// change can be taken back without any memory. Every question checks the record itself.
class IndexedDocument
{
public:
    explicit IndexedDocument(MaterialDocument document);

    const MaterialDocument& Document() const { return _document; }

    /// The number of the node with an id; of several with the same one, the smallest.
    std::optional<std::size_t> FindNode(const std::string& id) const;

    /// The nodes with a property that refers to the id, whether there is such a node or not.
    std::vector<std::size_t> Referrers(const std::string& id) const;

    /// The edges that leave or reach the node with an id, whether there is such a node or not.
    std::vector<std::size_t> EdgesFrom(const std::string& id) const;
    std::vector<std::size_t> EdgesTo(const std::string& id) const;
    std::vector<std::size_t> EdgesInto(const std::string& id, const std::string& port) const;

    /// The number of the binding of a stream and a name.
    std::optional<std::size_t> FindBinding(const std::string& stream, const std::string& tag) const;

    /// A number for a new node, edge or binding.
    template <class Record>
    std::size_t Reserve()
    {
        return RecordsOf<Record>(_document).ReserveIndex();
    }

    /// Enters in the tables what a step brings. The step itself may follow then.
    void Prepare(const DocumentStep& step);

    /// Makes a prepared step, or takes one back, and turns it into its inverse.
    void Exchange(DocumentStep& step) noexcept;

    /// Removes from the tables what only the old record of a step was in them for.
    /// @param done a step after Exchange
    void Forget(const DocumentStep& done) noexcept;

private:
    using Ids = std::unordered_multimap<std::string, std::size_t>;

    /// Names of a record, and its number. Found by tuples of references, without a copy.
    template <class... Names>
    using Entries = std::set<std::tuple<Names..., std::size_t>, std::less<>>;

    bool HasId(std::size_t node, const std::string& id) const;
    bool RefersTo(std::size_t node, const std::string& id) const;
    bool HasTail(std::size_t edge, const std::string& id) const;
    bool HasHead(std::size_t edge, const std::string& id, const std::string& port) const;

    Ids::iterator FindEntry(std::size_t index, const std::string& id);
    void Enter(std::size_t index, const DocumentNode& node);
    void Enter(std::size_t index, const DocumentEdge& edge);
    void Leave(std::size_t index, const DocumentNode& node) noexcept;
    void Leave(std::size_t index, const DocumentEdge& edge) noexcept;

    MaterialDocument _document;
    Ids _nodes;
    Entries<std::string> _referrers;          ///< id that is referred to; nodes
    Entries<std::string> _tails;              ///< id of the tail; edges
    Entries<std::string, std::string> _heads; ///< id and port of the head; edges
};

} // namespace Mox::Host
