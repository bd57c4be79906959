#pragma once

#include "mox/Export.h"
#include "mox/authoring/DiGraphNode.h"
#include "mox/authoring/GuiEdge.h"
#include "mox/authoring/GuiPort.h"
#include "mox/authoring/GuiPropertyBag.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

class ShaderGraphGenerator;
class ShaderNode;

namespace Mox::Materials {

class GuiNode;
class Material;

} // namespace Mox::Materials

extern template class MOX_API DiGraphNode<Mox::Materials::GuiNode, Mox::Materials::GuiEdge>;

namespace Mox::Materials {

/// Base class of everything that a user places in a material graph.
///
/// A node never traverses the graph: the host calls the virtual functions of one node at a time.
/// Nodes are created on the heap by a factory and held by shared pointers; a node has no handle to
/// itself. Not thread-safe.
class MOX_API GuiNode : public DiGraphNode<GuiNode, GuiEdge>
{
public:
    virtual ~GuiNode();

    /// Rebuilds both port lists from the properties. All flags of the ports (known, conflict,
    /// Connected) are reset. The Core nodes ignore the argument; a host may pass any object to its
    /// own nodes, or an empty handle.
    virtual void UpdatePorts(const boost::shared_ptr<void>& hostContext);

    /// Returns the title to show on the node; by default the value of "Name".
    virtual std::string GetTitle();

    /// Determines the component counts of the node and of its free ports. Before the call, each
    /// connected free input must have the count of the output that feeds it; the counts of
    /// unconnected inputs are unknown. Conflicting counts are not an error; they set CountConflict
    /// of the ports.
    virtual void ResolveComponentCounts();

    /// Determines the precisions: float if a known output is float, otherwise half. Before the
    /// call, each output that feeds a float input must have the known precision float.
    virtual void ResolvePrecisions();

    /// Adds the node to the shader graph. Counts and precisions must be resolved.
    /// @throws ShaderError if the node cannot be exported
    virtual void GenerateShader(ShaderGraphGenerator& generator) = 0;

    /// Whether CreateBindings would add anything.
    virtual bool HasBinding();

    /// Adds the node's run-time parameters to the material.
    virtual void CreateBindings(const boost::shared_ptr<Material>& material);

    /// Copies stored values to the properties. Ports are not rebuilt; call UpdatePorts afterwards.
    /// @throws ShaderError if the stored set is newer than the node's own, in which case nothing
    ///        changes, or if a value is not valid for its property
    virtual void LoadProperties(const boost::shared_ptr<GuiPropertyBag>& stored);

    const std::string& GetType() const;
    const std::string& GetName() const;
    void SetName(const std::string& name);

    /// Set red, green and blue, each from 0 to 1; alpha does not change.
    void SetForegroundColour(float red, float green, float blue);
    void SetBackgroundColour(float red, float green, float blue);

    /// Index of the first port with that Name, or -1.
    std::int32_t FindInputPort(const std::string& name) const;
    std::int32_t FindOutputPort(const std::string& name) const;

    /// @throws ShaderError if there is no such port
    GuiPort& GetInputPort(const std::string& name);
    GuiPort& GetOutputPort(const std::string& name);

    /// Describes the node for messages: name, then type.
    std::string Describe() const;

    /// Registers a shader node with the generator as the start and end of all edges of this node,
    /// under the port names of the edges.
    /// @throws boost::bad_weak_ptr if a listed edge has been destroyed
    void RegisterEdges(ShaderGraphGenerator& generator,
                       const boost::shared_ptr<ShaderNode>& shaderNode);

    float ForegroundColour[4] = {0.0f, 0.0f, 0.0f, 1.0f}; ///< red, green, blue, alpha
    float BackgroundColour[4] = {0.9f, 0.9f, 0.9f, 0.9f}; ///< red, green, blue, alpha
    std::vector<GuiPort> InputPorts;                      ///< in display order
    std::vector<GuiPort> OutputPorts;                     ///< in display order
    std::int32_t ComponentCount = 0;               ///< not valid before ResolveComponentCounts
    ComponentType Precision = ComponentType::Void; ///< not valid before ResolvePrecisions
    boost::shared_ptr<GuiPropertyBag> Properties;

    /// The standard properties, which come first in the bag, in this order.
    boost::shared_ptr<GuiProperty> Type;
    boost::shared_ptr<GuiProperty> Name;
    boost::shared_ptr<GuiProperty> BindingIndex;
    boost::shared_ptr<GuiProperty> BindingGroup;
    boost::shared_ptr<GuiProperty> PositionX;
    boost::shared_ptr<GuiProperty> PositionY;
    boost::shared_ptr<GuiProperty> Description;
    boost::shared_ptr<GuiProperty> HelpUrl;

    boost::weak_ptr<void> HostLink; ///< for the host; the library only releases it

protected:
    explicit GuiNode(const std::string& typeName);
};

} // namespace Mox::Materials
