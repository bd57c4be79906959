#include "mox/document/IndexedDocument.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

/// Returns the lowest index among the entries with these names whose records still have them.
template <class Entries, class Names, class IsTrue>
std::optional<std::size_t> First(const Entries& entries, const Names& names, IsTrue isTrue)
{
    const auto isPast = entries.key_comp();
    for (auto entry = entries.lower_bound(names); entry != entries.end() && !isPast(names, *entry);
         ++entry) {
        if (const auto index = std::get<std::size_t>(*entry); isTrue(index))
            return index;
    }
    return std::nullopt;
}

/// Returns the indices of the records for the entries with these names, excluding outdated entries.
/// @param isTrue receives the index and the entry
template <class Entries, class Names, class IsTrue>
std::vector<std::size_t> Collect(const Entries& entries, const Names& names, IsTrue isTrue)
{
    std::vector<std::size_t> found;
    const auto [begin, end] = entries.equal_range(names);
    for (auto entry = begin; entry != end; ++entry) {
        if (const auto index = std::get<std::size_t>(*entry); isTrue(index, *entry))
            found.push_back(index);
    }
    return found;
}

/// Calls use with the index and the record of a step that has a record.
template <class Use>
void ForContent(const DocumentStep& step, Use use)
{
    std::visit(
        [&](const auto& change) {
            if constexpr (requires { change.Content; }) {
                if (change.Content)
                    use(change.Index, *change.Content);
            }
        },
        step);
}

/// Swaps the content of a step with that of the document.
struct Exchanger
{
    template <class Record>
    void operator()(RecordChange<Record>& change) const
    {
        RecordsOf<Record>(Document).Exchange(change);
    }
    void operator()(DescriptionChange& change) const { Document.Description.swap(change.Values); }
    void operator()(RenderStateChange& change) const { Document.RenderState.swap(change.Values); }

    MaterialDocument& Document;
};

template <class Entries, class Key>
void Erase(Entries& entries, const Key& key) noexcept
{
    if (const auto entry = entries.find(key); entry != entries.end())
        entries.erase(entry);
}

} // namespace

IndexedDocument::IndexedDocument(MaterialDocument document) : _document(std::move(document))
{
    const auto enterAll = [this](const auto& records) {
        for (auto record = records.begin(); record != records.end(); ++record)
            Enter(record.Index(), *record);
    };
    enterAll(_document.Nodes);
    enterAll(_document.Edges);
    enterAll(_document.Bindings);
    enterAll(_document.Annotations);
}

template <class Record>
bool IndexedDocument::HasId(std::size_t index, const std::string& id) const
{
    const auto& records = RecordsOf<Record>(_document);
    return records.Holds(index) && records[index].Id == id;
}

std::optional<std::size_t> IndexedDocument::FindNode(const std::string& id) const
{
    return First(_ids, std::tie(id),
                 [&](std::size_t node) { return HasId<DocumentNode>(node, id); });
}

std::vector<std::size_t> IndexedDocument::Referrers(const std::string& id) const
{
    return Collect(_referrers, std::tie(id),
                   [&](std::size_t node, const auto&) { return RefersTo(node, id); });
}

std::vector<std::size_t> IndexedDocument::EdgesFrom(const std::string& id) const
{
    return Collect(_tails, std::tie(id),
                   [&](std::size_t edge, const auto&) { return HasTail(edge, id); });
}

std::vector<std::size_t> IndexedDocument::EdgesTo(const std::string& id) const
{
    return Collect(_heads, std::tie(id), [&](std::size_t edge, const auto& entry) {
        return HasHead(edge, id, std::get<1>(entry));
    });
}

std::vector<std::size_t> IndexedDocument::EdgesInto(const std::string& id,
                                                    const std::string& port) const
{
    return Collect(_heads, std::tie(id, port),
                   [&](std::size_t edge, const auto&) { return HasHead(edge, id, port); });
}

std::optional<std::size_t> IndexedDocument::FindBinding(const std::string& stream,
                                                        const std::string& tag) const
{
    return First(_bindings, std::tie(stream, tag),
                 [&](std::size_t binding) { return IsOf(binding, stream, tag); });
}

std::optional<std::size_t> IndexedDocument::FindAnnotation(const std::string& id) const
{
    return First(_annotations, std::tie(id),
                 [&](std::size_t index) { return HasId<DocumentAnnotation>(index, id); });
}

