#include "mox/document/MaterialDiff.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/PropertyText.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <compare>
#include <map>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

using Values = std::map<std::string, std::string>;

/// Converts a value to its canonical string, so that "1" and "1.0" are equal.
std::string Normalise(const DocumentProperty& property)
{
    const auto parsed = GuiProperty::Create(property.Name);
    return property.Kind != GuiPropertyKind::Node &&
                   SetFromText(*parsed, property.Kind, property.Value)
               ? FormatValue(*parsed)
               : property.Value;
}

struct ComparedNode
{
    std::string Type;
    Values Properties; ///< except those that refer to nodes
    Values References; ///< ids by property name

    // NOLINTNEXTLINE(modernize-use-nullptr): mistakes the 0 of a defaulted comparison for a pointer
    friend auto operator<=>(const ComparedNode& a, const ComparedNode& b) = default;
};

using ComparedNodes = std::map<std::string, ComparedNode>;

struct ByContent
{
    bool operator()(const ComparedNode* a, const ComparedNode* b) const { return *a < *b; }
};

/// Ids of nodes with the same content.
using IdsByContent = std::map<const ComparedNode*, std::vector<std::string>, ByContent>;

using End = std::pair<std::string, std::string>; ///< node and port

struct ComparedEdge
{
    End Tail;
    std::string Points;
};

/// By the input at which an edge ends.
using ComparedEdges = std::map<End, ComparedEdge>;

class Reader
{
public:
    explicit Reader(const PluginSet& plugins) : _plugins(plugins) {}

    ComparedNodes ReadNodes(const MaterialDocument& document)
    {
        ComparedNodes nodes;
        for (const DocumentNode& node : document.Nodes) {
            ComparedNode& compared = nodes[node.Id];
            compared.Type = node.Type;
            compared.Properties = DefaultsOf(node.Type, Place(document.File, node.Line, node.Id));
            for (const DocumentProperty& property : node.Properties) {
                Values& values = property.Kind == GuiPropertyKind::Node ? compared.References
                                                                        : compared.Properties;
                values[property.Name] = Normalise(property);
            }
        }
        return nodes;
    }

private:
    const Values& DefaultsOf(const std::string& type, const Place& where)
    {
        const auto [entry, isNew] = _defaults.try_emplace(type);
        if (!isNew)
            return entry->second;
        if (const auto node = _plugins.CreateNode(type, where)) {
            for (const auto& property : node.Properties().Properties) {
                if (property != node.TypeProperty() && property->Kind != GuiPropertyKind::Node)
                    entry->second[property->Name] = FormatValue(*property);
            }
        }
        return entry->second;
    }

    const PluginSet& _plugins;
    std::map<std::string, Values> _defaults;
};

ComparedEdges ReadEdges(const MaterialDocument& document)
{
    ComparedEdges edges;
    for (const DocumentEdge& edge : document.Edges)
        edges[{edge.Head, edge.HeadPort}] = {{edge.Tail, edge.TailPort}, FormatPoints(edge.Points)};
    return edges;
}

std::string Quote(const std::string& text)
{
    return "\"" + text + "\"";
}

std::string FormatEnd(const End& end)
{
    return Compose("\"", end.first, "\" port \"", end.second, "\"");
}

std::string DescribeEdge(const End& tail, const End& head)
{
    return Compose("edge from ", FormatEnd(tail), " to ", FormatEnd(head));
}

DocumentEdge MakeEdge(const End& tail, const End& head)
{
    return {tail.first, tail.second, head.first, head.second};
}

class Comparison
{
public:
    Comparison(const MaterialDocument& before, const MaterialDocument& after,
               const PluginSet& plugins)
        : _before(before), _after(after)
    {
        Reader reader(plugins);
        _nodesBefore = reader.ReadNodes(before);
        _nodesAfter = reader.ReadNodes(after);
    }

    std::vector<MaterialDifference> Find()
    {
        CompareValues("description", ToMap(_before.Description), ToMap(_after.Description));
        CompareValues("render state", ToMap(_before.RenderState), ToMap(_after.RenderState));
        FindRenamed();
        CompareNodes();
        CompareEdges();
        CompareBindings();
        CompareAnnotations();
        return std::move(_differences);
    }

private:
    template <class... Parts>
    MaterialDifference& Say(const Parts&... parts)
    {
        MaterialDifference& difference = _differences.emplace_back();
        difference.Text = Compose(parts...);
        return difference;
    }

