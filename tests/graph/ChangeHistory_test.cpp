#include "mox/graph/MaterialLoader.h"
#include "tests/support/BuildTree.h"
#include "tests/support/EditCheck.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

/// The fuzzer looks further than these seeds, from a single node on.
TEST(ChangeHistory, RandomEditsEndWhereTheyBegan)
{
    constexpr int mostEdits = 150;
    const MaterialDocument document = ReadMaterialDocument(MOX_EXAMPLES "/flip_book.xml");
    for (unsigned seed = 1; seed <= 30 && !HasFailure(); ++seed) {
        MaterialGraph graph = LoadMaterial(document, TestPlugins());
        Random random(seed);
        const auto choose = [&](std::size_t end) { return random.Below(end); };
        int edits = 0;
        const auto isOver = [&] { return ++edits > mostEdits; };
        int done = 0;
        EXPECT_NO_THROW(done = CheckEdits(graph, choose, isOver)) << "seed " << seed;
        EXPECT_GT(done, mostEdits / 5) << "seed " << seed;
    }
}

} // namespace
