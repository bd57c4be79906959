#pragma once

#include "mox/editor/EditorServices.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/TextureShape.h"

#include <memory>
#include <string>
#include <vector>

namespace Mox::Tool {

/// Draws the images that pages of the editor request. It looks for a device when the first image is
/// requested.
class EditorPainter : public Host::Painter
{
public:
    /// @param plugins must outlive the object
    EditorPainter(const Host::PluginSet& plugins, Host::Environment environment,
                  const Host::DecodeSettings& settings);

    /// Supports only the built-in meshes; values cannot refer to files.
    Host::Picture Draw(const Host::MaterialDocument& document, const Host::PictureRequest& request,
                       Host::ProblemList& problems) override;

    /// Loads a texture of the material, or "lightPanorama", the studio lighting used for previews
    /// of physical surfaces.
    Host::LoadedTexture Load(const Host::MaterialDocument& document, const std::string& tag,
                             const std::string& sampler, Host::ProblemList& problems) override;

    /// The response to a page is limited in size, so the limit for meshes is lower than in other
    /// commands.
    Host::LoadedMesh ReadMesh(const std::string& name, std::string_view bytes) override;

private:
    std::vector<Host::TextureImage> LoadLevels(const Host::MaterialDocument& document,
                                               const std::string& tag, Host::TextureShape shape,
                                               Host::ProblemList& problems);

    const Host::PluginSet& _plugins;
    Host::Environment _environment;
    Host::FileDecoder _files;
    const Host::FileDecoder _meshes;
    std::unique_ptr<const Host::MaterialPreview> _preview; ///< created for the first image
    std::vector<Host::TextureImage> _studio;               ///< likewise
};

/// Converts a mesh to the format that pages receive.
Host::LoadedMesh PackMesh(const Host::Mesh& mesh);

} // namespace Mox::Tool
