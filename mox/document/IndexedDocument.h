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

/// The new description of a material.
struct DescriptionChange
{
    std::vector<DocumentValue> Values;
};

/// The new render state of a material.
struct RenderStateChange
{
    std::vector<DocumentValue> Values;
};

/// Returns the nodes, edges, bindings or annotations of a document.
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

/// A sequence of changes to the records of a document. It applies only to one state of one
/// document, because it refers to records by index. An edit returns its inverse in this form.
struct DocumentChange
{
    std::vector<DocumentStep> Steps;

    bool IsEmpty() const { return Steps.empty(); }
};

/// A document that is being edited, with tables that map ids to the records that contain them.
///
/// The tables may contain outdated entries: replaced values remain in them until the change is
/// final. A change can therefore be undone without allocating memory. Every query checks the record
/// itself.
class IndexedDocument
{
public:
    explicit IndexedDocument(MaterialDocument document);

    const MaterialDocument& Document() const { return _document; }

    /// Returns the index of the node with this id; the lowest if there are several.
    std::optional<std::size_t> FindNode(const std::string& id) const;

    /// Returns the nodes with a property that refers to the id, whether or not the node exists.
    std::vector<std::size_t> Referrers(const std::string& id) const;

    /// Return the edges that start or end at the node with this id, whether or not the node exists.
    std::vector<std::size_t> EdgesFrom(const std::string& id) const;
    std::vector<std::size_t> EdgesTo(const std::string& id) const;
    std::vector<std::size_t> EdgesInto(const std::string& id, const std::string& port) const;

    /// Returns the index of the binding with this stream and name; the lowest if there are several.
    std::optional<std::size_t> FindBinding(const std::string& stream, const std::string& tag) const;

    /// Returns the index of the annotation with this id; the lowest if there are several.
    std::optional<std::size_t> FindAnnotation(const std::string& id) const;

    /// Does the same for callers that require the annotation to exist.
    /// @throws HostError if there is no such annotation
    std::size_t RequireAnnotation(const std::string& id) const;

private:
    friend class DocumentEdit;

    /// Compares only the elements that both tuples have, so that a lookup by the leading names
    /// finds all entries that begin with them, without copying.
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

    /// Names in a record, followed by the index of the record.
    template <class... Names>
    using Entries = std::set<std::tuple<Names..., std::size_t>, PrefixLess>;

    /// Adds the new values of a step to the tables. Afterwards, the step itself can be applied.
    void Prepare(const DocumentStep& step);

    /// Applies a prepared step or undoes one, and turns it into its inverse.
    void Exchange(DocumentStep& step) noexcept;

    /// Removes the table entries that only the old record of a step required.
    /// @param done a step after Exchange
    void Forget(const DocumentStep& done) noexcept;

    template <class Record>
    bool HasId(std::size_t index, const std::string& id) const;
    bool IsOf(std::size_t binding, const std::string& stream, const std::string& tag) const;
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
    Entries<std::string> _referrers;             ///< id that is referred to; index of the node
    Entries<std::string> _tails;                 ///< id of the tail; index of the edge
    Entries<std::string, std::string> _heads;    ///< id and port of the head; index of the edge
    Entries<std::string, std::string> _bindings; ///< stream and tag
    Entries<std::string> _annotations;
};

/// A transaction on the records of a document. Unless Finish is called, the destructor undoes all
/// its changes.
class DocumentEdit
{
public:
    explicit DocumentEdit(IndexedDocument& document) : _document(document) {}
    DocumentEdit(const DocumentEdit&) = delete;
    DocumentEdit& operator=(const DocumentEdit&) = delete;
    ~DocumentEdit();

    const IndexedDocument& Document() const { return _document; }

    /// Applies a step. A new record requires an unused index.
    void Do(DocumentStep step);

    /// Steps for a node, an edge, a binding or an annotation. Each index must belong to a record.
    /// @param before index of the record that follows, or None
    /// @returns the index of the new record
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

    /// Returns the inverses of the steps so far, in the order in which the steps were applied.
    const std::vector<DocumentStep>& Done() const { return _done; }

    /// Commits the changes.
    /// @returns the change that undoes them
    DocumentChange Finish() noexcept;

private:
    void ForgetDone() noexcept;

    IndexedDocument& _document;
    std::vector<DocumentStep> _done;
};

} // namespace Mox::Host
