#include "mox/document/IndexedDocument.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace Mox::Host {

using Materials::GuiPropertyKind;

namespace {

/// The numbers of the records that entries with these names stand for, as far as they are true.
/// @param isTrue takes the number and the entry
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

/// Exchanges what a step holds with what the document holds.
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
    for (auto node = _document.Nodes.begin(); node != _document.Nodes.end(); ++node)
        Enter(node.Index(), *node);
    for (auto edge = _document.Edges.begin(); edge != _document.Edges.end(); ++edge)
        Enter(edge.Index(), *edge);
}

std::optional<std::size_t> IndexedDocument::FindNode(const std::string& id) const
{
    const auto [begin, end] = _ids.equal_range(std::tie(id));
    const auto node = std::find_if(
        begin, end, [&](const auto& entry) { return HasId(std::get<std::size_t>(entry), id); });
    if (node == end)
        return std::nullopt;
    return std::get<std::size_t>(*node);
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
    const auto& bindings = _document.Bindings;
    const auto binding =
        std::find_if(bindings.begin(), bindings.end(), [&](const DocumentBinding& candidate) {
            return candidate.Stream == stream && candidate.Tag == tag;
        });
    if (binding == bindings.end())
        return std::nullopt;
    return binding.Index();
}

void IndexedDocument::Prepare(const DocumentStep& step)
{
    if (const auto* node = std::get_if<RecordChange<DocumentNode>>(&step); node && node->Content)
        Enter(node->Index, *node->Content);
    if (const auto* edge = std::get_if<RecordChange<DocumentEdge>>(&step); edge && edge->Content)
        Enter(edge->Index, *edge->Content);
}

void IndexedDocument::Exchange(DocumentStep& step) noexcept
{
    std::visit(Exchanger{_document}, step);
}

void IndexedDocument::Forget(const DocumentStep& done) noexcept
{
    if (const auto* node = std::get_if<RecordChange<DocumentNode>>(&done); node && node->Content)
        Leave(node->Index, *node->Content);
    if (const auto* edge = std::get_if<RecordChange<DocumentEdge>>(&done); edge && edge->Content)
        Leave(edge->Index, *edge->Content);
}

bool IndexedDocument::HasId(std::size_t node, const std::string& id) const
{
    return _document.Nodes.Holds(node) && _document.Nodes[node].Id == id;
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

void IndexedDocument::Leave(std::size_t index, const DocumentNode& node) noexcept
{
    if (!HasId(index, node.Id))
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
