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

/// Base of everything that a user places in a material graph.
///
/// A node never walks the graph: the host calls the virtual operations one node at a time. A node
/// is created on the heap by a factory and shared; it keeps no handle to itself. Used from one
/// thread at a time.
class MOX_API GuiNode : public DiGraphNode<GuiNode, GuiEdge>
{
public:
    virtual ~GuiNode();

    /// Rebuilds both port lists from the properties. The records are new ones: every known,
    /// conflict and Connected flag starts again. No Core node reads the argument; a host may pass
    /// any object of its own to nodes of its own, or an empty handle.
    virtual void UpdatePorts(const boost::shared_ptr<void>& hostContext);

    /// The text to show on the node; here the value of "Name".
    virtual std::string GetTitle();

    /// Settles the component counts of the node and of its free ports. Beforehand each connected
    /// free input holds the count of the output that feeds it; inputs without an edge are unknown.
    /// Disagreement raises nothing: it sets CountConflict on the ports concerned.
    virtual void ResolveComponentCounts();

    /// Settles the precisions: float if a known output is float, else half. Beforehand each output
    /// that feeds a float input holds float, known.
    virtual void ResolvePrecisions();

    /// Writes the node into the shader graph; counts and precisions are resolved by then.
    /// @throws ShaderError if the node cannot be exported
    virtual void GenerateShader(ShaderGraphGenerator& generator) = 0;

    /// Whether CreateBindings has something to add.
    virtual bool HasBinding();

    /// Adds the node's run-time parameters to the material.
    virtual void CreateBindings(const boost::shared_ptr<Material>& material);

    /// Takes over stored values. Ports are not rebuilt: call UpdatePorts next.
    /// @throws ShaderError if the stored set is newer than the node's own, without any change, or
    ///         if a value does not fit its property
    virtual void LoadProperties(const boost::shared_ptr<GuiPropertyBag>& stored);

    const std::string& GetType() const;
    const std::string& GetName() const;
    void SetName(const std::string& name);

    /// Set red, green and blue, each 0 to 1; alpha stays.
    void SetForegroundColour(float red, float green, float blue);
    void SetBackgroundColour(float red, float green, float blue);

    /// Position of the first port with that Name, or -1.
    std::int32_t FindInputPort(const std::string& name) const;
    std::int32_t FindOutputPort(const std::string& name) const;

    /// @throws ShaderError if there is no such port
    GuiPort& GetInputPort(const std::string& name);
    GuiPort& GetOutputPort(const std::string& name);

    /// The node as messages name it: name, then type.
    std::string Describe() const;

    /// Tells the generator that the edges of this node start and end at a shader node, under the
    /// port names that the edges carry.
    /// @throws boost::bad_weak_ptr if an edge has gone and is still listed
    void RegisterEdges(ShaderGraphGenerator& generator,
                       const boost::shared_ptr<ShaderNode>& shaderNode);

    float ForegroundColour[4] = {0.0f, 0.0f, 0.0f, 1.0f}; ///< red, green, blue, alpha
    float BackgroundColour[4] = {0.9f, 0.9f, 0.9f, 0.9f}; ///< red, green, blue, alpha
    std::vector<GuiPort> InputPorts;                      ///< in display order
    std::vector<GuiPort> OutputPorts;                     ///< in display order
    std::int32_t ComponentCount = 0;               ///< of no use before ResolveComponentCounts
    ComponentType Precision = ComponentType::Void; ///< of no use before ResolvePrecisions
    boost::shared_ptr<GuiPropertyBag> Properties;

    /// The standard properties; they head the bag in this order.
    boost::shared_ptr<GuiProperty> Type;
    boost::shared_ptr<GuiProperty> Name;
    boost::shared_ptr<GuiProperty> BindingIndex;
    boost::shared_ptr<GuiProperty> BindingGroup;
    boost::shared_ptr<GuiProperty> PositionX;
    boost::shared_ptr<GuiProperty> PositionY;
    boost::shared_ptr<GuiProperty> Description;
    boost::shared_ptr<GuiProperty> HelpUrl;

    boost::weak_ptr<void> HostLink; ///< the host's; the library only releases it

protected:
    explicit GuiNode(const std::string& typeName);
};

} // namespace Mox::Materials
