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

/// A wrapper around a node. The host calls nodes only through this class.
///
/// Nodes come from plug-ins, whose code may throw any exception. Each virtual operation has a
/// member function here that throws only HostError and std::bad_alloc, and that replaces null
/// pointers in the data members of the node. GuiNode itself is an incomplete type in host code:
/// only the sources of PluginNode and Plugin, and sources that define nodes, include its header, so
/// other sources cannot call the operations.
///
/// A destructor must not throw: if the destructor of a node throws, the program terminates.
///
/// The class behaves like a pointer: copies refer to the same node, and a const wrapper allows
/// changes to the node. The plug-in of the node stays loaded as long as a copy exists.
class PluginNode
{
public:
    using EdgeList = std::list<boost::weak_ptr<Materials::GuiEdge>>;

    /// Creates an empty wrapper; only Handle and the tests for a node may be called.
    PluginNode() = default;

    /// Wraps a node that was just created.
    /// @throws HostError if the handle is empty or one of the node's data members is missing
    explicit PluginNode(boost::shared_ptr<Materials::GuiNode> node, const Place& where = {});

    explicit operator bool() const { return static_cast<bool>(_node); }
    friend bool operator==(const PluginNode& left, const PluginNode& right) = default;

    /// The virtual operations. Each accepts the location of the node in its document.
    /// @throws HostError with this location, whatever the node throws, and if one of the node's
    ///         data members is missing afterwards; the message names the operation and the type
    ///         unless the library itself raised the error
    void UpdatePorts(const Place& where) const;
    std::string GetTitle(const Place& where) const;
    void ResolveComponentCounts(const Place& where) const;
    void ResolvePrecisions(const Place& where) const;
    void GenerateShader(const Place& where, ShaderGraphGenerator& generator) const;
    bool HasBinding(const Place& where) const;

    /// Creates the bindings of the node in its order; none if the node reports that it has none.
    /// @throws HostError also if one of them is null
    std::vector<PluginBinding> CreateBindings(const Place& where) const;
    void LoadProperties(const Place& where,
                        const boost::shared_ptr<Materials::GuiPropertyBag>& stored) const;

    /// The data members of the node. Reading them does not execute plug-in code.
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

    /// Describes the node for messages: its name, followed by its type.
    std::string Describe() const;

    /// Returns the index of the first port with this name, or -1.
    std::int32_t FindInputPort(const std::string& name) const;
    std::int32_t FindOutputPort(const std::string& name) const;

    /// @throws HostError with the location if there is no such port
    Materials::GuiPort& GetInputPort(const Place& where, const std::string& name) const;
    Materials::GuiPort& GetOutputPort(const Place& where, const std::string& name) const;

    /// The handle that edges and properties use to refer to the node.
    const boost::shared_ptr<Materials::GuiNode>& Handle() const { return _node; }

private:
    template <class Operation>
    void Call(const Place& where, const char* name, Operation operation) const;

    boost::shared_ptr<Materials::GuiNode> _node;
    boost::shared_ptr<Materials::GuiPropertyBag> _bag; ///< kept because the node may lose it
};

/// Returns the keyword of a port's precision, such as "half"; an empty string if the precision is
/// unknown or invalid.
std::string PrecisionOf(const Materials::GuiPort& port);

} // namespace Mox::Host
