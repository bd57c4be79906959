#include "mox/graph/GraphCopy.h"

#include <algorithm>
#include <functional>
#include <set>
#include <unordered_map>

namespace Mox::Host {

using Materials::GuiPropertyKind;

namespace {

/// Generates ids that are unused in a material.
class FreshIds
{
public:
    using Test = std::function<bool(const std::string& id)>;

    explicit FreshIds(Test isTaken) : _isTaken(std::move(isTaken)) {}

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
    bool IsFree(const std::string& id) const { return !_isTaken(id) && !_taken.contains(id); }

    std::string Take(const std::string& id)
    {
        _taken.insert(id);
        return id;
    }

    Test _isTaken;
    std::set<std::string> _taken;
    std::unordered_map<std::string, std::size_t> _numbers; ///< last number tried, by stem
};

class GraphCopier
{
public:
    GraphCopier(const MaterialGraph& from, const GraphParts& parts, const MaterialGraph& into)
        : _from(from), _freshAnnotations([&](const auto& id) { return into.HasAnnotation(id); })
    {
        std::set<std::size_t> wanted;
        for (const std::string& id : parts.Nodes)
            wanted.insert(from.FindNode(id, {from.Document().File}));
        for (const std::string& id : parts.Annotations)
            _annotations.insert(from.FindAnnotation(id));
        FreshIds fresh([&](const auto& id) { return into.HasId(id); });
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
        const auto& annotations = _from.Document().Annotations;
        for (auto annotation = annotations.begin(); annotation != annotations.end(); ++annotation) {
            if (_annotations.contains(annotation.Index()))
                CopyAnnotation(*annotation);
        }
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
        DocumentEdge copy = {tail->second, edge.TailPort, head->second, edge.HeadPort};
        copy.Points = edge.Points;
        _change.Steps.emplace_back(AddEdge{std::move(copy), {}, {}});
    }

    void CopyAnnotation(DocumentAnnotation annotation)
    {
        annotation.Id = _freshAnnotations.Make(annotation.Id);
        annotation.Line = 0;
        _change.Steps.emplace_back(AddAnnotation{std::move(annotation)});
    }

    static bool IsReference(const DocumentProperty& property)
    {
        return property.Kind == GuiPropertyKind::Node && !property.Value.empty();
    }

    const MaterialGraph& _from;
    std::vector<std::size_t> _nodes; ///< in document order
    std::unordered_map<std::string, std::string> _newIds;
    std::set<std::size_t> _annotations;
    FreshIds _freshAnnotations;
    GraphChange _change;
};

} // namespace

GraphChange CopyParts(const MaterialGraph& from, const GraphParts& parts, const MaterialGraph& into)
{
    return GraphCopier(from, parts, into).Copy();
}

} // namespace Mox::Host
