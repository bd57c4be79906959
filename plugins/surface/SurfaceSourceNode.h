#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/nodekit/PortRebuild.h"

#include <span>

/// A value that the host provides: a property of the shaded point, or the time.
struct SurfaceSource
{
    const char* TypeName;
    const char* Label;
    const char* const* Icon; ///< XPM table
    const char* Parameter;   ///< name of the interface parameter, with flags 0, that a provider
                             ///< supplies
    Mox::Materials::PortRow Output;
};

/// A source node of a material: reads one value that the host supplies, and has no inputs. Its
/// types differ only in a row of a table, so they share a class.
class SurfaceSourceNode : public Mox::Materials::GuiNode
{
public:
    /// One row for each type, in catalogue order.
    static std::span<const SurfaceSource> Sources();

    /// @param source one of Sources(); must outlive the node
    explicit SurfaceSourceNode(const SurfaceSource& source);

    /// Adds the parameter that supplies the value; any number of nodes may share it.
    /// @throws ShaderError if no provider of the graph supplies the parameter, or if one supplies
    ///        it with another type
    void GenerateShader(ShaderGraphGenerator& generator) override;

private:
    const SurfaceSource& _source;
};
