#include "mox/Text.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/MeshShapes.h"
#include "tests/support/BuildTree.h"
#include "tests/support/DeviceTest.h"
#include "tests/support/Files.h"
#include "tests/support/MaterialText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

const std::filesystem::path testData = MOX_TEST_DATA "/preview";

using Rgb = std::array<int, 3>;

Rgb PixelAt(const Picture& picture, float x, float y)
{
    const auto column = static_cast<std::size_t>(x * static_cast<float>(picture.Width));
    const auto row = static_cast<std::size_t>(y * static_cast<float>(picture.Height));
    const std::uint8_t* pixel = picture.Pixels.data() + (row * picture.Width + column) * 4;
    return {pixel[0], pixel[1], pixel[2]};
}

int LightAt(const Picture& picture, float x, float y)
{
    const Rgb pixel = PixelAt(picture, x, y);
    return pixel[0] + pixel[1] + pixel[2];
}

struct WatchedPreview : MaterialPreview
{
    WatchedPreview() : MaterialPreview(TestPlugins(), TestEnvironment(), Files(), true) {}

    static FileDecoder& Files()
    {
        static FileDecoder files;
        return files;
    }
};

class MaterialPreviewTest : public DeviceTest<WatchedPreview>
{
protected:
    /// @param words keys and values in the format of pixels.txt
    /// @param complaint receives the problems
    Picture Draw(const std::string& material, std::istream& words, std::string& complaint) const
    {
        MaterialDocument document = MaterialFromText(material);
        document.File = (_folder.Path() / "material.xml").string();
        PreviewOptions options;
        options.Width = options.Height = 96;
        Mesh mesh = MakePlane();
        std::vector<DocumentValue> samplerState;
        for (std::string word; words >> word;) {
            const std::size_t split = word.find('=');
            const std::string key = word.substr(0, split);
            const std::string value = word.substr(split + 1);
            if (key == "node") {
                options.Node = value;
            } else if (key == "mesh") {
                mesh = value == "sphere" ? MakeSphere()
                                         : FindMesh(testData / value, WatchedPreview::Files());
            } else if (key == "view") {
                std::sscanf(value.c_str(), "%f,%f,%f", &mesh.ViewFrom.x, &mesh.ViewFrom.y,
                            &mesh.ViewFrom.z);
            } else if (key == "size") {
                std::sscanf(value.c_str(), "%ux%u", &options.Width, &options.Height);
            } else if (key == "frames") {
                options.FirstFrame = 1.0f;
                options.FrameCount = std::stoul(value);
            } else if (key == "light") {
                options.Light = _folder.Path() / value;
            } else if (key.starts_with("wrap") || key == "filter") {
                samplerState.push_back({key, value});
            } else if (key.starts_with("state.")) {
                document.RenderState.push_back({key.substr(6), value});
            } else {
                options.Values[key] = value;
            }
        }
        if (!samplerState.empty())
            document.Bindings.push_back({"texture", "image", samplerState});
        try {
            ProblemList problems;
            const Picture picture = Get().RenderMaterial(document, mesh, options, problems);
            EXPECT_EQ(picture.Width, options.FrameCount * options.Width);
            if (!problems.Problems().empty())
                complaint = problems.Problems().back().Format();
            const Picture loud = MakeLoudPattern(options.Width, options.Height);
            EXPECT_EQ(picture.Pixels == loud.Pixels, problems.HasErrors());
            return picture;
        } catch (const HostError& error) {
            complaint = error.what();
            return {};
        }
    }

    TemporaryFolder _folder;
};

