#pragma once

#include "mox/document/MaterialDocument.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Mox::Host {

/// What the description of a material becomes.
struct DescriptionChange
{
    std::vector<DocumentValue> Values;
};

/// What the render state of a material becomes.
struct RenderStateChange
{
    std::vector<DocumentValue> Values;
};

/// The nodes, edges, bindings or annotations of a document.
template <class Record, class Document>
auto& RecordsOf(Document& document)
{
    if constexpr (std::is_same_v<Record, DocumentNode>)
        return document.Nodes;
    else if constexpr (std::is_same_v<Record, DocumentEdge>)
        return document.Edges;
    else if constexpr (std::is_same_v<Record, DocumentBinding>)
        return document.Bindings;
    else
        return document.Annotations;
}

using DocumentStep = std::variant<RecordChange<DocumentNode>, RecordChange<DocumentEdge>,
                                  RecordChange<DocumentBinding>, RecordChange<DocumentAnnotation>,
                                  DescriptionChange, RenderStateChange>;

/// Changes of the records of a document, in the order in which they are made. It fits one state of
/// one document, since it names records by number. An edit gives such a change as its inverse.
struct DocumentChange
{
    std::vector<DocumentStep> Steps;

    bool IsEmpty() const { return Steps.empty(); }
};

/// A document that is being edited, with tables of which of its records name an id.
///
/// The tables may name more than there is: what a change replaces stays in them until the change is
/// final. So a change can be taken back without any memory. Every question checks the record
/// itself.
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

    /// The number of the binding of a stream and a name; of several, the smallest.
    std::optional<std::size_t> FindBinding(const std::string& stream, const std::string& tag) const;

    /// The number of the annotation with an id; of several with the same one, the smallest.
    std::optional<std::size_t> FindAnnotation(const std::string& id) const;

    /// The same for callers that need one.
    /// @throws HostError if there is none
    std::size_t RequireAnnotation(const std::string& id) const;

private:
    friend class DocumentEdit;

    /// Compares as many elements as both tuples have, so that the first names find all entries that
    /// begin with them, without a copy.
    struct PrefixLess
    {
        using is_transparent = void;

        template <std::size_t Position = 0, class Left, class Right>
        bool operator()(const Left& left, const Right& right) const
        {
            if constexpr (Position == std::min(std::tuple_size_v<Left>, std::tuple_size_v<Right>)) {
                return false;
            } else {
                const auto order = std::get<Position>(left) <=> std::get<Position>(right);
                return std::is_neq(order) ? std::is_lt(order) :
                                          operator()<Position + 1>(left, right);
            }
        }
    };

    /// Names in a record, and its number.
    template <class... Names>
    using Entries = std::set<std::tuple<Names..., std::size_t>, PrefixLess>;

    /// Enters in the tables what a step brings. The step itself may follow then.
    void Prepare(const DocumentStep& step);

    /// Makes a prepared step, or takes one back, and turns it into its inverse.
    void Exchange(DocumentStep& step) noexcept;

    /// Removes from the tables what only the old record of a step was in them for.
    /// @param done a step after Exchange
    void Forget(const DocumentStep& done) noexcept;

    bool HasId(std::size_t node, const std::string& id) const;
    bool IsOf(std::size_t binding, const std::string& stream, const std::string& tag) const;
    bool HasAnnotationId(std::size_t annotation, const std::string& id) const;
    bool RefersTo(std::size_t node, const std::string& id) const;
    bool HasTail(std::size_t edge, const std::string& id) const;
    bool HasHead(std::size_t edge, const std::string& id, const std::string& port) const;

    void Enter(std::size_t index, const DocumentNode& node);
    void Enter(std::size_t index, const DocumentEdge& edge);
    void Enter(std::size_t index, const DocumentBinding& binding);
    void Enter(std::size_t index, const DocumentAnnotation& annotation);
    void Leave(std::size_t index, const DocumentNode& node) noexcept;
    void Leave(std::size_t index, const DocumentEdge& edge) noexcept;
    void Leave(std::size_t index, const DocumentBinding& binding) noexcept;
    void Leave(std::size_t index, const DocumentAnnotation& annotation) noexcept;

    MaterialDocument _document;
    Entries<std::string> _ids;
    Entries<std::string> _referrers;             ///< id that is referred to; nodes
    Entries<std::string> _tails;                 ///< id of the tail; edges
    Entries<std::string, std::string> _heads;    ///< id and port of the head; edges
    Entries<std::string, std::string> _bindings; ///< stream and tag
    Entries<std::string> _annotations;
};

/// One run of changes over the records of a document. Unless it is finished, it takes all of them
/// back in the end.
class DocumentEdit
{
public:
    explicit DocumentEdit(IndexedDocument& document) : _document(document) {}
    DocumentEdit(const DocumentEdit&) = delete;
    DocumentEdit& operator=(const DocumentEdit&) = delete;
    ~DocumentEdit();

    const IndexedDocument& Document() const { return _document; }

    /// Makes a step. A new record needs a number that is free.
    void Do(DocumentStep step);

    /// Steps for a node, an edge, a binding or an annotation. Each number is that of a record.
    /// @param before number of the record that follows, or None
    /// @returns the number of the new record
    template <class Record>
    std::size_t Insert(Record record, std::size_t before)
    {
        const std::size_t index = RecordsOf<Record>(_document._document).ReserveIndex();
        Do(RecordChange<Record>{index, std::move(record), before});
        return index;
    }

    template <class Record>
    void Replace(std::size_t index, Record record)
    {
        const std::size_t next = RecordsOf<Record>(_document._document).Next(index);
        Do(RecordChange<Record>{index, std::move(record), next});
    }

    template <class Record>
    void Erase(std::size_t index)
    {
        Do(RecordChange<Record>{index, std::nullopt});
    }

    /// The steps so far, each turned into the one that takes it back, in the order of doing.
    const std::vector<DocumentStep>& Done() const { return _done; }

    /// Makes what was done final.
    /// @returns the change that takes it back
    DocumentChange Finish() noexcept;

private:
    void ForgetDone() noexcept;

    IndexedDocument& _document;
    std::vector<DocumentStep> _done;
};

} // namespace Mox::Host
