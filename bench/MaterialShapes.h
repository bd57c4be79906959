#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Bench {

/// How the maths nodes of a measured material are joined. The result of every node reaches the
/// surface, and no two nodes compute the same, so that nothing can be left out.
enum class Shape
{
    Chain,   ///< each node reads the one before it; sixteen different values in turn
    Values,  ///< a chain in which each node has a value of its own
    Tree,    ///< each node reads two others, down to the leaves
    Fan,     ///< one node feeds half of the others, and the rest adds these up
    Layered, ///< rows of up to a hundred; each node reads two of the row before, one at random
};

/// @throws std::invalid_argument if the word names no shape
Shape ParseShape(const std::string& word);

struct ShapeNode
{
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::size_t First = none;  ///< node that feeds the first input
    std::size_t Second = none; ///< node that feeds the second input
    std::size_t Value = 0;     ///< of the inputs that no node feeds
};

/// The nodes in order, each behind those it reads, the root last.
std::vector<ShapeNode> MakeShape(Shape shape, std::size_t nodeCount);

/// A document of the shape. Nodes multiply and add in turn; the first one reads the facing ratio.
std::string MakeDocument(Shape shape, std::size_t nodeCount);

} // namespace Mox::Bench
