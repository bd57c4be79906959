#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiEdge.h"
#include "mox/shader/ShaderGraph.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

/// What became of one authoring edge. All handles are those that nodes gave to AddNode.
struct MOX_API ShaderEdgeRecord
{
    ShaderNodeHandle Tail;               ///< shader node that the edge leaves; may be empty
    std::string TailPort;                ///< output port on Tail
    std::vector<ShaderNodeHandle> Heads; ///< shader nodes that the edge feeds
    std::vector<std::string> HeadPorts;  ///< input ports, position for position with Heads
};

/// Through this authoring nodes build a shader graph. It serves one run over one material.
///
/// It folds interface parameters, records the shader ends of each authoring edge, and lays shader
/// edges with conversions where the types need one. Not synchronised.
class MOX_API ShaderGraphGenerator : private boost::noncopyable
{
public:
    using GuiEdgeHandle = boost::shared_ptr<Mox::Materials::GuiEdge>;

    /// Fills graph, which the caller owns and keeps alive longer than the generator.
    explicit ShaderGraphGenerator(ShaderGraph& graph);
    ~ShaderGraphGenerator();

    /// Enters a shader node. An interface parameter whose key the graph holds folds into that one;
    /// the caller goes on using its own handle.
    /// @throws ShaderError if the handle was added before, or if the type of a folding parameter
    ///         differs; nothing changes then
    void AddNode(const ShaderNodeHandle& node);

    /// The node that stands in the graph for an added handle.
    /// @throws ShaderError if the handle was never added
    ShaderNodeHandle GetShaderNode(const ShaderNodeHandle& node) const;

    /// Lays a connection between two added nodes. Where the types differ, any component type
    /// converts to any other and a scalar splats to a vector, through a function of its own.
    /// @throws ShaderError if a handle was never added, a port does not exist or the shapes do not
    ///         convert; nothing changes then
    void Connect(const ShaderNodeHandle& tail, const std::string& tailPort,
                 const ShaderNodeHandle& head, const std::string& headPort);

    /// Notes where an authoring edge starts; the last note counts.
    void RecordEdgeTail(const GuiEdgeHandle& edge, const ShaderNodeHandle& node,
                        const std::string& port);

    /// Notes one place where an authoring edge ends.
    void RecordEdgeHead(const GuiEdgeHandle& edge, const ShaderNodeHandle& node,
                        const std::string& port);

    std::map<ShaderNodeHandle, ShaderNodeHandle> NodeMap; ///< handle given to AddNode to graph node
    std::map<GuiEdgeHandle, ShaderEdgeRecord> EdgeMap;    ///< the order has no meaning
    ShaderGraph* Graph;                                   ///< not owned
};
