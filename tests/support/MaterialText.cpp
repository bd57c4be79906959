#include "tests/support/MaterialText.h"

#include <sstream>
#include <stdexcept>

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

DocumentNode ParseNode(const std::string& line)
{
    std::istringstream parts(line);
    DocumentNode node;
    std::string words;
    std::getline(parts, words, ';');
    const std::size_t blank = words.rfind(' ');
    node.Id = words.substr(0, blank);
    node.Type = words.substr(blank + 1);
    const auto fresh = TestPlugins().CreateNode(node.Type);
    for (std::string setting; std::getline(parts >> std::ws, setting, ';');) {
        const std::size_t equals = setting.find('=');
        DocumentProperty property;
        property.Name = setting.substr(0, equals);
        property.Kind = fresh->Properties->Get(property.Name)->Kind;
        property.Value = setting.substr(equals + 1);
        node.Properties.push_back(property);
    }
    return node;
}

} // namespace

const PluginSet& TestPlugins()
{
    static const PluginSet plugins = [] {
        PluginSet set;
        set.LoadFolder(MOX_PLUGIN_FOLDER);
        return set;
    }();
    return plugins;
}

MaterialDocument MaterialFromText(const std::string& text)
{
    MaterialDocument document;
    document.File = "test.xml";
    std::istringstream lines(text);
    int number = 0;
    for (std::string line; std::getline(lines >> std::ws, line);) {
        ++number;
        if (const std::size_t arrow = line.find(" -> "); arrow != std::string::npos) {
            document.Edges.push_back(ParseEdge(line, arrow));
            document.Edges.back().Line = number;
        } else {
            document.Nodes.push_back(ParseNode(line));
            document.Nodes.back().Line = number;
        }
    }
    return document;
}
