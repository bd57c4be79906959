#include "mox/Text.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphCopy.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Failure.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <sstream>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

/// Lists everything in a material and its problems, one per line.
std::vector<std::string> Facts(const MaterialGraph& graph)
{
    std::vector<std::string> facts;
    for (const DocumentNode& node : graph.Document().Nodes) {
        facts.push_back(Compose("node ", node.Id, " ", node.Type, " ", node.Version));
        for (const DocumentProperty& property : node.Properties)
            facts.push_back(Compose(node.Id, "; ", property.Name, "=", property.Value));
    }
    for (const DocumentEdge& edge : graph.Document().Edges) {
        facts.push_back(
            Compose(edge.Tail, ".", edge.TailPort, " -> ", edge.Head, ".", edge.HeadPort));
    }
    for (const auto* values : {&graph.Document().Description, &graph.Document().RenderState}) {
        for (const auto& [name, value] : *values)
            facts.push_back(Compose("material; ", name, "=", value));
    }
    for (const DocumentBinding& binding : graph.Document().Bindings) {
        for (const auto& [name, value] : binding.Values)
            facts.push_back(Compose(binding.Stream, " ", binding.Tag, "; ", name, "=", value));
    }
    ProblemList problems;
    graph.ReportProblems(problems);
    for (const Problem& problem : problems.Problems())
        facts.push_back(Compose("wrong: ", problem.Where.Node, ": ", problem.Message));
    return facts;
}

std::string Missing(const std::vector<std::string>& from, const std::vector<std::string>& in,
                    const char* mark)
{
    std::string lines;
    for (const std::string& fact : from) {
        if (std::find(in.begin(), in.end(), fact) == in.end())
            lines += Compose("  ", mark, " ", fact, "\n");
    }
    return lines;
}

/// A graph that is edited by text commands.
class EditSession
{
public:
    std::string Do(const std::string& line)
    {
        const std::size_t blank = line.find_first_of(" \n");
        const std::string word = line.substr(0, blank);
        const std::string rest = blank == line.npos ? "" : line.substr(blank + 1);
        if (word == "document") {
            _graph.emplace(MaterialFromText(rest), NodeMaker(TestPlugins()));
            _history.emplace(*_graph);
            return Missing(Facts(*_graph), {}, "+");
        }
        const std::vector<std::string> before = Facts(*_graph);
        const std::string failure = HostFailureOf([&] {
            if (word == "undo")
                _history->Undo();
            else if (word == "redo")
                _history->Redo();
            else
                Apply(ChangeOf(word, rest));
        });
        const std::vector<std::string> after = Facts(*_graph);
        return Missing(before, after, "-") + Missing(after, before, "+") +
               (failure == "no failure" ? "" : Compose("  failure: ", failure, "\n"));
    }

private:
    void Apply(const GraphChange& change)
    {
        ProblemList problems;
        MaterialGraph loaded(
            ParseMaterialDocument("test.xml", FormatMaterialDocument(_graph->Document()), problems),
            NodeMaker(TestPlugins()));
        HostFailureOf([&] { loaded.Apply(change); });
        try {
            _history->Do(change);
        } catch (const HostError&) {
            EXPECT_EQ(Facts(loaded), Facts(*_graph));
            throw;
        }
        EXPECT_EQ(Facts(loaded), Facts(*_graph));
    }

    GraphChange ChangeOf(const std::string& word, const std::string& rest) const
    {
        std::istringstream words(rest);
        const std::vector<std::string> ids{std::istream_iterator<std::string>(words), {}};
        if (word == "add")
            return {{AddNode{MaterialFromText(rest).Nodes[0], {}}}};
        if (word == "remove")
            return {{RemoveNode{rest}}};
        if (word == "rename")
            return {{RenameNode{ids[0], ids[1]}}};
        if (word == "edge")
            return {{AddEdge{MaterialFromText(rest).Edges[0], {}, {}}}};
        if (word == "cut")
            return {{RemoveEdge{MaterialFromText(rest).Edges[0]}}};
        if (word == "describe")
            return {{SetDescription{{{ids[0], ids[1]}}}}};
        if (word == "render")
            return {{SetRenderState{{{ids[0], ids[1]}}}}};
        if (word == "bind")
            return {{SetBinding{{ids[0], ids[1], {{ids[2], ids[3]}}}}}};
        if (word == "unbind")
            return {{RemoveBinding{ids[0], ids[1]}}};
        if (word == "copy")
            return CopyParts(*_graph, {ids, {}}, *_graph);
        const std::string id = rest.substr(0, rest.find(';'));
        const std::string& type = _graph->Document().Nodes[_graph->FindNode(id, Place())].Type;
        const MaterialDocument settings =
            MaterialFromText(Compose(id, " ", type, rest.substr(id.size())));
        SetProperties step;
        for (const DocumentProperty& property : settings.Nodes[0].Properties)
            step.Settings.push_back({id, property});
        return {{step}};
    }

    std::optional<MaterialGraph> _graph;
    std::optional<ChangeHistory> _history;
};

/// Edits have the same result on valid and invalid documents, whether or not the document was saved
/// and loaded before.
TEST(EditSession, RecordsTakeOverWhatTheUserMeans)
{
    EditSession session;
    ExpectSession("graph/edits.txt", [&](const std::string& line) { return session.Do(line); });
}

} // namespace
