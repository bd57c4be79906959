#include "mox/graph/NodeBuilder.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiNode;

GraphNode NodeBuilder::Make(std::size_t index, const DocumentNode& record) const
{
    GraphNode node;
    node.Id = record.Id;
    node.Where = {_document.Document().File, record.Line, record.Id};
    ProblemList& problems = node.Problems.Making;
    if (_document.FindNode(record.Id) != index) {
        problems.Fail("doubled-id", node.Where, "another node has this id already");
        return node;
    }
    MadeNode made;
    try {
        made = _maker.Make(record.Type, node.Where);
        // A document without the type has been reported by its reader.
        if (made.IsPlaceholder && !record.Type.empty()) {
            problems.Warn("unknown-type", node.Where,
                          Compose("no plug-in offers the type \"", record.Type, "\""));
        }
    } catch (const HostError& error) {
        try {
            made = {_maker.MakePlaceholder(record.Type, node.Where), true};
            problems.Fail("node-failed", error);
        } catch (const HostError& missing) {
            problems.Fail("no-placeholder", missing);
        }
    }
    node.Gui = made.Gui;
    node.IsPlaceholder = made.IsPlaceholder;
    // Others may look at the type before the placeholder has loaded it.
    if (node.IsPlaceholder && node.Gui)
        node.Gui.TypeProperty()->SetString(record.Type);
    return node;
}

std::set<std::string> NodeBuilder::Load(GraphNode& node, std::size_t index,
                                        const DocumentNode& record) const
{
    return LoadRecord(record, node, LookUpFor(index), node.Problems.Loading);
}

void NodeBuilder::BuildPorts(GraphNode& node) const
{
    try {
        node.Gui.UpdatePorts(node.Where);
    } catch (const HostError& error) {
        node.Problems.Building.Fail("ports-refused", error);
    }
    node.OutputUses.assign(node.Gui.OutputPorts().size(), 0);
}

GraphNode NodeBuilder::Build(std::size_t index, const DocumentNode& record) const
{
    GraphNode node = Make(index, record);
    if (node.IsShown()) {
        Load(node, index, record);
        BuildPorts(node);
    }
    return node;
}

NodeLookUp NodeBuilder::LookUpFor(std::size_t referrer) const
{
    return [this, referrer](const std::string& id) -> std::optional<boost::shared_ptr<GuiNode>> {
        const auto target = _document.FindNode(id);
        if (!target)
            return std::nullopt;
        if (BrokenReferences.contains({referrer, *target}))
            return boost::shared_ptr<GuiNode>();
        return _nodeAt(*target).Gui.Handle();
    };
}

} // namespace Mox::Host
