#include "mox/graph/OpenMaterial.h"
#include "tests/support/BuildTree.h"
#include "tests/support/EditCheck.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

/// A document with every possible kind of error; the editor uses the ids up to "n39".
MaterialDocument WrongMaterial()
{
    return MaterialFromText(R"(
        n0 CoreTexture; Reference=n1
        n1 CoreTexture; Reference=n2
        n2 CoreTexture; Reference=n0; Alpha=true
        n3 CoreTexture; Reference=n3
        n4 CoreTexture; Reference=n30; Alpha=true
        n5 CoreTexture; Reference=n6; Colour Type=Vector
        n6 CoreMaths; Function=Nonsense; Default Max=2
        n7 CoreMaths; Function:integer=1; Function=Clamp; Function=Lerp
        n8 CoreSwizzle@9; Component Count=2
        n9 NoSuchType; Elsewhere:node=n10
        n10 NoSuchType; Elsewhere:node=n9
        n11 CoreMaths; Function=Lerp
        n12 CoreMaths
        n6.out_value -> n7.in_value1
        n7.out_value -> n6.in_value1
        n11.out_value -> n6.in_value1
        n12.out_value -> n11.in_blend
        n11.out_value -> n12.in_value1
        n6.out_value -> n12.in_value2
        n12.out_value -> n6.in_value2
        n9.p -> n11.in_value1
        n11.out_value -> n9.p
        n12.out_value -> n12.in_value1
        n30.out_value -> n11.in_value2
        n12.out_value -> n11.in_value2
        n12.out_value -> n11.in_value2
        n12.out_value -> n31.in_value1
        n6.nothing -> n7.nothing
        n6.out_value -> n7.in_min
    )");
}

/// The fuzzer explores more than these seeds, starting from a single node.
TEST(ChangeHistory, RandomEditsEndWhereTheyBegan)
{
    constexpr int mostEdits = 150;
    const MaterialDocument documents[] = {ReadMaterialDocument(MOX_EXAMPLES "/flip_book.xml"),
                                          WrongMaterial()};
    const NodeMaker maker(TestPlugins());
    for (unsigned seed = 1; seed <= 30 && !HasFailure(); ++seed) {
        MaterialGraph graph(documents[seed % 2], maker);
        Random random(seed);
        const auto choose = [&](std::size_t end) { return random.Below(end); };
        int edits = 0;
        const auto isOver = [&] { return ++edits > mostEdits; };
        int done = 0;
        EXPECT_NO_THROW(done = CheckEdits(graph, maker, choose, isOver)) << "seed " << seed;
        EXPECT_GT(done, mostEdits / 5) << "seed " << seed;
    }
}

} // namespace
