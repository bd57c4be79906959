// Arbitrary material documents: each is read, loaded, resolved, checked and saved, or refused with
// a place and a one-line message.

#include "mox/check/MaterialCheck.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/ProgramFormat.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Claim.h"
#include "tests/support/GraphText.h"

#include <algorithm>
#include <cstdint>
#include <optional>
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

/// Writes a document and reads the result.
MaterialDocument WriteAndParse(const MaterialDocument& document, ProblemList& problems)
{
    const std::string written = FormatMaterialDocument(document);
    MaterialDocument again = Parse(written, problems);
    ClaimEqual(FormatMaterialDocument(again), written, "a document has one form");
    Claim(!problems.HasErrors(), "what is written can be read");
    return again;
}

/// The written document must yield the same graph with the same problems.
void ClaimSameGraph(const MaterialGraph& graph, const MaterialDocument& written)
{
    ProblemList problems;
    MaterialGraph again(written, NodeMaker(TestPlugins()));
    ResolveGraph(again, problems);
    ClaimEqual(DescribeGraph(again), DescribeGraph(graph), "what is written is the graph");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProblemList problems;
    const MaterialDocument document = Parse({reinterpret_cast<const char*>(data), size}, problems);
    std::optional<MaterialDocument> written;
    if (!problems.HasErrors())
        written = WriteAndParse(document, problems);

    MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    if (written)
        ClaimSameGraph(graph, *written);

    ProblemList found;
    const CgFormat format;
    CheckMaterial(graph, "fuzz.xml", TestEnvironment(), &format, found);
    ClaimClear(found);
    return 0;
}
