#include "mox/preview/MaterialPreview.h"
#include "mox/preview/MeshFile.h"
#include "mox/preview/MeshShapes.h"
#include "tests/preview/SampleMeshes.h"
#include "tests/support/MaterialText.h"
#include "tests/support/RunMox.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>

using namespace Mox::Host;

namespace {

using Rgb = std::array<int, 3>;

constexpr Rgb red = {255, 0, 0};
constexpr Rgb green = {0, 255, 0};
constexpr Rgb blue = {0, 0, 255};
constexpr Rgb white = {255, 255, 255};

/// sRGB of half the light.
constexpr int halfLight = 188;

Rgb PixelAt(const Picture& picture, float x, float y)
{
    const auto column = static_cast<std::size_t>(x * static_cast<float>(picture.Width));
    const auto row = static_cast<std::size_t>(y * static_cast<float>(picture.Height));
    const std::uint8_t* pixel = picture.Pixels.data() + (row * picture.Width + column) * 4;
    return {pixel[0], pixel[1], pixel[2]};
}

void ExpectPixel(const Picture& picture, float x, float y, const Rgb& expected, int tolerance = 1)
{
    const Rgb pixel = PixelAt(picture, x, y);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(pixel[i], expected[i], tolerance)
            << "component " << i << " at " << x << ", " << y;
    }
}

int LightAt(const Picture& picture, float x, float y)
{
    const Rgb pixel = PixelAt(picture, x, y);
    return pixel[0] + pixel[1] + pixel[2];
}

/// Writes a texture whose colours a function of u to the right and v downwards gives.
std::filesystem::path WriteTexture(const TemporaryFolder& folder, const std::string& name,
                                   std::uint32_t size,
                                   const std::function<Rgb(float u, float v)>& colourAt)
{
    Picture picture{size, size, {}};
    for (std::uint32_t y = 0; y < size; ++y) {
        for (std::uint32_t x = 0; x < size; ++x) {
            const Rgb colour = colourAt((static_cast<float>(x) + 0.5f) / static_cast<float>(size),
                                        (static_cast<float>(y) + 0.5f) / static_cast<float>(size));
            for (const int component : colour)
                picture.Pixels.push_back(static_cast<std::uint8_t>(component));
            picture.Pixels.push_back(255);
        }
    }
    WritePng(picture, folder.Path() / name);
    return folder.Path() / name;
}

/// Shares one device among the tests; the validation layer watches all of them.
class MaterialPreviewTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        try {
            _preview = std::make_unique<MaterialPreview>(
                TestPlugins(), ReadEnvironment(MOX_ENVIRONMENT_FOLDER), true);
        } catch (const HostError& error) {
            _failure = error.what();
        }
    }

    static void TearDownTestSuite() { _preview.reset(); }

    void SetUp() override
    {
        if (_failure.find("no Vulkan device was found") == 0)
            GTEST_SKIP() << _failure;
        ASSERT_TRUE(_preview) << _failure;
    }

    void TearDown() override
    {
        if (!_preview)
            return;
        for (; _messagesSeen < _preview->ValidationMessages().size(); ++_messagesSeen)
            ADD_FAILURE() << _preview->ValidationMessages()[_messagesSeen];
    }

    Picture Render(const std::string& material, const Mesh& mesh, PreviewOptions options,
                   ProblemList& problems) const
    {
        if (options.Width == PreviewOptions().Width)
            options.Width = options.Height = 96;
        MaterialDocument document = MaterialFromText(material);
        document.File = (_folder.Path() / "material.xml").string();
        return _preview->RenderMaterial(document, mesh, options, problems);
    }

    Picture Render(const std::string& material, const Mesh& mesh,
                   const PreviewOptions& options = {}) const
    {
        ProblemList problems;
        Picture picture = Render(material, mesh, options, problems);
        for (const Problem& problem : problems.Problems())
            ADD_FAILURE() << problem.Format();
        return picture;
    }

    /// One node, without light, on the plane.
    Picture RenderNode(const std::string& material, const std::string& node,
                       PreviewOptions options = {}) const
    {
        options.Node = node;
        return Render(material, MakePlane(), options);
    }

    TemporaryFolder _folder;
    static std::unique_ptr<MaterialPreview> _preview;
    static std::string _failure;
    static std::size_t _messagesSeen;
};

