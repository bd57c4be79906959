#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Bench {

/// How the maths nodes of a benchmark material are connected. The result of every node reaches the
/// surface, and no two nodes compute the same value, so nothing can be optimised away.
enum class Shape
{
    Chain,   ///< each node reads the previous one; the constants repeat after sixteen nodes
    Values,  ///< a chain in which each node has a different constant
    Tree,    ///< a binary tree
    Fan,     ///< one node feeds half of the others, and the rest sum the results
    Layered, ///< rows of up to a hundred; each node reads two nodes of the previous row, one of
             ///< them random
};

/// @throws std::invalid_argument if no shape has this name
Shape ParseShape(const std::string& word);

struct ShapeNode
{
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::size_t First = none;  ///< index of the node that feeds the first input
    std::size_t Second = none; ///< index of the node that feeds the second input
    std::size_t Value = 0;     ///< determines the values of unconnected inputs
};

/// The nodes, each after those that it reads; the root is last.
std::vector<ShapeNode> MakeShape(Shape shape, std::size_t nodeCount);

/// A material document of a shape. Nodes alternately multiply and add; the first one reads the
/// facing ratio.
std::string MakeDocument(Shape shape, std::size_t nodeCount);

} // namespace Mox::Bench
