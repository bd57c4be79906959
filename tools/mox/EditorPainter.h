#pragma once

#include "mox/editor/EditorServices.h"
#include "mox/preview/MaterialPreview.h"

#include <memory>

namespace Mox::Tool {

/// Draws what pages of the editor ask for. The device is looked for when the first picture is
/// wanted.
class EditorPainter : public Host::Painter
{
public:
    /// @param plugins must outlive the object
    EditorPainter(const Host::PluginSet& plugins, Host::Environment environment,
                  Host::DecodeSettings settings);

    /// The meshes are those that the previews have. A value cannot name a file.
    Host::Picture Draw(const Host::MaterialDocument& document, const Host::PictureRequest& request,
                       Host::ProblemList& problems) override;

    Host::LoadedTexture Load(const Host::MaterialDocument& document, const std::string& tag,
                             Host::ProblemList& problems) override;

private:
    const Host::PluginSet& _plugins;
    Host::Environment _environment;
    Host::FileDecoder _files;
    std::unique_ptr<const Host::MaterialPreview> _preview; ///< once it was wanted
};

} // namespace Mox::Tool
