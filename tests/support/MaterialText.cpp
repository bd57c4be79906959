#include "tests/support/MaterialText.h"

#include "mox/document/PropertyText.h"
#include "tests/support/BuildTree.h"

#include <sstream>

using namespace Mox::Host;

namespace {

DocumentEdge ParseEdge(const std::string& line, std::size_t arrow)
{
    const std::string tail = line.substr(0, arrow);
    const std::string head = line.substr(arrow + 4);
    const std::size_t tailDot = tail.rfind('.');
    const std::size_t headDot = head.rfind('.');
    DocumentEdge edge;
    edge.Tail = tail.substr(0, tailDot);
    edge.TailPort = tail.substr(tailDot + 1);
    edge.Head = head.substr(0, headDot);
    edge.HeadPort = head.substr(headDot + 1);
    return edge;
}

/// @param text such as " Name=rock; Twin:node=paint"
void ParseProperties(const std::string& text, int line, DocumentNode& node)
{
    std::istringstream settings(text);
    for (std::string setting; std::getline(settings >> std::ws, setting, ';');) {
        const std::size_t equals = setting.find('=');
        std::string name = setting.substr(0, equals);
        std::string kind;
        if (const std::size_t colon = name.find(':'); colon != std::string::npos) {
            kind = name.substr(colon + 1);
            name.resize(colon);
        }
        node.Properties.push_back(
            {name,
             kind.empty() ? TestPlugins().CreateNode(node.Type).Properties().Get(name)->Kind
                          : ParseKind(kind).value(),
             setting.substr(equals + 1), line});
    }
}

DocumentNode ParseNode(const std::string& line, int number)
{
    const std::size_t semicolon = line.find(';');
    const std::string words = line.substr(0, semicolon);
    const std::size_t blank = words.rfind(' ');
    const std::size_t at = words.find('@', blank);
    DocumentNode node;
    node.Id = words.substr(0, blank);
    node.Type = words.substr(blank + 1, at == std::string::npos ? at : at - blank - 1);
    node.Version = at == std::string::npos ? 0 : std::stoi(words.substr(at + 1));
    node.Line = number;
    if (semicolon != std::string::npos)
        ParseProperties(line.substr(semicolon + 1), number, node);
    return node;
}

} // namespace

MaterialDocument MaterialFromText(const std::string& text)
{
    MaterialDocument document;
    document.File = "test.xml";
    std::istringstream lines(text);
    int number = 0;
    for (std::string line; std::getline(lines >> std::ws, line);) {
        ++number;
        if (line.front() == '#')
            continue;
        if (const std::size_t arrow = line.find(" -> "); arrow != std::string::npos) {
            document.Edges.push_back(ParseEdge(line, arrow));
            document.Edges.back().Line = number;
        } else if (line.front() == ';') {
            ParseProperties(line.substr(1), number, document.Nodes.back());
        } else {
            document.Nodes.push_back(ParseNode(line, number));
        }
    }
    return document;
}

GraphStep Add(const std::string& node)
{
    return AddNode{MaterialFromText(node).Nodes[0], {}};
}

GraphStep Edge(const std::string& edge)
{
    return AddEdge{MaterialFromText(edge).Edges[0], {}, {}};
}

GraphStep Set(const std::string& setting)
{
    const std::size_t end = setting.find(';');
    const DocumentNode node = MaterialFromText("node Type" + setting.substr(end)).Nodes[0];
    return SetProperties{{{setting.substr(0, end), node.Properties[0]}}};
}
