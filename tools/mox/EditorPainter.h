#pragma once

#include "mox/editor/EditorServices.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/TextureShape.h"

#include <memory>
#include <string>
#include <vector>

namespace Mox::Tool {

/// Draws the pictures that pages of the editor request. It looks for a device when the first
/// picture is requested.
class EditorPainter : public Host::Painter
{
public:
    /// @param plugins must outlive the object
    EditorPainter(const Host::PluginSet& plugins, Host::Environment environment,
                  Host::DecodeSettings settings);

    /// Only the built-in meshes are available, and a value cannot name a file.
    Host::Picture Draw(const Host::MaterialDocument& document, const Host::PictureRequest& request,
                       Host::ProblemList& problems) override;

    /// A texture of the material, or "lightPanorama", the light of the studio that previews of
    /// physical surfaces have.
    Host::LoadedTexture Load(const Host::MaterialDocument& document, const std::string& tag,
                             const std::string& sampler, Host::ProblemList& problems) override;

    /// The answer to a page is bounded, so a mesh may take less than with other commands.
    Host::LoadedMesh ReadMesh(const std::string& name, std::string_view bytes) override;

private:
    std::vector<Host::TextureImage> LoadLevels(const Host::MaterialDocument& document,
                                               const std::string& tag, Host::TextureShape shape,
                                               Host::ProblemList& problems);

    const Host::PluginSet& _plugins;
    Host::Environment _environment;
    Host::FileDecoder _files;
    const Host::FileDecoder _meshes;
    std::unique_ptr<const Host::MaterialPreview> _preview; ///< once a picture was requested
    std::vector<Host::TextureImage> _studio;               ///< likewise
};

/// A mesh in the form that pages receive.
Host::LoadedMesh PackMesh(const Host::Mesh& mesh);

} // namespace Mox::Tool
