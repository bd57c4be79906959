#include "mox/graph/GraphCopy.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace Mox::Host {

using Materials::GuiPropertyKind;

namespace {

/// Gives out ids that are free in a material.
class FreshIds
{
public:
    explicit FreshIds(const MaterialGraph& graph) : _graph(graph) {}

    std::string Make(const std::string& id)
    {
        if (IsFree(id))
            return Take(id);
        constexpr std::size_t mostDigits = 9;
        const std::size_t end = id.find_last_not_of("0123456789") + 1;
        const bool hasNumber =
            end > 0 && end < id.size() && id.size() - end <= mostDigits && id[end] != '0';
        const std::string stem = hasNumber ? id.substr(0, end) : id;
        std::size_t& number = _numbers.try_emplace(stem, 1).first->second;
        if (hasNumber)
            number = std::max<std::size_t>(number, std::stoul(id.substr(end)));
        std::string fresh;
        do {
            fresh = stem + std::to_string(++number);
        } while (!IsFree(fresh));
        return Take(fresh);
    }

private:
    bool IsFree(const std::string& id) const { return !_graph.HasId(id) && !_taken.contains(id); }

    std::string Take(const std::string& id)
    {
        _taken.insert(id);
        return id;
    }

    const MaterialGraph& _graph;
    std::set<std::string> _taken;
    std::unordered_map<std::string, std::size_t> _numbers; ///< last one tried, by stem
};

class GraphCopier
{
public:
    GraphCopier(const MaterialGraph& from, const std::vector<std::string>& ids,
                const MaterialGraph& into)
        : _from(from)
    {
        std::set<std::size_t> wanted;
        for (const std::string& id : ids)
            wanted.insert(from.FindNode(id, {from.Document().File}));
        FreshIds fresh(into);
        const auto& records = from.Document().Nodes;
        for (auto record = records.begin(); record != records.end(); ++record) {
            if (!wanted.contains(record.Index()))
                continue;
            _nodes.push_back(record.Index());
            _newIds.emplace(record->Id, fresh.Make(record->Id));
        }
    }

    GraphChange Copy()
    {
        for (const std::size_t node : _nodes)
            CopyNode(node);
        const auto edges = _from.Edges();
        for (auto edge = edges.begin(); edge != edges.end(); ++edge)
            CopyEdge(_from.Document().Edges[edge.Index()]);
        return std::move(_change);
    }

private:
    void CopyNode(std::size_t index)
    {
        const DocumentNode& record = _from.Document().Nodes[index];
        std::vector<std::string> outside;
        for (const DocumentProperty& property : record.Properties) {
            if (IsReference(property) && !_newIds.contains(property.Value))
                outside.push_back(property.Value);
        }
        DocumentNode copy = outside.empty() ? record : _from.WithoutReferences(index, outside);
        copy.Id = _newIds.at(copy.Id);
        copy.Line = 0;
        std::erase_if(copy.Properties, [&](const DocumentProperty& property) {
            return property.Kind == GuiPropertyKind::Node && !_newIds.contains(property.Value);
        });
        for (DocumentProperty& property : copy.Properties) {
            property.Line = 0;
            if (property.Kind == GuiPropertyKind::Node)
                property.Value = _newIds.at(property.Value);
        }
        _change.Steps.emplace_back(AddNode{std::move(copy), {}});
    }

    void CopyEdge(const DocumentEdge& edge)
    {
        const auto tail = _newIds.find(edge.Tail);
        const auto head = _newIds.find(edge.Head);
        if (tail == _newIds.end() || head == _newIds.end())
            return;
        _change.Steps.emplace_back(
            AddEdge{{tail->second, edge.TailPort, head->second, edge.HeadPort}, {}, {}});
    }

    static bool IsReference(const DocumentProperty& property)
    {
        return property.Kind == GuiPropertyKind::Node && !property.Value.empty();
    }

    const MaterialGraph& _from;
    std::vector<std::size_t> _nodes; ///< in document order
    std::unordered_map<std::string, std::string> _newIds;
    GraphChange _change;
};

} // namespace

GraphChange CopyNodes(const MaterialGraph& from, const std::vector<std::string>& ids,
                      const MaterialGraph& into)
{
    return GraphCopier(from, ids, into).Copy();
}

} // namespace Mox::Host
