// Material documents: whatever stands in the file, it is read, loaded, settled, checked and saved,
// or refused with a place and one line.

#include "mox/check/MaterialCheck.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/graph/MaterialSaver.h"
#include "mox/program/CgFormat.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Claim.h"
#include "tests/support/GraphText.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace Mox::Host;

namespace {

void ClaimClear(const ProblemList& problems)
{
    for (const Problem& problem : problems.Problems()) {
        Claim(!problem.Rule.empty() && !problem.Message.empty(), "a problem has a rule and a text");
        const std::string line = problem.Format();
        Claim(line.find('\n') == std::string::npos && line.size() < 5000,
              "a problem is one line of bearable length");
        ClaimEqual(problem.Where.File, "fuzz.xml", "a problem names the document");
    }
}

MaterialDocument Parse(std::string_view text, ProblemList& problems)
{
    MaterialDocument document = ParseMaterialDocument("fuzz.xml", text, problems);
    ClaimClear(problems);
    return document;
}

/// What a graph is saved as is the same graph again.
/// @param isWhole nothing of the document was refused
void ClaimSavedLoads(const MaterialGraph& graph, bool isWhole)
{
    const std::string saved = FormatMaterialDocument(SaveMaterial(graph));
    ProblemList problems;
    const MaterialDocument document = Parse(saved, problems);
    Claim(!problems.HasErrors(), "what is saved can be read");
    MaterialGraph again = LoadMaterial(document, TestPlugins(), problems);
    Claim(!isWhole || !problems.HasErrors(), "what is saved loads without an error");
    ResolveGraph(again, problems);
    ClaimEqual(FormatMaterialDocument(SaveMaterial(again)), saved, "what is saved stays");
    ClaimEqual(DescribeNodes(again), DescribeNodes(graph), "what is saved is the graph");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProblemList problems;
    const MaterialDocument document = Parse({reinterpret_cast<const char*>(data), size}, problems);
    const bool isAccepted = !problems.HasErrors();
    std::string written;
    if (isAccepted) {
        written = FormatMaterialDocument(document);
        ClaimEqual(FormatMaterialDocument(Parse(written, problems)), written,
                   "a document has one form");
        Claim(!problems.HasErrors(), "what is written can be read");
    }

    MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    const bool isWhole = !problems.HasErrors();
    if (isWhole)
        ClaimEqual(FormatMaterialDocument(SaveMaterial(graph)), written, "loading loses nothing");
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    if (isAccepted)
        ClaimSavedLoads(graph, isWhole);

    ProblemList found;
    const CgFormat proof;
    CheckMaterial(graph, "fuzz.xml", TestEnvironment(), &proof, found);
    ClaimClear(found);
    return 0;
}
