#include "mox/graph/MaterialGraph.h"

#include "mox/Text.h"
#include "mox/graph/GraphEdit.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

MaterialGraph::MaterialGraph(NodeMaker maker, std::string file)
    : _graph(std::move(maker), std::move(file))
{}

GraphChange MaterialGraph::Apply(const GraphChange& change)
{
    GraphEdit edit(_graph);
    for (const GraphStep& step : change.Steps)
        std::visit(edit, step);
    return edit.Finish();
}

GraphChange MaterialGraph::AddNode(const std::string& id, const std::string& type,
                                   const std::string& before)
{
    const MadeNode sample = _graph.Maker().Make(type, {_graph.File(), 0, id, {}});
    const std::int32_t version = sample.IsPlaceholder ? 0 : sample.Gui.Properties().Version;
    return Apply({{Host::AddNode{{id, type, version, {}, 0}, {}, before}}});
}

GraphChange MaterialGraph::RemoveNode(const std::string& id)
{
    return Apply({{Host::RemoveNode{id}}});
}

GraphChange MaterialGraph::RenameNode(const std::string& id, const std::string& newId)
{
    return Apply({{Host::RenameNode{id, newId}}});
}

GraphChange MaterialGraph::Connect(const std::string& tail, const std::string& tailPort,
                                   const std::string& head, const std::string& headPort)
{
    return Apply({{AddEdge{{tail, tailPort, head, headPort, 0}, {}, {}}}});
}

GraphChange MaterialGraph::Disconnect(const std::string& tail, const std::string& tailPort,
                                      const std::string& head, const std::string& headPort)
{
    return Apply({{RemoveEdge{{tail, tailPort, head, headPort, 0}}}});
}

GraphChange MaterialGraph::SetProperty(const std::string& node, const std::string& property,
                                       const std::string& value)
{
    const Node& changed = Nodes()[FindNode(node, {_graph.File(), 0, {}, {}})];
    const auto& index = changed.Gui.Properties().Index;
    const auto& stored = changed.Stored.Properties;
    DocumentProperty setting{property, Materials::GuiPropertyKind::String, value};
    if (const auto known = index.find(property); known != index.end()) {
        setting.Kind = known->second->Kind;
    } else {
        for (const DocumentProperty& unknown : stored) {
            if (unknown.Name == property)
                setting.Kind = unknown.Kind;
        }
    }
    return Apply({{SetProperties{{{node, setting}}}}});
}

std::size_t MaterialGraph::FindNode(const std::string& id, const Place& where) const
{
    const auto index = _graph.FindNode(id);
    if (!index)
        throw HostError(where, Compose("there is no node \"", id, "\""));
    return *index;
}

} // namespace Mox::Host
