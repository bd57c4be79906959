// Arbitrary MaterialX documents: each becomes a material document that can be saved, loaded,
// checked and written as MaterialX again, or is refused with a place and a one-line message.

#include "mox/check/MaterialCheck.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/interchange/CompleteMaterial.h"
#include "mox/interchange/ReadMaterial.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Claim.h"

#include <cstdint>
#include <string_view>

using namespace Mox::Host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProblemList problems;
    const MaterialDocument document =
        ParseMaterialX("fuzz.mtlx", {reinterpret_cast<const char*>(data), size}, problems);
    for (const Problem& problem : problems.Problems()) {
        Claim(!problem.Rule.empty() && !problem.Message.empty(), "a problem has a rule and a text");
        ClaimEqual(problem.Where.File, "fuzz.mtlx", "a problem names the document");
    }
    if (problems.HasErrors())
        return 0;
    const std::string saved = FormatMaterialDocument(document);
    ProblemList found;
    const MaterialDocument again = ParseMaterialDocument("fuzz.xml", saved, found);
    Claim(!found.HasErrors(), "what is made of MaterialX can be saved and read");
    ClaimEqual(FormatMaterialDocument(again), saved, "a document has one form");

    MaterialGraph graph = LoadMaterial(document, TestPlugins(), found);
    ResolveGraph(graph, found);
    CheckMaterial(graph, "fuzz.mtlx", TestEnvironment(), nullptr, found);
    Claim(!ParseMaterialX("again.mtlx",
                          WriteMaterialX(DescribeMaterial(graph, TestPlugins()), found), found)
               .Nodes.empty(),
          "what is written can be read");
    return 0;
}