    /// Adds a difference that belongs to a node.
    template <class... Parts>
    MaterialDifference& SayOf(const std::string& node, DifferenceKind kind, const Parts&... parts)
    {
        MaterialDifference& difference = Say(parts...);
        difference.Kind = kind;
        difference.Node = node;
        return difference;
    }

    static Values ToMap(const std::vector<DocumentValue>& values)
    {
        Values map;
        for (const DocumentValue& value : values)
            map[value.Name] = value.Value;
        return map;
    }

    /// @param node the id of the node, if the values are its properties
    void CompareValues(const std::string& owner, const Values& before, const Values& after,
                       const std::string& node = {})
    {
        const auto say = [&](const std::string& name, const auto&... parts) {
            MaterialDifference& difference = Say(owner, ": \"", name, parts...);
            difference.Node = node;
            if (!node.empty())
                difference.Property = name;
        };
        for (const auto& [name, value] : before) {
            const auto now = after.find(name);
            if (now == after.end())
                say(name, "\" was removed; it was ", Quote(value));
            else if (now->second != value)
                say(name, "\" changed from ", Quote(value), " to ", Quote(now->second));
        }
        for (const auto& [name, value] : after) {
            if (!before.contains(name))
                say(name, "\" was added with the value ", Quote(value));
        }
    }

    /// A removed and an added node are the same if they are equal and no other node equals them.
    void FindRenamed()
    {
        const IdsByContent removed = IdsMissingIn(_nodesAfter, _nodesBefore);
        const IdsByContent added = IdsMissingIn(_nodesBefore, _nodesAfter);
        for (const auto& [id, node] : _nodesBefore) {
            const auto twins = added.find(&node);
            if (_nodesAfter.contains(id) || twins == added.end() || twins->second.size() != 1 ||
                removed.at(&node).size() != 1)
                continue;
            const std::string& newId = twins->second.front();
            _renamed.emplace(id, newId);
            SayOf(newId, DifferenceKind::Changed, "node \"", id, "\" was renamed to ",
                  Quote(newId));
        }
    }

    static IdsByContent IdsMissingIn(const ComparedNodes& others, const ComparedNodes& nodes)
    {
        IdsByContent ids;
        for (const auto& [id, node] : nodes) {
            if (!others.contains(id))
                ids[&node].push_back(id);
        }
        return ids;
    }

    const std::string& IdAfter(const std::string& idBefore) const
    {
        const auto renamed = _renamed.find(idBefore);
        return renamed == _renamed.end() ? idBefore : renamed->second;
    }

    void CompareNodes()
    {
        std::map<std::string, std::string> cameFrom;
        for (const auto& [id, node] : _nodesBefore) {
            const auto now = _nodesAfter.find(IdAfter(id));
            cameFrom.emplace(IdAfter(id), id);
            if (now == _nodesAfter.end())
                SayOf(id, DifferenceKind::Removed, "node \"", id, "\" (", node.Type,
                      ") was removed");
            else if (now->second.Type != node.Type)
                SayOf(id, DifferenceKind::Changed, "node \"", id, "\" changed its type from ",
                      Quote(node.Type), " to ", Quote(now->second.Type));
            else
                CompareNode(now->first, node, now->second);
        }
        for (const auto& [id, node] : _nodesAfter) {
            if (!cameFrom.contains(id))
                SayOf(id, DifferenceKind::Added, "node \"", id, "\" (", node.Type, ") was added");
        }
    }

    void CompareNode(const std::string& id, const ComparedNode& before, const ComparedNode& after)
    {
        const std::string name = Compose("node \"", id, "\" (", before.Type, ")");
        CompareValues(name, before.Properties, after.Properties, id);
        Values references;
        for (const auto& [property, node] : before.References)
            references.emplace(property, IdAfter(node));
        CompareValues(name, references, after.References, id);
    }

