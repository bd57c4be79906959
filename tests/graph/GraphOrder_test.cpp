#include "mox/graph/GraphOrder.h"

#include <gtest/gtest.h>

namespace {

using Mox::Host::OrderNodes;
using Indices = std::vector<std::size_t>;

/// Cycles and long chains are covered by the tests of loading and resolving.
TEST(GraphOrder, KeepsTheOrderWhereLinksAllow)
{
    EXPECT_EQ(OrderNodes(3, {}).Order, (Indices{0, 1, 2}));
    EXPECT_EQ(OrderNodes(3, {{2, 0}}).Order, (Indices{1, 2, 0}));
    EXPECT_EQ(OrderNodes(3, {{2, 0}, {2, 0}, {0, 1}}).Order, (Indices{2, 0, 1}));
}

} // namespace
