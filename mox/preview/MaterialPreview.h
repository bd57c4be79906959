#pragma once

#include "mox/compile/ProgramCompiler.h"
#include "mox/decode/FileDecoder.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/Picture.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/preview/LightPanorama.h"
#include "mox/preview/Scene.h"
#include "mox/program/Environment.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Mox::Host {

class TextureLoader;
class VulkanDevice;
struct PreparedMaterial;

struct PreviewOptions
{
    std::uint32_t Width = 512; ///< pixels, of one frame
    std::uint32_t Height = 512;
    float FirstFrame = 0.0f;
    std::uint32_t FrameCount = 1; ///< frames that follow one another, side by side from the left
    std::optional<float> Time;    ///< seconds at the first frame; else 30 frames make a second
    std::map<std::string, std::string> Values; ///< of bindings, or of what the environment reads
    std::filesystem::path Light; ///< panorama that lights physical surfaces; else a studio does
    std::string Node;            ///< "id" or "id.port" of a node to show instead of the material
};

/// Draws materials on meshes, without a window. Keep it for many pictures: most of the time goes
/// into its making.
class MaterialPreview
{
public:
    /// @param plugins must outlive the object
    /// @param files reads the textures; must outlive the object
    /// @param withValidation lets the Vulkan validation layer watch
    /// @throws HostError if there is no Vulkan device
    MaterialPreview(const PluginSet& plugins, Environment environment, FileDecoder& files,
                    bool withValidation = false);
    ~MaterialPreview();

    /// The picture of a material under a sky and one light, or in a studio if it is a physical
    /// surface. Textures whose names are relative lie beside the document; one that cannot be read
    /// is a warning, and a stand-in takes its place. A material with an error comes out as a
    /// pattern that nobody takes for a material.
    /// @param problems takes what is wrong with the material; an error that is there already, from
    ///        reading the document, counts too
    /// @throws HostError if a size or a value does not fit the material or the device
    Picture RenderMaterial(const MaterialDocument& document, const Mesh& mesh,
                           const PreviewOptions& options, ProblemList& problems) const;

    /// The pictures that RenderMaterial draws of nodes, one after the other, but with one program
    /// for as many as possible.
    /// @param nodes each "id" or "id.port"; PreviewOptions::Node is not read
    /// @param options one frame
    std::vector<Picture> RenderNodes(const MaterialDocument& document, const Mesh& mesh,
                                     const PreviewOptions& options,
                                     std::span<const std::string> nodes,
                                     ProblemList& problems) const;

    /// For people: which device draws.
    std::string DeviceName() const;

    /// What the validation layer has said so far.
    const std::vector<std::string>& ValidationMessages() const;

private:
    using SetFrame = std::function<void(UniformValues& scene, std::uint32_t index)>;

    /// @param set what differs between pictures
    /// @returns no pictures after an error
    std::vector<Picture> RenderFrames(PreparedMaterial& material, const MaterialDocument& document,
                                      const Mesh& mesh, const PreviewOptions& options,
                                      std::uint32_t count, const SetFrame& set,
                                      ProblemList& problems) const;

    SceneTextures LoadSceneTextures(const CompiledProgram& program, const PreviewOptions& options,
                                    TextureLoader& textures, UniformValues& scene) const;
    LightPanorama LoadLight(const std::filesystem::path& file) const;

    const PluginSet& _plugins;
    Environment _environment;
    FileDecoder& _files;
    ProgramCompiler _compiler;
    CompiledProgram _background;
    std::unique_ptr<VulkanDevice> _device;
    mutable std::optional<LightPanorama> _studio; ///< made when a material first needs it
};

/// Magenta and black checks.
Picture MakeLoudPattern(std::uint32_t width, std::uint32_t height);

} // namespace Mox::Host