TEST_F(MaterialPreviewTest, PixelsAreThoseOfTheFile)
{
    std::filesystem::copy(testData / "textures", _folder.Path());
    std::ifstream file(testData / "pixels.txt");
    std::string material;
    std::string complaint;
    Picture picture;
    int number = 0;
    int checked = 0;
    for (std::string line; std::getline(file, line);) {
        SCOPED_TRACE(Compose("pixels.txt:", ++number, ": ", line));
        std::istringstream words(line);
        std::string first, relation, within;
        float y = 0.0f;
        words >> first;
        if (line.starts_with("    ")) {
            material += line + "\n";
        } else if (first == "material") {
            material.clear();
        } else if (first == "draw") {
            EXPECT_EQ(complaint, "") << "of the picture above";
            complaint.clear();
            picture = Draw(material, words, complaint);
        } else if (first == "complains:") {
            EXPECT_NE(complaint.find(line.substr(first.size() + 1)), line.npos) << complaint;
            complaint.clear();
        } else if (words >> y >> relation && first != "#") {
            const float x = std::stof(first);
            Rgb colour{};
            int tolerance = 1;
            float darkX = 0.0f;
            float darkY = 0.0f;
            if (relation == "=") {
                words >> colour[0] >> colour[1] >> colour[2] >> within >> tolerance;
                const Rgb pixel = PixelAt(picture, x, y);
                for (std::size_t i = 0; i < 3; ++i)
                    EXPECT_NEAR(pixel[i], colour[i], tolerance) << i;
            } else {
                words >> darkX >> darkY;
                EXPECT_GT(LightAt(picture, x, y), LightAt(picture, darkX, darkY) + 200);
            }
            ++checked;
        }
    }
    EXPECT_EQ(complaint, "");
    EXPECT_GT(checked, 60);
}

TEST_F(MaterialPreviewTest, BindingsMayHaveNamesOfTheEnvironment)
{
    const auto draw = [&](const std::string& names) {
        std::istringstream words("mesh=sphere");
        std::string complaint;
        std::istringstream values(names);
        std::string tint, stream;
        values >> tint >> stream;
        return Draw(Compose("tint CoreConstant; Default Colour=0.9 0.4 0.2; Name=", tint,
                            "\ncoordinates CoreUv; Name=", stream,
                            "\nparts CoreSwizzle; Vector Type=Uv\nsurface Surface\n"
                            "coordinates.read -> parts.in_vec\n"
                            "parts.out_x -> surface.in_emission\n"
                            "tint.read -> surface.in_colour\n"),
                    words, complaint)
            .Pixels;
    };
    const auto plain = draw("tint uv0");
    EXPECT_EQ(draw("lightDirection uv0"), plain);
    EXPECT_EQ(draw("skyColour normal"), plain);
    EXPECT_EQ(draw("position position"), plain);
}

TEST_F(MaterialPreviewTest, NodesTogetherLookLikeEachAlone)
{
    std::string text = "normal SurfaceWorldNormal\nlost NoSuchType\n";
    std::vector<std::string> nodes{"normal", "lost"};
    for (int i = 0; i < 20; ++i) { // more values than can be interpolated
        const std::string id = Compose("shade", i);
        text += Compose(id, " CoreMaths; Execution Level=Vertex; Function=Multiply; ",
                        "Default Value 2=0.", i, "5\nnormal.read -> ", id, ".in_value1\n");
        nodes.push_back(id);
    }
    MaterialDocument document = MaterialFromText(text);
    document.File = "material.xml";
    PreviewOptions options;
    options.Width = options.Height = 16;
    ProblemList found;
    const auto pictures = Get().RenderNodes(document, MakeSphere(), options, nodes, found);
    ASSERT_EQ(pictures.size(), nodes.size());
    EXPECT_TRUE(found.HasErrors());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        options.Node = nodes[i];
        ProblemList problems;
        const Picture alone = Get().RenderMaterial(document, MakeSphere(), options, problems);
        EXPECT_EQ(problems.HasErrors(), nodes[i] == "lost");
        EXPECT_EQ(pictures[i].Pixels, alone.Pixels) << nodes[i];
        EXPECT_TRUE(i == 0 || pictures[i].Pixels != pictures[i - 1].Pixels) << nodes[i];
    }
}

TEST_F(MaterialPreviewTest, EveryExampleIsDrawn)
{
    for (const std::filesystem::path& file : ExampleDocuments()) {
        SCOPED_TRACE(file);
        PreviewOptions options;
        options.Width = options.Height = 64;
        ProblemList problems;
        const Picture picture =
            Get().RenderMaterial(ReadMaterialDocument(file), MakeSphere(), options, problems);
        EXPECT_FALSE(problems.HasErrors());
        EXPECT_NE(PixelAt(picture, 0.5f, 0.5f), PixelAt(picture, 0.02f, 0.02f));
    }
}

} // namespace
