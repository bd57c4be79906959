#include "mox/layout/LayeredLayout.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Mox::Host;

namespace {

struct Graph
{
    std::vector<LayoutNode> Nodes;
    std::vector<LayoutEdge> Edges;

    void AddNodes(std::size_t count) { Nodes.resize(Nodes.size() + count, {100, 60}); }

    /// @param port index of the head's port, from the top
    void Join(std::size_t tail, std::size_t head, std::size_t port = 0)
    {
        Edges.push_back({tail, head, 50, 50 + 20 * static_cast<double>(port)});
    }
};

/// Nodes of random sizes with edges between random nodes.
Graph RandomGraph(Random& random, std::size_t nodeCount, std::size_t edgeCount)
{
    Graph graph;
    std::vector<std::size_t> order(nodeCount);
    for (std::size_t i = 0; i < nodeCount; ++i) {
        order[i] = i;
        std::swap(order[i], order[random.Below(i + 1)]);
        graph.Nodes.push_back({40 + double(random.Below(200)), 20 + double(random.Below(300))});
    }
    for (std::size_t i = 0; nodeCount > 1 && i < edgeCount; ++i) {
        const std::size_t head = 1 + random.Below(nodeCount - 1);
        graph.Join(order[random.Below(head)], order[head], random.Below(5));
    }
    return graph;
}

/// A chain in which all nodes also read one source, such as a texture in a material.
Graph ChainWithSource(std::size_t length)
{
    Graph graph;
    graph.AddNodes(length + 1);
    for (std::size_t i = 1; i <= length; ++i) {
        graph.Join(0, i, 1);
        if (i > 1)
            graph.Join(i - 1, i, 0);
    }
    return graph;
}

Graph RandomOfSize(std::size_t size)
{
    Random random(7);
    return RandomGraph(random, size, 2 * size);
}

TEST(LayeredLayout, KeepsNodesApartAndEdgesFromLeftToRight)
{
    Random random(DrawSeed());
    for (int i = 0; i < 200; ++i) {
        const Graph graph = RandomGraph(random, 1 + random.Below(60), random.Below(150));
        const std::vector<LayoutPoint> points = LayOutInLayers(graph.Nodes, graph.Edges).Points;
        for (const LayoutEdge& edge : graph.Edges)
            ASSERT_LT(points[edge.Tail].X + graph.Nodes[edge.Tail].Width, points[edge.Head].X);
        for (std::size_t a = 0; a < points.size(); ++a) {
            ASSERT_GE(std::min(points[a].X, points[a].Y), 0);
            for (std::size_t b = 0; b < a; ++b) {
                const bool isApart = points[a].X + graph.Nodes[a].Width < points[b].X ||
                                     points[b].X + graph.Nodes[b].Width < points[a].X ||
                                     points[a].Y + graph.Nodes[a].Height < points[b].Y ||
                                     points[b].Y + graph.Nodes[b].Height < points[a].Y;
                ASSERT_TRUE(isApart) << a << " and " << b;
            }
        }
    }
}

TEST(LayeredLayout, TakesStepsInProportionToNodesAndEdges)
{
    for (const auto make : {ChainWithSource, RandomOfSize}) {
        const auto countSteps = [&](std::size_t size) {
            const Graph graph = make(size);
            return static_cast<double>(LayOutInLayers(graph.Nodes, graph.Edges).StepCount);
        };
        EXPECT_LT(countSteps(20'000) / countSteps(2'000), 14); // allows for the logarithmic factor
                                                               // of sorting
    }
}

/// Sources are placed in the order of the ports that they feed, independently of their input order,
/// and a chain is level.
TEST(LayeredLayout, ReadsAsThePortsDo)
{
    Graph graph;
    graph.AddNodes(6);
    const std::size_t sources[] = {3, 0, 4, 1};
    for (std::size_t port = 0; port < std::size(sources); ++port)
        graph.Join(sources[port], 2, port);
    graph.Join(2, 5, 0);
    const std::vector<LayoutPoint> points = LayOutInLayers(graph.Nodes, graph.Edges).Points;
    for (std::size_t port = 1; port < std::size(sources); ++port) {
        EXPECT_LT(points[sources[port - 1]].Y, points[sources[port]].Y);
        EXPECT_EQ(points[sources[port - 1]].X, points[sources[port]].X);
    }
    EXPECT_EQ(points[2].Y, points[5].Y);
}

} // namespace
