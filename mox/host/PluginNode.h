#pragma once

#include "mox/authoring/GuiPort.h"
#include "mox/authoring/GuiPropertyBag.h"
#include "mox/host/HostError.h"
#include "mox/host/PluginBinding.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <list>
#include <string>
#include <vector>

class ShaderGraphGenerator;

namespace Mox::Materials {

class GuiEdge;
class GuiNode;

} // namespace Mox::Materials

namespace Mox::Host {

/// A node, and the only way by which the host calls it.
///
/// Nodes come from plug-ins, whose code may throw anything. Each virtual operation is a member here
/// that lets nothing out but HostErrors and std::bad_alloc, and that leaves no null among the
/// records of the node. GuiNode itself is an incomplete type in host code: only the sources of
/// PluginNode and Plugin, and sources that define nodes, include its header, so no other source can
/// call an operation.
///
/// A destructor must not throw: if that of a node does, the language ends the program.
///
/// It works like a pointer: copies lead to the same node, and a const one allows changes of the
/// node. The node's plug-in stays loaded as long as a copy lives.
class PluginNode
{
public:
    using EdgeList = std::list<boost::weak_ptr<Materials::GuiEdge>>;

    /// Leads to no node; nothing but Handle and the tests for a node may be called.
    PluginNode() = default;

    /// Takes a node that was just created.
    /// @throws HostError if the handle is empty or the node lacks one of its records
    explicit PluginNode(boost::shared_ptr<Materials::GuiNode> node, const Place& where = {});

    explicit operator bool() const { return static_cast<bool>(_node); }
    friend bool operator==(const PluginNode& left, const PluginNode& right) = default;

    /// The virtual operations. Each takes the place of the node in its document.
    /// @throws HostError at this place, whatever the node throws; the message names operation and
    ///         type unless it is one of the library's own. Also if the node loses a record.
    void UpdatePorts(const Place& where) const;
    std::string GetTitle(const Place& where) const;
    void ResolveComponentCounts(const Place& where) const;
    void ResolvePrecisions(const Place& where) const;
    void GenerateShader(const Place& where, ShaderGraphGenerator& generator) const;
    bool HasBinding(const Place& where) const;

    /// The bindings of the node in its order; none if it says that it has none.
    /// @throws HostError also if one of them is null
    std::vector<PluginBinding> CreateBindings(const Place& where) const;
    void LoadProperties(const Place& where,
                        const boost::shared_ptr<Materials::GuiPropertyBag>& stored) const;

    /// The records of the node. Reading them calls nothing of the plug-in.
    Materials::GuiPropertyBag& Properties() const;
    std::vector<Materials::GuiPort>& InputPorts() const;
    std::vector<Materials::GuiPort>& OutputPorts() const;
    EdgeList& InEdges() const;
    EdgeList& OutEdges() const;
    float (&ForegroundColour() const)[4]; ///< red, green, blue, alpha
    float (&BackgroundColour() const)[4]; ///< red, green, blue, alpha

    /// The values of the standard properties "Type", "Name" and "Description".
    const std::string& Type() const;
    const std::string& Name() const;
    const std::string& Description() const;

    /// The standard properties themselves.
    const boost::shared_ptr<Materials::GuiProperty>& TypeProperty() const;
    const boost::shared_ptr<Materials::GuiProperty>& NameProperty() const;

    /// The node as messages name it: name, then type.
    std::string Describe() const;

    /// Position of the first port with that name, or -1.
    std::int32_t FindInputPort(const std::string& name) const;
    std::int32_t FindOutputPort(const std::string& name) const;

    /// @throws HostError at the place if there is no such port
    Materials::GuiPort& GetInputPort(const Place& where, const std::string& name) const;
    Materials::GuiPort& GetOutputPort(const Place& where, const std::string& name) const;

    /// The node as properties that refer to it and edges hold it.
    const boost::shared_ptr<Materials::GuiNode>& Handle() const { return _node; }

private:
    template <class Operation>
    void Call(const Place& where, const char* name, Operation operation) const;

    boost::shared_ptr<Materials::GuiNode> _node;
    boost::shared_ptr<Materials::GuiPropertyBag> _bag; ///< that of the node, which may lose it
};

/// The word of a port's precision, such as "half"; empty if it is not known, or if the node has set
/// what is no precision.
std::string PrecisionOf(const Materials::GuiPort& port);

} // namespace Mox::Host
