#include "mox/interchange/MaterialXScopes.h"

#include "mox/Text.h"
#include "mox/document/UnknownNode.h"
#include "mox/host/NearestName.h"
#include "mox/interchange/StandardNodes.h"

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr int deepestScope = 32;
constexpr std::size_t mostScopes = 2000;
constexpr int longestWay = 1000; ///< maximum number of interfaces followed in one chain

} // namespace

MaterialXScopes::MaterialXScopes(const XmlTree& document, ProblemList& problems)
    : _problems(problems)
{
    std::unordered_map<std::string, const XmlTree*> graphs; // keyed by the definition that they
                                                            // implement
    for (const XmlTree& child : document.Children) {
        if (child.Name == "nodegraph" && child.Find("nodedef"))
            graphs.emplace(child.Get("nodedef"), &child);
    }
    for (const XmlTree& child : document.Children) {
        const auto graph = graphs.find(child.Get("name"));
        if (child.Name == "nodedef" && graph != graphs.end())
            _definitions.emplace(child.Get("node"), std::pair(&child, graph->second));
    }
    Enter(Root, document, nullptr, document);
}

MaterialXSource MaterialXScopes::Follow(std::size_t scope, const XmlTree& start)
{
    using Kind = MaterialXSource::Kind;
    const XmlTree* input = &start;
    bool isParameter = false;
    const auto fail = [&](const std::string& message) {
        Fail(*input, message);
        return MaterialXSource();
    };
    for (int steps = 0; steps < longestWay; ++steps) {
        if (const std::string* interface = input->Find("interfacename")) {
            const XmlTree* before = input;
            isParameter = StepToInterface(scope, input, *interface);
            if (!input) {
                input = before;
                return fail(Compose("the node graph has no input \"", *interface, "\""));
            }
            continue;
        }
        const std::string* graph = input->Find("nodegraph");
        const std::string* name = graph ? graph : input->Find("nodename");
        if (!name) {
            if (input->Find("value"))
                return {isParameter ? Kind::Parameter : Kind::Literal, input, scope, {}};
            return {};
        }
        const XmlTree* node = FindNamed(scope, *name);
        if (!node)
            return fail(UnknownNode(*name) + SuggestNode(scope, *name));
        isParameter = false;
        const auto definition = _definitions.find(node->Name);
        if (node->Name == "nodegraph") {
            if (!StepToGraph(scope, input, *node, nullptr, *node))
                return {};
        } else if (definition != _definitions.end() && !GetStandardNodes().Find(node->Name)) {
            const auto [declared, body] = definition->second;
            if (!StepToGraph(scope, input, *body, node, *declared))
                return {};
        } else {
            return {Kind::Output, node, scope, input->Get("output")};
        }
    }
    return fail("the inputs and outputs of node graphs form a cycle");
}

const XmlTree* MaterialXScopes::FindInput(const XmlTree& node, std::string_view name)
{
    for (const XmlTree& child : node.Children) {
        const std::string* own = child.Find("name");
        if (child.Name == "input" && own && *own == name)
            return &child;
    }
    return nullptr;
}

const std::string* MaterialXScopes::FindInherited(std::size_t scope, const XmlTree& element,
                                                  std::string_view attribute) const
{
    if (const std::string* value = element.Find(attribute))
        return value;
    if (const auto owner = _owners.find(&element); owner != _owners.end()) {
        if (const std::string* value = owner->second->Find(attribute))
            return value;
    }
    for (;; scope = _scopes[scope].Parent) {
        if (const std::string* value = _scopes[scope].Graph->Find(attribute))
            return value;
        if (scope == Root)
            return nullptr;
    }
}

Place MaterialXScopes::PlaceOf(const XmlTree& element) const
{
    const std::string name = element.Get("name");
    const auto owner = _owners.find(&element);
    if (owner == _owners.end() || (element.Name != "input" && element.Name != "output"))
        return {element.Where.File, element.Where.Line, name};
    return {element.Where.File, element.Where.Line, owner->second->Get("name"), name};
}