std::unique_ptr<MaterialPreview> MaterialPreviewTest::_preview;
std::string MaterialPreviewTest::_failure;
std::size_t MaterialPreviewTest::_messagesSeen = 0;

const std::string textured = R"(
    uv CoreUv; Name=uv0
    paint CoreTexture; Name=image
    surface Surface
    uv.read -> paint.in_uv
    paint.out_colour -> surface.in_colour
)";

TEST_F(MaterialPreviewTest, ShowsImagesUpright)
{
    WriteTexture(_folder, "corners.png", 64, [](float u, float v) {
        if (v < 0.5f)
            return u < 0.5f ? red : green;
        return u < 0.5f ? blue : white;
    });
    PreviewOptions options;
    options.Values = {{"image", "corners.png"}};
    options.Node = "paint";
    for (const Mesh& mesh : {MakePlane(), ReadMesh(_folder.Write("a.gltf", MakeSquareGltf()))}) {
        Mesh fromFront = mesh;
        fromFront.ViewFrom = {0.0f, 0.0f, 1.0f};
        const Picture picture = Render(textured, fromFront, options);
        ExpectPixel(picture, 0.3f, 0.3f, red);
        ExpectPixel(picture, 0.7f, 0.3f, green);
        ExpectPixel(picture, 0.3f, 0.7f, blue);
        ExpectPixel(picture, 0.7f, 0.7f, white);
    }
    // Half a turn of the globe shows its middle columns.
    const Picture globe = Render(textured, MakeSphere(), options);
    ExpectPixel(globe, 0.4f, 0.4f, red);
    ExpectPixel(globe, 0.6f, 0.4f, green);
    ExpectPixel(globe, 0.4f, 0.6f, blue);
}

TEST_F(MaterialPreviewTest, ConvertsSrgbOnceOnTheWayInAndOut)
{
    WriteTexture(_folder, "grey.png", 4, [](float, float) { return Rgb{100, 128, 200}; });
    PreviewOptions options;
    options.Values = {{"image", "grey.png"}};
    ExpectPixel(RenderNode(textured, "paint", options), 0.5f, 0.5f, {100, 128, 200});

    // Read as they are, values are light, and the picture stores light as sRGB.
    const std::string raw = R"(
        uv CoreUv
        paint CoreTexture; Name=image; sRGB=false
        uv.read -> paint.in_uv
    )";
    ExpectPixel(RenderNode(raw, "paint", options), 0.5f, 0.5f, {168, halfLight, 229});

    // A quarter in every component: mantissa 128 of 256, two to the power of minus one.
    const std::string texel = {char(128), char(128), char(128), char(127)};
    _folder.Write("quarter.hdr", "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\n" + texel);
    options.Values = {{"image", "quarter.hdr"}};
    ExpectPixel(RenderNode(raw, "paint", options), 0.5f, 0.5f, {137, 137, 137});
}

TEST_F(MaterialPreviewTest, FiltersWhatIsTooFineToSee)
{
    WriteTexture(_folder, "fine.png", 1024, [](float u, float v) {
        const bool isWhite = (static_cast<int>(u * 1024) + static_cast<int>(v * 1024)) % 2 == 0;
        return isWhite ? white : Rgb{};
    });
    PreviewOptions options;
    options.Values = {{"image", "fine.png"}};
    const Picture picture = RenderNode(textured, "paint", options);
    for (const float place : {0.2f, 0.41f, 0.5f, 0.77f})
        ExpectPixel(picture, place, place, {halfLight, halfLight, halfLight}, 2);
}

