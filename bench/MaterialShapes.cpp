#include "MaterialShapes.h"

#include "mox/Text.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace Mox::Bench {

namespace {

using Materials::Compose;

/// Sums count nodes beginning with first; the nodes after them perform the additions.
void AddUp(std::vector<ShapeNode>& nodes, std::size_t first, std::size_t count)
{
    for (std::size_t i = 1; i < count; ++i) {
        ShapeNode& sum = nodes[first + count - 1 + i];
        sum.First = i == 1 ? first : first + count - 2 + i;
        sum.Second = first + i;
    }
}

/// Builds a binary heap in reverse order: the root is the last node, and the leaves come first.
void JoinTree(std::vector<ShapeNode>& nodes)
{
    const std::size_t root = nodes.size() - 1;
    for (std::size_t number = 0; number < nodes.size(); ++number) {
        ShapeNode& node = nodes[root - number];
        if (2 * number + 1 < nodes.size())
            node.First = root - (2 * number + 1);
        if (2 * number + 2 < nodes.size())
            node.Second = root - (2 * number + 2);
    }
}

void JoinFan(std::vector<ShapeNode>& nodes)
{
    const std::size_t width = nodes.size() / 2;
    for (std::size_t i = 1; i <= width; ++i)
        nodes[i].First = 0;
    AddUp(nodes, 1, width);
}

void JoinLayers(std::vector<ShapeNode>& nodes)
{
    constexpr std::size_t longestRow = 100;
    const std::size_t row = std::clamp<std::size_t>(nodes.size() / 10, 1, longestRow);
    const std::size_t lastRowEnd = nodes.size() - (row - 1);
    std::mt19937 random(1);
    for (std::size_t i = row; i < lastRowEnd; ++i) {
        nodes[i].First = i - row;
        nodes[i].Second = (i / row - 1) * row + random() % row;
    }
    AddUp(nodes, lastRowEnd - row, row);
}

} // namespace

Shape ParseShape(const std::string& word)
{
    if (word == "chain")
        return Shape::Chain;
    if (word == "values")
        return Shape::Values;
    if (word == "tree")
        return Shape::Tree;
    if (word == "fan")
        return Shape::Fan;
    if (word == "layered")
        return Shape::Layered;
    throw std::invalid_argument(Compose("\"", word, "\" is no shape"));
}

std::vector<ShapeNode> MakeShape(Shape shape, std::size_t nodeCount)
{
    constexpr std::size_t fewValues = 16;
    std::vector<ShapeNode> nodes(nodeCount);
    for (std::size_t i = 0; i < nodeCount; ++i)
        nodes[i].Value = shape == Shape::Chain ? i % fewValues : i;
    switch (shape) {
    case Shape::Chain:
    case Shape::Values:
        for (std::size_t i = 1; i < nodeCount; ++i)
            nodes[i].First = i - 1;
        break;
    case Shape::Tree:
        JoinTree(nodes);
        break;
    case Shape::Fan:
        JoinFan(nodes);
        break;
    case Shape::Layered:
        JoinLayers(nodes);
        break;
    }
    return nodes;
}

std::string MakeDocument(Shape shape, std::size_t nodeCount)
{
    const std::vector<ShapeNode> nodes = MakeShape(shape, nodeCount);
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<material version=\"1\">\n"
                       "  <nodes>\n"
                       "    <node id=\"facing\" type=\"SurfaceFacingRatio\" version=\"0\"/>\n";
    const auto appendProperty = [&](const char* name, const char* kind, const auto& value) {
        text += Compose("      <property name=\"", name, "\" kind=\"", kind, "\" value=\"", value,
                        "\"/>\n");
    };
    for (std::size_t i = 0; i < nodeCount; ++i) {
        text += Compose("    <node id=\"n", i, "\" type=\"CoreMaths\" version=\"0\">\n");
        appendProperty("Function", "enum", i % 2 == 0 ? "Multiply" : "Addition");
        if (i > 0 && nodes[i].First == ShapeNode::none)
            appendProperty("Default Value 1", "float", nodes[i].Value);
        if (nodes[i].Second == ShapeNode::none)
            appendProperty("Default Value 2", "float", nodes[i].Value);
        text += "    </node>\n";
    }
    text += "    <node id=\"surface\" type=\"Surface\" version=\"0\"/>\n  </nodes>\n  <edges>\n";
    const auto appendEdge = [&](const std::string& tail, const char* tailPort,
                                const std::string& head, const char* headPort) {
        text += Compose("    <edge tail=\"", tail, "\" tailPort=\"", tailPort, "\" head=\"", head,
                        "\" headPort=\"", headPort, "\"/>\n");
    };
    const auto id = [](std::size_t node) { return Compose("n", node); };
    appendEdge("facing", "read", id(0), "in_value1");
    for (std::size_t i = 0; i < nodeCount; ++i) {
        if (nodes[i].First != ShapeNode::none)
            appendEdge(id(nodes[i].First), "out_value", id(i), "in_value1");
        if (nodes[i].Second != ShapeNode::none)
            appendEdge(id(nodes[i].Second), "out_value", id(i), "in_value2");
    }
    appendEdge(id(nodeCount - 1), "out_value", "surface", "in_emission");
    return text + "  </edges>\n</material>\n";
}

} // namespace Mox::Bench
