#pragma once

#include "mox/decode/FileDecoder.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/Picture.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/preview/LightPanorama.h"
#include "mox/preview/Scene.h"
#include "mox/program/Environment.h"
#include "mox/targets/ProgramCompiler.h"

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
    std::uint32_t Width = 512; ///< in pixels, of one frame
    std::uint32_t Height = 512;
    float FirstFrame = 0.0f;
    std::uint32_t FrameCount = 1; ///< number of consecutive frames, side by side from the left
    std::optional<float> Time;    ///< in seconds, at the first frame; by default FirstFrame / 30
    std::map<std::string, std::string> Values; ///< values of bindings and of inputs of the
                                               ///< environment, by name
    std::filesystem::path Light; ///< panorama that lights physical surfaces; if empty, a studio
                                 ///< lights them
    std::string Node;            ///< "id" or "id.port" of a node to show instead of the material
};

/// @throws HostError if the image would have no pixels, or more than previews or PNG files can have
void CheckSize(const PreviewOptions& options);

/// Renders materials on meshes, without a window. Creating an object is expensive, so it should be
/// reused for many images.
class MaterialPreview
{
public:
    /// @param plugins must outlive this object
    /// @param files reads the textures; must outlive this object
    /// @param withValidation enables the Vulkan validation layer
    /// @throws HostError if there is no Vulkan device
    MaterialPreview(const PluginSet& plugins, Environment environment, FileDecoder& files,
                    bool withValidation = false);
    ~MaterialPreview();

    /// Renders a material under a sky and one light, or in a studio if it is a physical surface.
    /// Relative texture names refer to the document's folder; a texture that cannot be read is a
    /// warning and is replaced by a stand-in. A material with an error results in a pattern that
    /// cannot be mistaken for a material.
    /// @param problems receives the problems of the material; an error already present, such as
    ///        from reading the document, also counts
    /// @throws HostError if a size or a value is not valid for the material or the device
    Picture RenderMaterial(const MaterialDocument& document, const Mesh& mesh,
                           const PreviewOptions& options, ProblemList& problems) const;

    /// Renders several nodes one after the other, as RenderMaterial does for one, but with one
    /// program for as many nodes as possible.
    /// @param nodes each "id" or "id.port"; PreviewOptions::Node is ignored
    /// @param options for one frame
    std::vector<Picture> RenderNodes(const MaterialDocument& document, const Mesh& mesh,
                                     const PreviewOptions& options,
                                     std::span<const std::string> nodes,
                                     ProblemList& problems) const;

    /// Name of the Vulkan device, for display.
    std::string DeviceName() const;

    /// Messages of the validation layer so far.
    const std::vector<std::string>& ValidationMessages() const;

private:
    using SetFrame = std::function<void(UniformValues& scene, std::uint32_t index)>;

    /// @param set sets what differs between the images
    /// @returns no images after an error
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
    mutable std::optional<LightPanorama> _studio; ///< created when a material first needs it
};

/// Returns magenta and black checks.
Picture MakeLoudPattern(std::uint32_t width, std::uint32_t height);

} // namespace Mox::Host
