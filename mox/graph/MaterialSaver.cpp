#include "mox/graph/MaterialSaver.h"

#include "mox/graph/NodeSnapshot.h"
#include "mox/graph/StoredNode.h"
#include "mox/host/LibraryCall.h"

#include <algorithm>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::GuiProperty;
using Materials::GuiPropertyKind;

/// Writes one node.
class NodeSaver
{
public:
    NodeSaver(const GraphStore& graph, const GraphNode& node)
        : _graph(graph), _node(node), _properties(node.Gui.Properties().Properties)
    {
        FindEdited();
    }

    DocumentNode Save() const
    {
        DocumentNode saved = _node.Stored;
        if (std::find(_isEdited.begin(), _isEdited.end(), true) == _isEdited.end()) {
            for (DocumentProperty& property : saved.Properties)
                property.Value = ValueOf(property);
            return saved;
        }
        if (!_node.IsPlaceholder)
            saved.Version = _node.Gui.Properties().Version;
        saved.Properties.clear();
        for (std::size_t i = 0; i < _properties.size(); ++i) {
            const DocumentProperty* stored = FindStored(_properties[i]->Name);
            if (_isEdited[i]) {
                saved.Properties.push_back(_graph.Describe(*_properties[i]));
                if (stored) {
                    saved.Properties.back().Line = stored->Line;
                    saved.Properties.back().Comments = stored->Comments;
                }
            } else if (stored) {
                saved.Properties.push_back(*stored);
                saved.Properties.back().Value = ValueOf(*stored);
            }
        }
        for (const DocumentProperty& stored : _node.Stored.Properties) {
            if (!_node.Gui.Properties().Index.contains(stored.Name))
                saved.Properties.push_back(stored);
        }
        return saved;
    }

private:
    /// Compares with what loading the stored properties gives.
    void FindEdited()
    {
        const auto other = MakeAsStored(_graph, _node);
        const auto& others = other.Properties().Properties;
        _isEdited.resize(_properties.size());
        bool hasSettled = false;
        for (std::size_t i = 0; i < others.size(); ++i) {
            _isEdited[i] = !HaveSameValue(*_properties[i], *others[i]);
            if (!_isEdited[i])
                continue;
            if (_properties[i]->Editable)
                CallLibrary(_node.Where, [&] { others[i]->CopyFrom(_properties[i]); });
            else
                hasSettled = true;
        }
        if (!hasSettled)
            return;
        try {
            other.UpdatePorts(_node.Where);
        } catch (const HostError&) {
            return; // no help: all that differs is written
        }
        for (std::size_t i = 0; i < others.size(); ++i) {
            if (!_properties[i]->Editable)
                _isEdited[i] = _isEdited[i] && !HaveSameValue(*_properties[i], *others[i]);
        }
    }

    const DocumentProperty* FindStored(const std::string& name) const
    {
        for (const DocumentProperty& property : _node.Stored.Properties) {
            if (property.Name == name)
                return &property;
        }
        return nullptr;
    }

    /// The stored text, but for references: a stored id may mean another node by now.
    std::string ValueOf(const DocumentProperty& stored) const
    {
        const auto property = _node.Gui.Properties().Index.find(stored.Name);
        const bool isKnown = property != _node.Gui.Properties().Index.end();
        if (stored.Kind == GuiPropertyKind::Node && isKnown)
            return _graph.IdOf(property->second->Node.get());
        return stored.Value;
    }

    const GraphStore& _graph;
    const GraphNode& _node;
    const std::vector<boost::shared_ptr<GuiProperty>>& _properties;
    std::vector<bool> _isEdited; ///< the value is written anew
};

} // namespace

MaterialDocument SaveMaterial(const MaterialGraph& material)
{
    MaterialDocument document;
    document.File = material.Store().File();
    document.Description = material.Description;
    document.RenderState = material.RenderState;
    document.Bindings = material.Bindings;
    document.Comments = material.Comments;
    for (const MaterialGraph::Node& node : material.Nodes())
        document.Nodes.push_back(NodeSaver(material.Store(), node).Save());
    for (const MaterialGraph::Edge& edge : material.Edges())
        document.Edges.push_back(material.Store().Describe(edge));
    return document;
}

} // namespace Mox::Host
