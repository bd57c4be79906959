#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/shader/ShaderEdge.h"

#include <span>

struct SurfaceInput
{
    Mox::Materials::PortRow Port;
    const char* Parameter; ///< name of the interface parameter that the port writes
};

/// One type of surface.
struct SurfaceKind
{
    const char* TypeName;
    const char* Label;
    const char* const* Icon; ///< XPM table
    std::span<const SurfaceInput> Inputs;
    const char* Marker; ///< interface parameter that is written whatever is connected, or null
};

/// The end of a material: what arrives at its inputs is what the host shades. Each connected input
/// writes the interface parameter of its name; what nobody writes keeps the host's default. A
/// marker lets the host know which type of surface it is.
class SurfaceNode : public Mox::Materials::GuiNode
{
public:
    static std::span<const SurfaceKind> Kinds();

    /// @param kind one of Kinds()
    explicit SurfaceNode(const SurfaceKind& kind);

    /// @throws ShaderError if another node has written one of the parameters before, or if there is
    ///         a surface of another kind
    void GenerateShader(ShaderGraphGenerator& generator) override;

private:
    void RequireOneKind(const ShaderGraphGenerator& generator) const;
    void RequireUnwritten(const ShaderGraphGenerator& generator, const char* parameter) const;
    void WriteMarker(ShaderGraphGenerator& generator) const;
    void RecordHeads(ShaderGraphGenerator& generator, const std::string& inputPort,
                     const ShaderNodeHandle& parameter);

    const SurfaceKind& _kind;
};
