#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/interchange/ReadMaterial.h"
#include "mox/interchange/StandardNodes.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Mox::Materials::GuiPort;

namespace {

void ExpectPorts(const std::vector<InterchangePort>& expected, const std::vector<GuiPort>& ports)
{
    for (const InterchangePort& entry : expected) {
        const auto port = std::ranges::find(ports, entry.Port, &GuiPort::Name);
        ASSERT_NE(port, ports.end()) << entry.Port;
        EXPECT_EQ(port->CountFixed ? port->ComponentCount : 0, entry.Count) << entry.Port;
    }
}

/// Creates a node with the settings of the table.
PluginNode NodeWith(const std::string& type, const NamedTexts& settings)
{
    PluginNode node = TestPlugins().CreateNode(type);
    EXPECT_TRUE(node) << type;
    for (const auto& [name, text] : settings) {
        const auto property = node.Properties().Get(name);
        const bool isGiven = text.find_first_of("$%^") == text.npos;
        EXPECT_TRUE(!isGiven || SetFromText(*property, property->Kind, text)) << name << text;
    }
    node.UpdatePorts({});
    return node;
}

TEST(StandardNodes, LeadToNodesAsTheyAre)
{
    for (const InterchangeNode& entry : GetStandardNodes().Nodes) {
        for (const InterchangeAlternative& alternative : entry.Alternatives) {
            if (alternative.Type.empty() || alternative.Code == "image" ||
                alternative.Code == "normalmap")
                continue;
            SCOPED_TRACE(entry.Name);
            const PluginNode node = NodeWith(alternative.Type, alternative.Settings);
            ExpectPorts(alternative.Inputs, node.InputPorts());
            ExpectPorts(alternative.Outputs, node.OutputPorts());
        }
    }
    for (const InterchangeBack& back : GetStandardNodes().Back)
        NodeWith(back.Type, back.Settings);
    for (const auto& [port, property] : GetStandardNodes().PortProperties)
        EXPECT_TRUE(TestPlugins().CreateNode(port.first).Properties().Get(property));
}

/// A document with one node; inputs of its type are connected on request.
std::string DocumentWith(const InterchangeNode& node, const std::string& type, bool isConnected)
{
    std::string text =
        Compose("<materialx version=\"1.39\"><nodegraph name=\"g\">\n"
                "<texcoord name=\"uv\" type=\"vector2\"/>\n<convert name=\"c\" type=\"",
                type, "\"><input name=\"in\" type=\"vector2\" nodename=\"uv\"/></convert>\n<",
                node.Name, " name=\"n\" type=\"", type, "\">\n");
    for (const auto& [input, usual] : node.Inputs) {
        const bool isFile = input == "file";
        const bool isValue = input.starts_with("in") || input == "fg" || input == "bg" ||
                             input.starts_with("value") || input == "low" || input == "amount";
        if (isFile)
            text += "<input name=\"file\" type=\"filename\" value=\"a.png\"/>\n";
        else if (isConnected && isValue && ParseNumbers(usual).size() == 1)
            text += Compose("<input name=\"", input, "\" type=\"", type, "\" nodename=\"c\"/>\n");
    }
    return text +
           Compose(
               "</", node.Name, ">\n<convert name=\"o\" type=\"color3\"><input name=\"in\" type=\"",
               type,
               "\" nodename=\"n\"/></convert>\n"
               "<output name=\"out\" type=\"color3\" nodename=\"o\"/></nodegraph>\n"
               "<surface_unlit name=\"s\" type=\"surfaceshader\"><input name=\"emission_color\" "
               "type=\"color3\" nodegraph=\"g\" output=\"out\"/></surface_unlit></materialx>\n");
}

/// The nodes for each category and type, with and without connections, yield programs.
TEST(StandardNodes, BecomeMaterialsWithoutErrors)
{
    for (const InterchangeNode& node : GetStandardNodes().Nodes) {
        for (const auto& [type, isConnected] :
             {std::pair("color3", false), std::pair("color3", true), std::pair("float", true),
              std::pair("vector2", true), std::pair("color4", true)}) {
            if (node.IsHelper || node.Alternatives.front().Kind == Carry::None)
                continue;
            ProblemList problems;
            MaterialDocument document =
                ParseMaterialX("n.mtlx", DocumentWith(node, type, isConnected), problems);
            MaterialGraph graph = LoadMaterial(std::move(document), TestPlugins(), problems);
            ResolveGraph(graph, problems);
            ReportCountConflicts(graph, problems);
            CheckMaterial(graph, "n.mtlx", TestEnvironment(), nullptr, problems);
            for (const Problem& problem : problems.Problems())
                EXPECT_NE(problem.Level, Severity::Error)
                    << node.Name << " " << type << isConnected << ": " << problem.Format();
        }
    }
}

TEST(StandardNodes, AreTheTableInTheDocumentation)
{
    const std::string file = MOX_TEST_DATA "/../docs/materialx.md";
    const std::string text = ReadText(file);
    const std::size_t begin = text.find("Counting the first entry of each node");
    ASSERT_NE(begin, text.npos);
    std::size_t end = text.find('|', begin);
    while (end < text.size() && text[end] == '|')
        end = text.find('\n', end) + 1;
    if (std::getenv("MOX_UPDATE_GOLDEN"))
        std::ofstream(file) << text.substr(0, begin) << FormatStandardNodes() << text.substr(end);
    else
        EXPECT_EQ(text.substr(begin, end - begin), FormatStandardNodes());
}

} // namespace
