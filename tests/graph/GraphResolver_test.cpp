#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "tests/support/Failure.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/ProbeNode.h"

#include <gtest/gtest.h>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

/// Probes "0" -> "1" -> ... in a row; nodes and edges are in reverse order in the document.
MaterialDocument Chain(int count)
{
    MaterialDocument document;
    for (int i = count - 1; i >= 0; --i) {
        document.Nodes.push_back({std::to_string(i), "Probe", 0, {}, 0});
        if (i > 0)
            document.Edges.push_back({std::to_string(i - 1), "out", std::to_string(i), "in_1", 0});
    }
    return document;
}

class Resolution
{
public:
    explicit Resolution(const MaterialDocument& document)
        : Graph(LoadMaterial(document, ProbeMaker(), Problems)), Resolver(Graph)
    {
        Resolver.Resolve(Problems);
        ForgetCalls();
    }

    ProbeNode& At(int id) const
    {
        return dynamic_cast<ProbeNode&>(
            *Graph.Nodes()[Graph.FindNode(std::to_string(id), {})].Gui.Handle());
    }

    /// Resolves and returns "node:count calls/precision calls" for each node called.
    std::string Calls()
    {
        Resolver.Resolve(Problems);
        std::string calls;
        for (int i = 0; i < static_cast<int>(Graph.Nodes().size()); ++i) {
            const ProbeNode& node = At(i);
            if (node.CountCalls + node.PrecisionCalls > 0)
                calls += Compose(i, ":", node.CountCalls, "/", node.PrecisionCalls, " ");
        }
        ForgetCalls();
        return calls;
    }

    void ForgetCalls() const
    {
        for (int i = 0; i < static_cast<int>(Graph.Nodes().size()); ++i)
            At(i).CountCalls = At(i).PrecisionCalls = 0;
    }

    ProblemList Problems;
    MaterialGraph Graph;
    GraphResolver Resolver;
};

TEST(GraphResolver, CallsOnlyWhatAChangeReaches)
{
    Resolution chain(Chain(8));
    EXPECT_EQ(chain.Calls(), "");
    chain.Graph.Apply({{Set("3; PositionX:float=5")}});
    EXPECT_EQ(chain.Calls(), "");
    chain.Graph.Apply({{Set("3; Failure:string=")}});
    EXPECT_EQ(chain.Calls(), "");

    // A wider output affects all following nodes up to the one whose own output is fixed.
    chain.Graph.Apply({{Set("6; Width:integer=2")}});
    EXPECT_EQ(chain.Calls(), "6:1/1 7:1/1 ");
    chain.Graph.Apply({{Set("3; Width:integer=3")}});
    EXPECT_EQ(chain.Calls(), "3:1/1 4:1/1 5:1/1 6:1/1 ");
    EXPECT_EQ(chain.At(6).InputPorts[0].GetComponentCount(), 3);
    EXPECT_EQ(chain.At(7).InputPorts[0].GetComponentCount(), 2);
    chain.Graph.Apply({{Set("3; Inputs:integer=3")}});
    EXPECT_EQ(chain.Calls(), "3:1/1 ");

    // Precision propagates in the opposite direction.
    chain.Graph.Apply({{Set("4; Float:bool=true")}});
    EXPECT_EQ(chain.Calls(), "0:0/1 1:0/1 2:0/1 3:0/1 4:1/1 ");
    EXPECT_EQ(chain.At(0).OutputPorts[0].GetPrecision(), ComponentType::Float);
    EXPECT_EQ(chain.At(5).OutputPorts[0].GetPrecision(), ComponentType::Half);

    // Removing an edge affects both of its ends.
    const DocumentChange inverse = chain.Graph.Apply({{RemoveEdge{{"1", "out", "2", "in_1"}}}});
    EXPECT_EQ(chain.Calls(), "0:0/1 1:1/1 2:1/1 ");
    chain.Graph.Undo(inverse);
    EXPECT_EQ(chain.Calls(), "0:0/1 1:1/1 2:1/1 ");
}

TEST(GraphResolver, LongChainInAnyOrder)
{
    constexpr int count = 200000;
    Resolution chain(Chain(count));
    EXPECT_TRUE(chain.Problems.Problems().empty());
    EXPECT_NE(HostFailureOf([&] {
                  chain.Graph.Apply({{Edge(Compose(count - 1, ".out -> 0.in_1"))}});
              }).find(Compose("edges form a cycle: \"", count - 1, "\" -> \"0\" -> \"1\"")),
              std::string::npos);
    chain.Graph.Apply({{Set("0; Width:integer=4")}});
    const auto called = chain.Resolver.Resolve(chain.Problems);
    EXPECT_EQ(called.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(chain.At(count - 1).OutputPorts[0].GetComponentCount(), 4);
    chain.Graph.Apply({{Set("100; Inputs:integer=1")}});
    EXPECT_EQ(chain.Resolver.Resolve(chain.Problems).size(), 1u);
}

} // namespace
