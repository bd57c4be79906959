#include "mox/document/IndexedDocument.h"

#include <algorithm>

namespace Mox::Host {

using Materials::GuiPropertyKind;

namespace {

/// The first key with these names.
template <class... Names>
std::tuple<const Names&..., std::size_t> FirstOf(const Names&... names)
{
    return {names..., 0};
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
    std::optional<std::size_t> found;
    const auto [begin, end] = _nodes.equal_range(id);
    for (auto entry = begin; entry != end; ++entry) {
        if (HasId(entry->second, id) && (!found || entry->second < *found))
            found = entry->second;
    }
    return found;
}

std::vector<std::size_t> IndexedDocument::Referrers(const std::string& id) const
{
    std::vector<std::size_t> nodes;
    for (auto entry = _referrers.lower_bound(FirstOf(id));
         entry != _referrers.end() && std::get<0>(*entry) == id; ++entry) {
        if (const std::size_t node = std::get<1>(*entry); RefersTo(node, id))
            nodes.push_back(node);
    }
    return nodes;
}

std::vector<std::size_t> IndexedDocument::EdgesFrom(const std::string& id) const
{
    std::vector<std::size_t> edges;
    for (auto entry = _tails.lower_bound(FirstOf(id));
         entry != _tails.end() && std::get<0>(*entry) == id; ++entry) {
        if (const std::size_t edge = std::get<1>(*entry); HasTail(edge, id))
            edges.push_back(edge);
    }
    return edges;
}

std::vector<std::size_t> IndexedDocument::EdgesTo(const std::string& id) const
{
    std::vector<std::size_t> edges;
    for (auto entry = _heads.lower_bound(FirstOf(id, std::string()));
         entry != _heads.end() && std::get<0>(*entry) == id; ++entry) {
        if (const std::size_t edge = std::get<2>(*entry); HasHead(edge, id, std::get<1>(*entry)))
            edges.push_back(edge);
    }
    return edges;
}

std::vector<std::size_t> IndexedDocument::EdgesInto(const std::string& id,
                                                    const std::string& port) const
{
    std::vector<std::size_t> edges;
    for (auto entry = _heads.lower_bound(FirstOf(id, port));
         entry != _heads.end() && std::get<0>(*entry) == id && std::get<1>(*entry) == port;
         ++entry) {
        if (const std::size_t edge = std::get<2>(*entry); HasHead(edge, id, port))
            edges.push_back(edge);
    }
    return edges;
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

IndexedDocument::Ids::iterator IndexedDocument::FindEntry(std::size_t index, const std::string& id)
{
    const auto [begin, end] = _nodes.equal_range(id);
    const auto entry =
        std::find_if(begin, end, [&](const auto& other) { return other.second == index; });
    return entry == end ? _nodes.end() : entry;
}

void IndexedDocument::Enter(std::size_t index, const DocumentNode& node)
{
    if (FindEntry(index, node.Id) == _nodes.end())
        _nodes.emplace(node.Id, index);
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
    if (const auto entry = FindEntry(index, node.Id);
        entry != _nodes.end() && !HasId(index, node.Id))
        _nodes.erase(entry);
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

} // namespace Mox::Host
