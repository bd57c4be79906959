#include "mox/Text.h"
#include "mox/preview/MeshShapes.h"
#include "mox/preview/Scene.h"
#include "tests/preview/ExamplePreview.h"
#include "tests/preview/PictureComparison.h"
#include "tests/support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

using namespace Mox::Host;

namespace {

const std::filesystem::path examples = MOX_EXAMPLES;

class WebGlExampleTest : public BrowserPictureTest
{
protected:
    /// Writes what a user obtains from "mox export" and "mox bindings".
    void Export(const std::filesystem::path& file) const
    {
        using Mox::Materials::Compose;
        RunCommand(Compose(MOX_PROGRAM " export --target essl -o ", Quoted(_folder.Path()), " ",
                           Quoted(file)),
                   _folder.Path() / "log");
        RunCommand(Compose(MOX_PROGRAM " bindings ", Quoted(file)),
                   _folder.Path() / Compose(file.stem().string(), ".bindings.xml"));
    }

    const TemporaryFolder _folder;
};

TEST_F(WebGlExampleTest, DrawsWhatPreviewsDraw)
{
    constexpr std::uint32_t size = 192;
    for (const auto& entry : std::filesystem::directory_iterator(examples / "webgl")) {
        if (entry.path().extension() == ".js")
            std::filesystem::copy(entry.path(), _folder.Path());
    }
    std::filesystem::copy(examples / "textures", _folder.Path() / "textures");
    std::filesystem::copy(MOX_TEST_DATA "/preview/example.html", _folder.Path() / "index.html");
    const Mesh mesh = MakeSphere();
    for (const std::string material : {"rim_light", "tinted_texture", "flip_book"}) {
        SCOPED_TRACE(material);
        const std::filesystem::path file = examples / (material + ".xml");
        Export(file);
        nlohmann::json values = MakeSceneValues(mesh, 1.0f);
        values["time"] = values["frame"] = {0.0f};
        const nlohmann::json pixels = AskBrowser(
            {{"material", material}, {"size", size}, {"values", values}}, _folder.Path());
        // The example encodes colours twice. The mip levels of its textures average encoded
        // colours, whereas those of previews average linear light.
        ExpectSamePicture(pixels.get<std::vector<std::uint8_t>>(), Draw(file, mesh, size),
                          {6, 2.0});
    }
}

} // namespace