/// A dome that rises out of the middle of the image: it is bright on the side of the light, on
/// every mesh, whoever worked out its tangents.
TEST_F(MaterialPreviewTest, LightsNormalMapsFromTheRightSide)
{
    WriteTexture(_folder, "dome.png", 128, [](float u, float v) {
        const float x = (u - 0.5f) / 0.4f;
        const float y = (0.5f - v) / 0.4f;
        const float square = x * x + y * y;
        if (square > 0.9f)
            return Rgb{128, 128, 255};
        const auto store = [](float c) {
            return static_cast<int>(std::lround(127.5f * c + 127.5f));
        };
        return Rgb{store(x), store(y), store(std::sqrt(1.0f - square))};
    });
    const std::string bumpy = R"(
        uv CoreUv
        bumps CoreTexture; Name=bumps; Colour Type=Normal
        surface Surface
        uv.read -> bumps.in_uv
        bumps.out_colour -> surface.in_normal
    )";
    struct Case
    {
        const char* Light;
        float BrightX, BrightY;
    };
    for (const auto& mesh : {MakePlane(), ReadMesh(_folder.Write("a.obj", squareObj)),
                             ReadMesh(_folder.Write("a.gltf", MakeSquareGltf()))}) {
        Mesh fromFront = mesh;
        fromFront.ViewFrom = {0.0f, 0.0f, 1.0f};
        for (const Case& lit : {Case{"0.8,0,0.6", 0.7f, 0.5f}, Case{"-0.8,0,0.6", 0.3f, 0.5f},
                                Case{"0,0.8,0.6", 0.5f, 0.3f}, Case{"0,-0.8,0.6", 0.5f, 0.7f}}) {
            SCOPED_TRACE(mesh.Name + " lit from " + lit.Light);
            PreviewOptions options;
            options.Values = {{"bumps", "dome.png"},
                              {"lightDirection", lit.Light},
                              {"lightColour", "1,1,1"},
                              {"skyColour", "0,0,0"},
                              {"groundColour", "0,0,0"}};
            const Picture picture = Render(bumpy, fromFront, options);
            const int bright = LightAt(picture, lit.BrightX, lit.BrightY);
            const int dark = LightAt(picture, 1.0f - lit.BrightX, 1.0f - lit.BrightY);
            EXPECT_GT(bright, dark + 200);
            // Where the map is flat, half of the colour 0.5 times 0.6 comes back: 0.3 of the light.
            ExpectPixel(picture, 0.12f, 0.12f, {149, 149, 149}, 2);
        }
    }
}

TEST_F(MaterialPreviewTest, WithoutImagesShowsChecksAndNoBumps)
{
    const std::string material = R"(
        uv CoreUv
        paint CoreTexture; Name=image
        normal CoreTexture; Name=bumps; Colour Type=Normal
        packed CoreTexture; Name=packed; Colour Type=DXT5 Normal
        uv.read -> paint.in_uv
        uv.read -> normal.in_uv
        uv.read -> packed.in_uv
    )";
    ExpectPixel(RenderNode(material, "normal"), 0.5f, 0.5f, blue);
    ExpectPixel(RenderNode(material, "packed"), 0.5f, 0.5f, blue);
    const Picture checks = RenderNode(material, "paint");
    EXPECT_NE(PixelAt(checks, 0.45f, 0.45f), PixelAt(checks, 0.55f, 0.45f));
}

TEST_F(MaterialPreviewTest, FillsUniformsByTheNamesOfBindings)
{
    const std::string material = R"(
        tint CoreConstant; Name=tint; Default Colour=1 0 0.5; Alpha=true; Default Alpha=0.5
        some CoreConstant; Name=sample; Constant Type=Scalar; Default Scalar=0.5
        both CoreMaths
        tint.read -> both.in_value1
        some.read -> both.in_value2
    )";
    ExpectPixel(RenderNode(material, "tint"), 0.5f, 0.5f, {255, 0, halfLight});
    ExpectPixel(RenderNode(material, "both"), 0.5f, 0.5f, {halfLight, 0, 137});
    PreviewOptions options;
    options.Values = {{"tint", "0,1,0.5"}, {"sample", "1"}};
    ExpectPixel(RenderNode(material, "both", options), 0.5f, 0.5f, {0, 255, halfLight});
}

/// The middle of the plane has u and v of one half, and its vertex colour is (u, v, 0).
TEST_F(MaterialPreviewTest, ShowsOutputsOfOneToFourComponents)
{
    const std::string material = R"(
        uv CoreUv
        colour CoreVertexColour; Name=mask; Colour Type=Component
        all CoreVertexColour; Name=rgba; Colour Type=Vector
        probe CoreMaths; Function=Addition; Default Value 2=0.5
        lonely CoreTexture
        broken CoreTexture; Name=broken
        surface Surface
        uv.read -> probe.in_value1
        broken.out_colour -> surface.in_colour
    )";
    struct Case
    {
        const char* Node;
        Rgb Colour;
    };
    // A node that cannot be exported does not stand in the way of the others.
    for (const Case& shown :
         {Case{"colour", {halfLight, halfLight, halfLight}}, Case{"colour.out_blue", {0, 0, 0}},
          Case{"uv", {halfLight, halfLight, 0}}, Case{"probe", {255, 255, 0}},
          Case{"all", {halfLight, halfLight, 0}}}) {
        SCOPED_TRACE(shown.Node);
        ExpectPixel(RenderNode(material, shown.Node), 0.5f, 0.5f, shown.Colour, 2);
    }
}