std::size_t MaterialXScopes::Enter(std::size_t parent, const XmlTree& graph,
                                   const XmlTree* instance, const XmlTree& definition)
{
    Scope& scope = _scopes.emplace_back();
    scope.Graph = &graph;
    scope.Instance = instance;
    scope.Definition = &definition;
    scope.Parent = parent;
    scope.Depth = _scopes.size() == 1 ? 0 : _scopes[parent].Depth + 1;
    for (const XmlTree& child : graph.Children) {
        if (child.Name == "input" || child.Name == "output")
            continue;
        const std::string name = child.Get("name");
        const bool isNew = scope.Children.emplace(name, &child).second;
        // Other elements are not looked up by name, so one with the name of a node is not ignored.
        const bool isNode = child.Name != "surfacematerial" && child.Name != "nodedef" &&
                            child.Name != "look" && !child.Find("nodedef");
        if (!isNew && isNode && !name.empty() && _reported.insert(&child).second)
            _problems.Warn("interchange-dropped", PlaceOf(child),
                           "another node already has this name, so this one is ignored");
        for (const XmlTree& input : child.Children)
            _owners.emplace(&input, &child);
    }
    return _scopes.size() - 1;
}

/// Moves from a use of an input of the scope's graph to the value that is supplied for this input.
/// @param input becomes null if there is no such input
/// @returns whether it is a value that the user may set
bool MaterialXScopes::StepToInterface(std::size_t& scope, const XmlTree*& input,
                                      const std::string& name)
{
    const Scope& inner = _scopes[scope];
    if (inner.Instance) {
        if (const XmlTree* given = FindInput(*inner.Instance, name)) {
            input = given;
            scope = inner.Parent;
            return false;
        }
    }
    input = scope == Root ? nullptr : FindInput(*inner.Definition, name);
    if (input && !input->Find("value"))
        scope = inner.Parent;
    return input && input->Find("value") && !inner.Instance;
}

/// Moves from a connection to a node graph to the output inside that graph.
/// @returns whether the output exists and the graph can be expanded
bool MaterialXScopes::StepToGraph(std::size_t& scope, const XmlTree*& input, const XmlTree& graph,
                                  const XmlTree* instance, const XmlTree& definition)
{
    const XmlTree& user = instance ? *instance : graph;
    const auto [entry, isNew] = _entered.emplace(std::pair(scope, &user), _scopes.size());
    if (isNew) {
        if (_scopes[scope].Depth >= deepestScope || _scopes.size() >= mostScopes) {
            _entered.erase(entry);
            Fail(*input, "node graphs are nested too deeply or used too often");
            return false;
        }
        Enter(scope, graph, instance, definition);
    }
    const std::string* wanted = input->Find("output");
    const XmlTree* first = nullptr;
    for (const XmlTree& child : graph.Children) {
        if (child.Name != "output")
            continue;
        if (!first && (!wanted || child.Get("name") == *wanted))
            first = &child;
    }
    if (!first) {
        Fail(*input, Compose("the node graph \"", graph.Get("name"), "\" has no output",
                             wanted ? Compose(" \"", *wanted, "\"") : std::string()));
        return false;
    }
    scope = entry->second;
    input = first;
    return true;
}

const XmlTree* MaterialXScopes::FindNamed(std::size_t scope, const std::string& name) const
{
    const auto found = _scopes[scope].Children.find(name);
    return found == _scopes[scope].Children.end() ? nullptr : found->second;
}

/// Returns a suggestion to append to the message that a scope has no node with this name. Comparing
/// names takes time, so there are no suggestions in a large graph or after many problems.
std::string MaterialXScopes::SuggestNode(std::size_t scope, const std::string& name) const
{
    constexpr std::size_t mostNodes = 1000;
    constexpr std::size_t mostProblems = 100;
    const std::vector<XmlTree>& children = GraphOf(scope).Children;
    if (children.size() > mostNodes || _problems.Problems().size() >= mostProblems)
        return {};
    std::vector<RightName> names;
    for (const XmlTree& child : children) {
        const std::string other = child.Get("name");
        if (!other.empty() && FindNamed(scope, other) == &child)
            names.push_back({other});
    }
    return SuggestName(name, names);
}

void MaterialXScopes::Fail(const XmlTree& element, const std::string& message)
{
    if (_reported.insert(&element).second)
        _problems.Fail("interchange-file", PlaceOf(element), message);
}

} // namespace Mox::Host