std::size_t IndexedDocument::RequireAnnotation(const std::string& id) const
{
    const auto index = FindAnnotation(id);
    if (!index)
        throw HostError({_document.File}, Compose("there is no annotation \"", id, "\""));
    return *index;
}

void IndexedDocument::Prepare(const DocumentStep& step)
{
    ForContent(step, [this](std::size_t index, const auto& record) { Enter(index, record); });
}

void IndexedDocument::Exchange(DocumentStep& step) noexcept
{
    std::visit(Exchanger{_document}, step);
}

void IndexedDocument::Forget(const DocumentStep& done) noexcept
{
    ForContent(done, [this](std::size_t index, const auto& record) { Leave(index, record); });
}

bool IndexedDocument::IsOf(std::size_t binding, const std::string& stream,
                           const std::string& tag) const
{
    return _document.Bindings.Holds(binding) && _document.Bindings[binding].Stream == stream &&
           _document.Bindings[binding].Tag == tag;
}

bool IndexedDocument::RefersTo(std::size_t node, const std::string& id) const
{
    if (!_document.Nodes.Holds(node))
        return false;
    const auto& properties = _document.Nodes[node].Properties;
    return std::any_of(properties.begin(), properties.end(), [&](const DocumentProperty& property) {
        return property.Kind == GuiPropertyKind::Node && property.Value == id;
    });
}

bool IndexedDocument::HasTail(std::size_t edge, const std::string& id) const
{
    return _document.Edges.Holds(edge) && _document.Edges[edge].Tail == id;
}

bool IndexedDocument::HasHead(std::size_t edge, const std::string& id,
                              const std::string& port) const
{
    return _document.Edges.Holds(edge) && _document.Edges[edge].Head == id &&
           _document.Edges[edge].HeadPort == port;
}

void IndexedDocument::Enter(std::size_t index, const DocumentNode& node)
{
    _ids.emplace(node.Id, index);
    for (const DocumentProperty& property : node.Properties) {
        if (property.Kind == GuiPropertyKind::Node && !property.Value.empty())
            _referrers.emplace(property.Value, index);
    }
}

void IndexedDocument::Enter(std::size_t index, const DocumentEdge& edge)
{
    _tails.emplace(edge.Tail, index);
    _heads.emplace(edge.Head, edge.HeadPort, index);
}

void IndexedDocument::Enter(std::size_t index, const DocumentBinding& binding)
{
    _bindings.emplace(binding.Stream, binding.Tag, index);
}

void IndexedDocument::Enter(std::size_t index, const DocumentAnnotation& annotation)
{
    _annotations.emplace(annotation.Id, index);
}

void IndexedDocument::Leave(std::size_t index, const DocumentNode& node) noexcept
{
    if (!HasId<DocumentNode>(index, node.Id))
        Erase(_ids, std::tie(node.Id, index));
    for (const DocumentProperty& property : node.Properties) {
        if (property.Kind == GuiPropertyKind::Node && !RefersTo(index, property.Value))
            Erase(_referrers, std::tie(property.Value, index));
    }
}

void IndexedDocument::Leave(std::size_t index, const DocumentEdge& edge) noexcept
{
    if (!HasTail(index, edge.Tail))
        Erase(_tails, std::tie(edge.Tail, index));
    if (!HasHead(index, edge.Head, edge.HeadPort))
        Erase(_heads, std::tie(edge.Head, edge.HeadPort, index));
}

void IndexedDocument::Leave(std::size_t index, const DocumentBinding& binding) noexcept
{
    if (!IsOf(index, binding.Stream, binding.Tag))
        Erase(_bindings, std::tie(binding.Stream, binding.Tag, index));
}

void IndexedDocument::Leave(std::size_t index, const DocumentAnnotation& annotation) noexcept
{
    if (!HasId<DocumentAnnotation>(index, annotation.Id))
        Erase(_annotations, std::tie(annotation.Id, index));
}

DocumentEdit::~DocumentEdit()
{
    for (auto step = _done.rbegin(); step != _done.rend(); ++step)
        _document.Exchange(*step);
    ForgetDone();
}

void DocumentEdit::Do(DocumentStep step)
{
    _document.Prepare(step);
    _done.push_back(std::move(step));
    _document.Exchange(_done.back());
}

DocumentChange DocumentEdit::Finish() noexcept
{
    ForgetDone();
    std::reverse(_done.begin(), _done.end());
    return {std::exchange(_done, {})};
}

void DocumentEdit::ForgetDone() noexcept
{
    for (const DocumentStep& step : _done)
        _document.Forget(step);
}

} // namespace Mox::Host