TEST_F(MaterialPreviewTest, DrawsFramesSideBySide)
{
    const std::string material = R"(
        frame SurfaceFrame
        time SurfaceTime
        share CoreMaths; Default Value 2=0.25
        shareOfTime CoreMaths; Default Value 2=7.5
        frame.read -> share.in_value1
        time.read -> shareOfTime.in_value1
    )";
    for (const char* node : {"share", "shareOfTime"}) {
        PreviewOptions options;
        options.Width = options.Height = 32;
        options.FirstFrame = 1.0f;
        options.FrameCount = 4;
        const Picture strip = RenderNode(material, node, options);
        EXPECT_EQ(strip.Width, 128u);
        EXPECT_EQ(strip.Height, 32u);
        ExpectPixel(strip, 0.125f, 0.5f, {137, 137, 137});
        ExpectPixel(strip, 0.375f, 0.5f, {halfLight, halfLight, halfLight});
        ExpectPixel(strip, 0.875f, 0.5f, white);
    }
}

TEST_F(MaterialPreviewTest, MovesVerticesAndDrawsOnADifferentlyShapedPicture)
{
    const std::string material = R"(
        up CoreConstant; Name=up; Default Colour=0 1 0
        glow CoreConstant; Name=glow; Default Colour=1 1 1
        surface Surface
        up.read -> surface.in_offset
        glow.read -> surface.in_emission
    )";
    PreviewOptions options;
    options.Width = 200;
    options.Height = 100;
    const Picture picture = Render(material, MakePlane(), options);
    ExpectPixel(picture, 0.5f, 0.25f, white);
    EXPECT_LT(LightAt(picture, 0.5f, 0.75f), 600) << "the square has left the lower half";
    EXPECT_LT(LightAt(picture, 0.2f, 0.25f), 600) << "the square is still a square";
}

TEST_F(MaterialPreviewTest, TakesTheRenderStateOfTheDocument)
{
    const std::string material = R"(
        half CoreConstant; Name=half; Constant Type=Scalar; Default Scalar=0.5
        glow CoreConstant; Name=glow; Default Colour=1 0 0
        black CoreConstant; Name=black; Default Colour=0 0 0
        surface Surface
        black.read -> surface.in_colour
        glow.read -> surface.in_emission
        half.read -> surface.in_alpha
    )";
    PreviewOptions options;
    options.Width = options.Height = 32;
    options.Values = {{"skyColour", "0,1,0"}, {"groundColour", "0,1,0"}};
    Mesh back = MakePlane();
    back.ViewFrom = {0.0f, 0.0f, -1.0f};
    const auto expect = [&](const std::vector<DocumentValue>& state, const Mesh& mesh,
                            const Rgb& colour) {
        MaterialDocument document = MaterialFromText(material);
        document.RenderState = state;
        ProblemList problems;
        const Picture picture = _preview->RenderMaterial(document, mesh, options, problems);
        EXPECT_FALSE(problems.HasErrors());
        ExpectPixel(picture, 0.5f, 0.5f, colour);
    };
    expect({}, MakePlane(), red);
    expect({{"alphaBlend", "Yes"}}, MakePlane(), {halfLight, halfLight, 0});
    expect({{"alphaBlend", "Yes"}, {"sourceBlend", "one"}, {"destBlend", "one"}}, MakePlane(),
           {255, 255, 0});
    expect({{"zTestFunc", "never"}}, MakePlane(), green);
    expect({}, back, red);
    expect({{"backFaceCullEnabled", "Yes"}}, MakePlane(), red);
    expect({{"backFaceCullEnabled", "Yes"}}, back, green);
}

