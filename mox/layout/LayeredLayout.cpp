#include "mox/layout/LayeredLayout.h"

#include "mox/graph/GraphOrder.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace Mox::Host {

namespace {

constexpr double columnGap = 72;
constexpr double rowGap = 24;
constexpr double partGap = 64; ///< between unconnected parts
constexpr int roundCount = 6;  ///< number of sweeps over all columns in each direction

/// The edges on one side of each node, stored in one array.
class EdgeLists
{
public:
    template <class NodeOf>
    EdgeLists(std::size_t nodeCount, const std::vector<LayoutEdge>& edges, NodeOf nodeOf)
        : _begins(nodeCount + 1), _edges(edges.size())
    {
        for (const LayoutEdge& edge : edges)
            ++_begins[nodeOf(edge) + 1];
        for (std::size_t node = 0; node < nodeCount; ++node)
            _begins[node + 1] += _begins[node];
        std::vector<std::size_t> next(_begins.begin(), _begins.end() - 1);
        for (std::size_t edge = 0; edge < edges.size(); ++edge)
            _edges[next[nodeOf(edges[edge])]++] = edge;
    }

    std::span<std::size_t> At(std::size_t node)
    {
        return std::span(_edges).subspan(_begins[node], _begins[node + 1] - _begins[node]);
    }

private:
    std::vector<std::size_t> _begins; ///< by node
    std::vector<std::size_t> _edges;
};

class LayeredLayout
{
public:
    LayeredLayout(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges)
        : _nodes(nodes), _edges(edges),
          _in(nodes.size(), edges, [](const LayoutEdge& edge) { return edge.Head; }),
          _out(nodes.size(), edges, [](const LayoutEdge& edge) { return edge.Tail; }),
          _ranks(nodes.size()), _points(nodes.size()), _isPlaced(nodes.size())
    {}

    Layout Make()
    {
        Rank();
        std::vector<std::size_t> singles;
        std::vector<bool> isSeen(_nodes.size());
        double top = 0;
        double width = 0;
        for (std::size_t node = 0; node < _nodes.size(); ++node) {
            if (isSeen[node])
                continue;
            if (_in.At(node).empty() && _out.At(node).empty()) {
                singles.push_back(node);
                continue;
            }
            const std::vector<std::size_t> part = FindPart(node, isSeen);
            const LayoutPoint size = PlacePart(part, top);
            top += size.Y + partGap;
            width = std::max(width, size.X);
        }
        PlaceSingles(singles, top, width);
        for (LayoutPoint& point : _points)
            point = {std::round(point.X), std::round(point.Y)};
        return {std::move(_points), _stepCount};
    }

private:
    using Column = std::vector<std::size_t>;

    /// Computes each node's distance in columns from the last column.
    void Rank()
    {
        std::vector<OrderLink> links;
        links.reserve(_edges.size());
        for (const LayoutEdge& edge : _edges)
            links.emplace_back(edge.Tail, edge.Head);
        const std::vector<std::size_t> order = OrderNodes(_nodes.size(), links).Order;
        for (auto node = order.rbegin(); node != order.rend(); ++node) {
            for (const std::size_t edge : _out.At(*node))
                _ranks[*node] = std::max(_ranks[*node], _ranks[_edges[edge].Head] + 1);
        }
        _stepCount += _nodes.size() + _edges.size();
        for (std::size_t node = 0; node < _nodes.size(); ++node) {
            std::ranges::stable_sort(_in.At(node), [&](std::size_t left, std::size_t right) {
                ++_stepCount;
                return _edges[left].HeadOffset < _edges[right].HeadOffset;
            });
        }
    }

    /// Collects the nodes connected to a node, in ascending order.
    std::vector<std::size_t> FindPart(std::size_t first, std::vector<bool>& isSeen)
    {
        std::vector<std::size_t> part{first};
        isSeen[first] = true;
        const auto reach = [&](std::size_t node) {
            if (!isSeen[node])
                part.push_back(node);
            isSeen[node] = true;
        };
        std::size_t next = 0;
        while (next < part.size()) {
            const std::size_t node = part[next++];
            for (const std::size_t edge : _in.At(node))
                reach(_edges[edge].Tail);
            for (const std::size_t edge : _out.At(node))
                reach(_edges[edge].Head);
            _stepCount += 1 + _in.At(node).size() + _out.At(node).size();
        }
        std::sort(part.begin(), part.end());
        return part;
    }

    /// @returns width and height of the part
    LayoutPoint PlacePart(const std::vector<std::size_t>& part, double top)
    {
        std::vector<Column> columns = FillColumns(part);
        for (const Column& column : columns)
            Stack(column);
        for (int round = 0; round < roundCount; ++round) {
            for (auto column = columns.begin() + 1; column < columns.end(); ++column)
                Arrange(*column, _in, &LayoutEdge::Tail, &LayoutEdge::TailOffset,
                        &LayoutEdge::HeadOffset);
            for (auto column = columns.rbegin() + 1; column < columns.rend(); ++column)
                Arrange(*column, _out, &LayoutEdge::Head, &LayoutEdge::HeadOffset,
                        &LayoutEdge::TailOffset);
        }
        double x = 0;
        for (const Column& column : columns) {
            double width = 0;
            for (const std::size_t node : column) {
                _points[node].X = x;
                width = std::max(width, _nodes[node].Width);
            }
            x += width + columnGap;
        }
        double highest = _points[part.front()].Y;
        for (const std::size_t node : part)
            highest = std::min(highest, _points[node].Y);
        double bottom = 0;
        for (const std::size_t node : part) {
            _points[node].Y += top - highest;
            bottom = std::max(bottom, _points[node].Y + _nodes[node].Height);
        }
        return {x - columnGap, bottom - top};
    }

