#include "mox/graph/GraphOrder.h"

#include <gtest/gtest.h>

namespace {

using Mox::Host::GraphOrder;
using Mox::Host::OrderLink;
using Mox::Host::OrderNodes;
using Indices = std::vector<std::size_t>;

TEST(GraphOrder, KeepsTheOrderWhereLinksAllow)
{
    EXPECT_EQ(OrderNodes(3, {}).Order, (Indices{0, 1, 2}));
    EXPECT_EQ(OrderNodes(3, {{2, 0}}).Order, (Indices{1, 2, 0}));
    EXPECT_EQ(OrderNodes(3, {{2, 0}, {2, 0}, {0, 1}}).Order, (Indices{2, 0, 1}));
}

TEST(GraphOrder, FindsTheWayRoundACircle)
{
    // 0 leads into the circle 1 -> 3 -> 2 -> 1, which leads out to 4.
    const GraphOrder order = OrderNodes(5, {{0, 1}, {1, 3}, {3, 2}, {2, 1}, {2, 4}});
    EXPECT_TRUE(order.Order.empty());
    ASSERT_EQ(order.Cycle.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const OrderLink step(order.Cycle[i], order.Cycle[(i + 1) % 3]);
        EXPECT_TRUE(step == OrderLink(1, 3) || step == OrderLink(3, 2) || step == OrderLink(2, 1));
    }
    EXPECT_EQ(OrderNodes(1, {{0, 0}}).Cycle, (Indices{0}));
}

TEST(GraphOrder, LongChain)
{
    constexpr std::size_t count = 1000000;
    std::vector<OrderLink> links;
    for (std::size_t i = 1; i < count; ++i)
        links.emplace_back(i, i - 1);
    const GraphOrder order = OrderNodes(count, links);
    ASSERT_EQ(order.Order.size(), count);
    EXPECT_EQ(order.Order.front(), count - 1);
    links.emplace_back(0, count - 1);
    EXPECT_EQ(OrderNodes(count, links).Cycle.size(), count);
}

} // namespace