    void CompareEdges()
    {
        ComparedEdges before;
        for (const auto& [head, edge] : ReadEdges(_before)) {
            const End tail = {IdAfter(edge.Tail.first), edge.Tail.second};
            before[{IdAfter(head.first), head.second}] = {tail, edge.Points};
        }
        const ComparedEdges after = ReadEdges(_after);
        for (const auto& [head, edge] : before) {
            const auto now = after.find(head);
            const std::string name = DescribeEdge(edge.Tail, head);
            if (now == after.end()) {
                MaterialDifference& difference = Say(name, " was removed");
                difference.Kind = DifferenceKind::Removed;
                difference.EdgeBefore = MakeEdge(edge.Tail, head);
            } else if (now->second.Tail != edge.Tail) {
                MaterialDifference& difference =
                    Say(FormatEnd(head), " is fed by ", FormatEnd(now->second.Tail), " instead of ",
                        FormatEnd(edge.Tail));
                difference.EdgeBefore = MakeEdge(edge.Tail, head);
                difference.EdgeAfter = MakeEdge(now->second.Tail, head);
            } else {
                ComparePoints(name, edge.Points, now->second.Points);
            }
        }
        for (const auto& [head, edge] : after) {
            if (!before.contains(head)) {
                MaterialDifference& difference = Say(DescribeEdge(edge.Tail, head), " was added");
                difference.Kind = DifferenceKind::Added;
                difference.EdgeAfter = MakeEdge(edge.Tail, head);
            }
        }
    }

    void ComparePoints(const std::string& edge, const std::string& before, const std::string& after)
    {
        const auto valuesOf = [](const std::string& points) {
            return points.empty() ? Values() : Values{{"points", points}};
        };
        CompareValues(edge, valuesOf(before), valuesOf(after));
    }

    void CompareAnnotations()
    {
        const auto read = [](const MaterialDocument& document) {
            std::map<std::string, Values> annotations;
            for (const DocumentAnnotation& annotation : document.Annotations)
                annotations[Compose("annotation \"", annotation.Id, "\"")] =
                    ToMap(AttributesOf(annotation));
            return annotations;
        };
        const std::map<std::string, Values> before = read(_before);
        const std::map<std::string, Values> after = read(_after);
        for (const auto& [name, values] : before) {
            const auto now = after.find(name);
            if (now == after.end())
                Say(name, " (", values.at("kind"), ") was removed").Kind = DifferenceKind::Removed;
            else
                CompareValues(name, values, now->second);
        }
        for (const auto& [name, values] : after) {
            if (!before.contains(name))
                Say(name, " (", values.at("kind"), ") was added").Kind = DifferenceKind::Added;
        }
    }

    void CompareBindings()
    {
        const auto read = [](const MaterialDocument& document) {
            std::map<std::string, Values> bindings;
            for (const DocumentBinding& binding : document.Bindings)
                bindings[Compose("binding \"", binding.Tag, "\" (", binding.Stream, ")")] =
                    ToMap(binding.Values);
            return bindings;
        };
        std::map<std::string, Values> before = read(_before);
        std::map<std::string, Values> after = read(_after);
        for (const auto& [name, values] : before)
            CompareValues(name, values, after[name]);
        for (const auto& [name, values] : after) {
            if (!before.contains(name))
                CompareValues(name, {}, values);
        }
    }

    const MaterialDocument& _before;
    const MaterialDocument& _after;
    ComparedNodes _nodesBefore;
    ComparedNodes _nodesAfter;
    std::map<std::string, std::string> _renamed;
    std::vector<MaterialDifference> _differences;
};

} // namespace

std::vector<MaterialDifference> FindDifferences(const MaterialDocument& before,
                                                const MaterialDocument& after,
                                                const PluginSet& plugins)
{
    return Comparison(before, after, plugins).Find();
}

std::vector<std::string> DescribeDifferences(const MaterialDocument& before,
                                             const MaterialDocument& after,
                                             const PluginSet& plugins)
{
    std::vector<std::string> lines;
    for (MaterialDifference& difference : FindDifferences(before, after, plugins))
        lines.push_back(std::move(difference.Text));
    return lines;
}

} // namespace Mox::Host
