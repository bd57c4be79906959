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

/// A type of surface node.
struct SurfaceKind
{
    const char* TypeName;
    const char* Label;
    const char* const* Icon; ///< XPM table
    std::span<const SurfaceInput> Inputs;
    const char* Marker; ///< interface parameter that is always written, or null
};

/// An output node of a material: the host shades the values of its inputs. Each connected input
/// writes the interface parameter with its name; for parameters that are not written, the host uses
/// defaults. A marker identifies the type of surface to the host.
class SurfaceNode : public Mox::Materials::GuiNode
{
public:
    static std::span<const SurfaceKind> Kinds();

    /// @param kind one of Kinds()
    explicit SurfaceNode(const SurfaceKind& kind);

    /// @throws ShaderError if another node has already written one of the parameters, or if there
    ///        is a surface of another kind
    void GenerateShader(ShaderGraphGenerator& generator) override;

private:
    void RequireOneKind(const ShaderGraphGenerator& generator) const;
    void RequireUnwritten(const ShaderGraphGenerator& generator, const char* parameter) const;
    void WriteMarker(ShaderGraphGenerator& generator) const;
    void RecordHeads(ShaderGraphGenerator& generator, const std::string& inputPort,
                     const ShaderNodeHandle& parameter);

    const SurfaceKind& _kind;
};
