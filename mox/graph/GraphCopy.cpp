#include "mox/graph/GraphCopy.h"

#include "mox/graph/StoredNode.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace Mox::Host {

using Materials::GuiPropertyKind;

namespace {

/// Gives out ids that are free in a graph.
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
    bool IsFree(const std::string& id) const
    {
        return !_graph.Store().FindNode(id) && !_taken.contains(id);
    }

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
            wanted.insert(from.FindNode(id, {from.Store().File(), 0, {}, {}}));
        FreshIds fresh(into);
        for (auto node = from.Nodes().begin(); node != from.Nodes().end(); ++node) {
            if (!wanted.contains(node.Index()))
                continue;
            _nodes.push_back(node.Index());
            _newIds.emplace(node->Id, fresh.Make(node->Id));
        }
    }

    GraphChange Copy()
    {
        for (const std::size_t node : _nodes)
            CopyNode(node);
        if (!_references.Settings.empty())
            _change.Steps.emplace_back(std::move(_references));
        for (const MaterialGraph::Edge& edge : _from.Edges())
            CopyEdge(edge);
        return std::move(_change);
    }

private:
    /// A reference is set when all copies are there; until then it is empty.
    void CopyNode(std::size_t index)
    {
        AddNode step = DescribeNode(_from.Store(), index);
        step.Node.Id = _newIds.at(step.Node.Id);
        step.Node.Line = 0;
        step.Before.clear();
        std::map<std::string, std::string> references;
        for (auto* properties : {&step.Node.Properties, &step.Values}) {
            for (DocumentProperty& property : *properties) {
                property.Line = 0;
                if (property.Kind != GuiPropertyKind::Node)
                    continue;
                references[property.Name] = property.Value; // a set value wins over a stored one
                property.Value.clear();
            }
        }
        for (const auto& [name, target] : references) {
            const auto newTarget = _newIds.find(target);
            if (newTarget != _newIds.end()) {
                _references.Settings.push_back(
                    {step.Node.Id, {name, GuiPropertyKind::Node, newTarget->second}});
            }
        }
        _change.Steps.emplace_back(std::move(step));
    }

    void CopyEdge(const MaterialGraph::Edge& edge)
    {
        const DocumentEdge old = _from.Store().Describe(edge);
        const auto tail = _newIds.find(old.Tail);
        const auto head = _newIds.find(old.Head);
        if (tail == _newIds.end() || head == _newIds.end())
            return;
        _change.Steps.emplace_back(
            AddEdge{{tail->second, old.TailPort, head->second, old.HeadPort}, {}, {}});
    }

    const MaterialGraph& _from;
    std::vector<std::size_t> _nodes; ///< in document order
    std::unordered_map<std::string, std::string> _newIds;
    SetProperties _references;
    GraphChange _change;
};

} // namespace

GraphChange CopyNodes(const MaterialGraph& from, const std::vector<std::string>& ids,
                      const MaterialGraph& into)
{
    return GraphCopier(from, ids, into).Copy();
}

} // namespace Mox::Host
