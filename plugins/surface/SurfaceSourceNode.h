#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/nodekit/PortRebuild.h"

#include <span>

/// One value that the host knows about the surface or the moment.
struct SurfaceSource
{
    const char* TypeName;
    const char* Label;
    const char* const* Icon; ///< XPM table
    const char* Parameter;   ///< name of the interface parameter that a provider serves, flags 0
    Mox::Materials::PortRow Output;
};

/// A beginning of a material: reads one value that the host supplies, and has no inputs. All its
/// types do the same and differ by a row, so they share the class.
class SurfaceSourceNode : public Mox::Materials::GuiNode
{
public:
    /// One row for each type, in catalogue order.
    static std::span<const SurfaceSource> Sources();

    /// Keeps a reference to source, which is one of Sources.
    explicit SurfaceSourceNode(const SurfaceSource& source);

    /// Any number of nodes read one parameter.
    /// @throws ShaderError if no provider of the graph serves the parameter, or serves it with
    ///         another type
    void GenerateShader(ShaderGraphGenerator& generator) override;

private:
    const SurfaceSource& _source;
};
