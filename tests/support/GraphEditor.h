#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Generates valid and invalid changes of a graph from choices that the caller supplies.
class GraphEditor
{
public:
    /// Returns a number below end.
    using Choice = std::function<std::size_t(std::size_t end)>;

    GraphEditor(const Mox::Host::MaterialGraph& graph, Choice choose);

    /// Returns a change to the graph in its current state. The change may be invalid. The graph
    /// must have at least one node.
    Mox::Host::GraphChange Next();

private:
    std::ptrdiff_t Position(std::size_t size) const;
    const Mox::Host::MaterialGraph::Node& AnyNode() const;
    std::string AnyId() const;
    /// Returns an id, in most cases that of a node that can refer to another node.
    std::string IdForReference() const;
    std::string AnyPort(const std::vector<Mox::Materials::GuiPort>& ports) const;
    Mox::Host::DocumentNode StoredNode() const;
    Mox::Host::PropertySetting AnySetting() const;
    Mox::Host::GraphChange NextStep() const;
    Mox::Host::GraphChange SetSomeValue() const;
    Mox::Host::SetProperties SetSomeReference() const;
    Mox::Host::GraphChange AddSomeEdge() const;
    Mox::Host::GraphChange RemoveSomeEdge() const;
    Mox::Host::GraphChange ChangeSomeAnnotation() const;
    Mox::Host::GraphChange CopySomeParts() const;
    Mox::Host::GraphChange SetSomePoints() const;
    std::vector<Mox::Host::DocumentPoint> AnyPoints() const;

    const Mox::Host::MaterialGraph& _graph;
    Choice _choose;
};
