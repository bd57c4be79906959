#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiEdge.h"
#include "mox/shader/ShaderGraph.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

/// The shader nodes that an authoring edge connects. All handles are those passed to AddNode.
struct MOX_API ShaderEdgeRecord
{
    ShaderNodeHandle Tail;               ///< shader node whose output the edge reads; may be empty
    std::string TailPort;                ///< output port of Tail
    std::vector<ShaderNodeHandle> Heads; ///< shader nodes that read the edge
    std::vector<std::string> HeadPorts;  ///< input ports; same size and order as Heads
};

/// The interface through which authoring nodes build a shader graph, for one translation of one
/// material.
///
/// It merges interface parameters, records the shader nodes at both ends of each authoring edge,
/// and adds shader edges, with conversions where types differ. Not thread-safe.
class MOX_API ShaderGraphGenerator : private boost::noncopyable
{
public:
    using GuiEdgeHandle = boost::shared_ptr<Mox::Materials::GuiEdge>;

    /// @param graph receives the nodes and edges; must outlive the generator
    explicit ShaderGraphGenerator(ShaderGraph& graph);
    ~ShaderGraphGenerator();

    /// Adds a shader node. If the graph already contains an interface parameter with the same key,
    /// the node is merged with it; the caller continues to use its own handle.
    /// @throws ShaderError if the handle was already added, or if the types of merged parameters
    ///        differ, in which case nothing changes
    void AddNode(const ShaderNodeHandle& node);

    /// Returns the node in the graph for a handle passed to AddNode.
    /// @throws ShaderError if the handle was never added
    ShaderNodeHandle GetShaderNode(const ShaderNodeHandle& node) const;

    /// Connects two added nodes. If the types differ, a conversion function is inserted: any
    /// component type converts to any other, and a scalar to a vector with equal components.
    /// @throws ShaderError if a handle was never added, a port does not exist or the shapes cannot
    ///        be converted, in which case nothing changes
    void Connect(const ShaderNodeHandle& tail, const std::string& tailPort,
                 const ShaderNodeHandle& head, const std::string& headPort);

    /// Records where an authoring edge starts; a later call replaces an earlier one.
    void RecordEdgeTail(const GuiEdgeHandle& edge, const ShaderNodeHandle& node,
                        const std::string& port);

    /// Records one of the places where an authoring edge ends.
    void RecordEdgeHead(const GuiEdgeHandle& edge, const ShaderNodeHandle& node,
                        const std::string& port);

    std::map<ShaderNodeHandle, ShaderNodeHandle> NodeMap; ///< from handles passed to AddNode to
                                                          ///< nodes of the graph
    std::map<GuiEdgeHandle, ShaderEdgeRecord> EdgeMap;    ///< in no particular order
    ShaderGraph* Graph;                                   ///< not owned
};