    /// Distributes the nodes of a part among columns, left to right; within a column they are in
    /// the order in which they are reached from the last column.
    std::vector<Column> FillColumns(const std::vector<std::size_t>& part)
    {
        std::size_t last = 0;
        for (const std::size_t node : part)
            last = std::max(last, _ranks[node]);
        std::vector<Column> columns(last + 1);
        std::vector<std::size_t> waiting;
        for (auto node = part.rbegin(); node != part.rend(); ++node) {
            if (_out.At(*node).empty())
                waiting.push_back(*node);
        }
        while (!waiting.empty()) {
            const std::size_t node = waiting.back();
            waiting.pop_back();
            if (_isPlaced[node])
                continue;
            _isPlaced[node] = true;
            columns[last - _ranks[node]].push_back(node);
            const auto in = _in.At(node);
            for (auto edge = in.rbegin(); edge != in.rend(); ++edge)
                waiting.push_back(_edges[*edge].Tail);
            _stepCount += 1 + in.size();
        }
        return columns;
    }

    void Stack(const Column& column)
    {
        double y = 0;
        for (const std::size_t node : column) {
            _points[node].Y = y;
            y += _nodes[node].Height + rowGap;
        }
    }

    /// Sorts and positions the nodes of a column by their neighbours on one side.
    void Arrange(Column& column, EdgeLists& edges, std::size_t LayoutEdge::*other,
                 double LayoutEdge::*otherOffset, double LayoutEdge::*ownOffset)
    {
        struct Wish
        {
            std::size_t Node;
            double Key; ///< mean height of the ports on the other side
            double Y;   ///< position at which the edges would be level on average
        };
        std::vector<Wish> wishes;
        wishes.reserve(column.size());
        for (const std::size_t node : column) {
            const auto joined = edges.At(node);
            _stepCount += 1 + joined.size();
            Wish wish = {node, _points[node].Y + _nodes[node].Height / 2, _points[node].Y};
            if (!joined.empty()) {
                double key = 0;
                double y = 0;
                for (const std::size_t index : joined) {
                    const LayoutEdge& edge = _edges[index];
                    const double port = _points[edge.*other].Y + edge.*otherOffset;
                    key += port;
                    y += port - edge.*ownOffset;
                }
                const auto count = static_cast<double>(joined.size());
                wish.Key = key / count;
                wish.Y = y / count;
            }
            wishes.push_back(wish);
        }
        std::ranges::stable_sort(wishes, [&](const Wish& left, const Wish& right) {
            ++_stepCount;
            return left.Key < right.Key;
        });

        // Neighbours that would overlap are merged into a block, placed at the mean of the
        // positions that its members prefer.
        struct Block
        {
            std::size_t First;
            double Sum; ///< sum of the positions at which the members prefer the block to start
            std::size_t Count;
            double Height; ///< including the gap below each member

            double Y() const { return Sum / static_cast<double>(Count); }
        };
        std::vector<Block> blocks;
        for (std::size_t i = 0; i < wishes.size(); ++i) {
            column[i] = wishes[i].Node;
            Block block = {i, wishes[i].Y, 1, _nodes[column[i]].Height + rowGap};
            while (!blocks.empty() && blocks.back().Y() + blocks.back().Height > block.Y()) {
                const Block& before = blocks.back();
                const double shift = before.Height * static_cast<double>(block.Count);
                block = {before.First, before.Sum + block.Sum - shift, before.Count + block.Count,
                         before.Height + block.Height};
                blocks.pop_back();
                ++_stepCount;
            }
            blocks.push_back(block);
        }
        for (const Block& block : blocks) {
            double y = block.Y();
            for (std::size_t i = block.First; i < block.First + block.Count; ++i) {
                _points[column[i]].Y = y;
                y += _nodes[column[i]].Height + rowGap;
            }
        }
    }

    void PlaceSingles(const std::vector<std::size_t>& singles, double top, double width)
    {
        double area = 0;
        for (const std::size_t node : singles)
            area += (_nodes[node].Width + rowGap) * (_nodes[node].Height + rowGap);
        const double rowWidth = std::max(width, std::sqrt(area));
        LayoutPoint next = {0, top};
        double height = 0;
        for (const std::size_t node : singles) {
            if (next.X > 0 && next.X + _nodes[node].Width > rowWidth) {
                next = {0, next.Y + height + rowGap};
                height = 0;
            }
            _points[node] = next;
            next.X += _nodes[node].Width + rowGap;
            height = std::max(height, _nodes[node].Height);
            ++_stepCount;
        }
    }

    const std::vector<LayoutNode>& _nodes;
    const std::vector<LayoutEdge>& _edges;
    EdgeLists _in; ///< sorted by port
    EdgeLists _out;
    std::vector<std::size_t> _ranks; ///< by node: number of columns to the last one
    std::vector<LayoutPoint> _points;
    std::vector<bool> _isPlaced;
    std::size_t _stepCount = 0;
};

} // namespace

Layout LayOutInLayers(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges)
{
    return LayeredLayout(nodes, edges).Make();
}

} // namespace Mox::Host
