#include "mox/graph/BindingsDocument.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/preview/MeshShapes.h"
#include "mox/preview/Scene.h"
#include "mox/program/MaterialProgram.h"
#include "mox/targets/ProgramTranslator.h"
#include "mox/targets/Reflection.h"
#include "tests/preview/ExamplePreview.h"
#include "tests/preview/PictureComparison.h"
#include "tests/support/BuildTree.h"
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
        ProblemList problems;
        const MaterialGraph graph = OpenMaterial(file, TestPlugins(), problems);
        const CgProgram program = BuildMaterialProgram(graph, TestEnvironment(), {}, problems);
        const CompiledProgram compiled =
            Translate(program, {CompileTarget::Essl}, Mox::Languages::Precision::Full, {},
                      file.string(), problems);
        problems.ThrowFirstError();
        const std::string stem = file.stem();
        _folder.Write(stem + ".vertex.essl", compiled.Programs[0].Bytes);
        _folder.Write(stem + ".fragment.essl", compiled.Programs[1].Bytes);
        _folder.Write(stem + ".reflection.json", FormatReflection(compiled));
        _folder.Write(stem + ".bindings.xml", FormatBindings(CreateBindings(graph)));
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