TEST_F(MaterialPreviewTest, ShowsALoudPatternForWhatIsBroken)
{
    Mesh bare = MakePlane();
    bare.ColourSets.clear();
    struct Case
    {
        const char* Material;
        const char* Message; ///< a part of it
        std::map<std::string, std::string> Values;
    };
    const std::string unfed = "paint CoreTexture\nsurface Surface\n"
                              "paint.out_colour -> surface.in_colour\n";
    const std::string masked = "mask CoreVertexColour; Name=mask\nsurface Surface\n"
                               "mask.out_colour -> surface.in_colour\n";
    for (const Case& broken :
         {Case{unfed.c_str(), "please attach a texture coordinate", {}},
          Case{masked.c_str(), "has no vertex colours, which the material reads as \"mask\"", {}},
          Case{textured.c_str(), "gone.png: cannot be read", {{"image", "gone.png"}}}}) {
        SCOPED_TRACE(broken.Message);
        PreviewOptions options;
        options.Width = options.Height = 64;
        options.Values = broken.Values;
        ProblemList problems;
        const Picture picture = Render(broken.Material, bare, options, problems);
        EXPECT_EQ(picture.Pixels, MakeLoudPattern(64, 64).Pixels);
        ASSERT_TRUE(problems.HasErrors());
        EXPECT_NE(problems.Problems().back().Format().find(broken.Message), std::string::npos)
            << problems.Problems().back().Format();
    }
    ExpectPixel(MakeLoudPattern(64, 64), 0.0f, 0.0f, {255, 0, 255});
    ExpectPixel(MakeLoudPattern(64, 64), 0.3f, 0.0f, {0, 0, 0});
}

TEST_F(MaterialPreviewTest, RefusesOptionsThatDoNotFit)
{
    for (const auto& [name, value] : {std::pair("image2", "x.png"), std::pair("skyColour", "1"),
                                      std::pair("skyColour", "blue")}) {
        PreviewOptions options;
        options.Values = {{name, value}};
        EXPECT_THROW(Render(textured, MakePlane(), options), HostError) << name;
    }
    PreviewOptions options;
    options.Width = 1u << 20;
    EXPECT_THROW(Render(textured, MakePlane(), options), HostError);
}

TEST_F(MaterialPreviewTest, EveryExampleIsDrawn)
{
    for (const auto& entry : std::filesystem::directory_iterator(MOX_EXAMPLES)) {
        if (entry.path().extension() != ".xml")
            continue;
        SCOPED_TRACE(entry.path());
        PreviewOptions options;
        options.Width = options.Height = 64;
        ProblemList problems;
        const Picture picture = _preview->RenderMaterial(ReadMaterialDocument(entry.path()),
                                                         MakeSphere(), options, problems);
        EXPECT_FALSE(problems.HasErrors());
        EXPECT_NE(PixelAt(picture, 0.5f, 0.5f), PixelAt(picture, 0.02f, 0.02f));
    }
}

TEST_F(MaterialPreviewTest, ProgramWritesPictures)
{
    const std::string output = "-o '" + (_folder.Path() / "out.png").string() + "' --size 32x24 ";
    const Outcome drawn = RunMox("preview ../examples/rim_light.xml --frames 0..1 " + output);
    EXPECT_EQ(drawn.Status, 0);
    EXPECT_EQ(drawn.Text, "");
    const std::string header = _folder.Read("out.png").substr(0, 24);
    EXPECT_EQ(header.substr(1, 3), "PNG");
    EXPECT_EQ(header[19], 64);
    EXPECT_EQ(header[23], 24);

    const Outcome broken = RunMox("preview mox/bad/missing_facing.xml " + output);
    EXPECT_EQ(broken.Status, 1);
    EXPECT_NE(broken.Text.find("missing_facing.xml:"), std::string::npos) << broken.Text;
    EXPECT_EQ(RunMox("preview ../examples/rim_light.xml --size big " + output).Status, 2);
    EXPECT_EQ(RunMox("preview ../examples/rim_light.xml --frames 3..1 " + output).Status, 2);
    EXPECT_EQ(RunMox("preview ../examples/rim_light.xml --set tint " + output).Status, 2);
    EXPECT_EQ(RunMox("preview ../examples/rim_light.xml -o picture.jpg").Status, 2);
    EXPECT_EQ(RunMox("preview ../examples/rim_light.xml --set baseColour=1,2,3,4 " + output).Status,
              1);
}

TEST(MaterialPreview, SaysInOneLineThatThereIsNoDevice)
{
    const Outcome outcome = RunMox("preview ../examples/rim_light.xml -o /dev/null",
                                   "VK_ICD_FILENAMES=/dev/null VK_DRIVER_FILES=/dev/null");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Text.find("mox: no Vulkan device was found"), 0u) << outcome.Text;
    EXPECT_EQ(outcome.Text.find('\n'), outcome.Text.size() - 1) << outcome.Text;
}

} // namespace
