#include "mox/Text.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/preview/DrawBuilder.h"
#include "mox/preview/LightPanorama.h"
#include "mox/preview/MeshShapes.h"
#include "mox/preview/TexelCodec.h"
#include "mox/program/MaterialProgram.h"
#include "mox/targets/ProgramTranslator.h"
#include "tests/preview/ExamplePreview.h"
#include "tests/preview/PictureComparison.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <glm/common.hpp>
#include <glm/gtc/packing.hpp>
#include <nlohmann/json.hpp>

using namespace Mox::Host;
using Json = nlohmann::json;
using Mox::Materials::Compose;

namespace {

constexpr std::uint32_t side = 384;

/// Each of the preview's samples, and their mean, is rounded to a byte, and devices may filter
/// textures with weights of eight bits.
constexpr PictureLimits limits = {3, 1.0};

/// Devices may compute derivatives for each row or column of two pixels, or once for four pixels.
/// Bumps depend on them, and reflections amplify the difference.
constexpr PictureLimits derivativeLimits = {3, 3.5, 0.04};

bool ReadsDerivatives(const std::string& source)
{
    return source.find("dFdx(") != source.npos || source.find("dpdx(") != source.npos;
}

Json DescribeTexels(const TextureImage& level)
{
    Json texels = Json::array();
    if (level.Format == TexelFormat::Unorm8) {
        for (const std::byte byte : level.Bytes)
            texels.push_back(std::to_integer<int>(byte));
        return texels;
    }
    for (std::size_t at = 0; at < level.Bytes.size(); at += sizeof(float)) {
        float value = 0.0f;
        std::memcpy(&value, level.Bytes.data() + at, sizeof(value));
        texels.push_back(glm::packHalf1x16(value));
    }
    return texels;
}

Json DescribeTexture(const DrawTexture& texture, const SamplerSlot& slot, const std::string& name)
{
    EXPECT_EQ(texture.Shape, TextureShape::Plane) << "the page only draws with planes";
    const auto word = [](const std::string& text, const char* usual) {
        return text.empty() ? std::string(usual) : text;
    };
    Json levels = Json::array();
    for (const TextureImage& level : texture.Levels)
        levels.push_back(
            {{"width", level.Width}, {"height", level.Height}, {"texels", DescribeTexels(level)}});
    return {{"name", name},
            {"unit", slot.Unit},
            {"group", samplerSet},
            {"isHalf", texture.Levels.front().Format == TexelFormat::Float},
            {"levels", std::move(levels)},
            {"wrapU", word(texture.Sampler.WrapU, "repeat")},
            {"wrapV", word(texture.Sampler.WrapV, "repeat")},
            {"filter", word(texture.Sampler.Filter, "trilinear")}};
}

/// Describes the draw call of a preview for the browser, with programs in ESSL and WGSL.
/// @param draw without programs
Json DescribeDraw(const DrawCall& draw, const CompiledProgram& program)
{
    Json request{{"width", side}, {"height", side}, {"indices", draw.Indices}};
    for (const DrawStream& stream : draw.Streams)
        request["streams"].push_back({{"location", stream.Location},
                                      {"components", stream.Components},
                                      {"values", stream.Values}});
    for (std::size_t i = 0; i < program.Blocks.size(); ++i) {
        Json bytes = Json::array();
        for (const std::byte byte : draw.Uniforms[i].Bytes)
            bytes.push_back(std::to_integer<int>(byte));
        request["blocks"].push_back({{"name", program.Blocks[i].Name},
                                     {"number", draw.Uniforms[i].Set},
                                     {"bytes", std::move(bytes)}});
    }
    for (const TargetProgram& target : program.Programs) {
        if (target.Target != CompileTarget::Essl)
            continue;
        for (const SamplerSlot& slot : program.InterfaceOf(target.Stage).Samplers) {
            const auto texture =
                std::find_if(draw.Textures.begin(), draw.Textures.end(),
                             [&](const auto& other) { return other.Binding == slot.Binding; });
            request["textures"].push_back(
                DescribeTexture(*texture, slot, target.Names[slot.Parameter]));
        }
    }
    for (std::size_t i = 0; i < program.Programs.size(); i += 2)
        request["runs"].push_back({{"language", GetTargetName(program.Programs[i].Target)},
                                   {"vertex", program.Programs[i].Bytes},
                                   {"fragment", program.Programs[i + 1].Bytes}});
    return request;
}

/// Makes what the preview draws of an example at frame and time 0.
Json MakeRequest(const std::filesystem::path& file, const Mesh& mesh, FileDecoder& files)
{
    ProblemList problems;
    const MaterialGraph graph = OpenMaterial(file, TestPlugins(), problems);
    const CompiledProgram program =
        Translate(BuildMaterialProgram(graph, TestEnvironment(), {}, problems),
                  {CompileTarget::Essl, CompileTarget::Wgsl}, Mox::Languages::Precision::Full, {},
                  file.string(), problems);
    problems.ThrowFirstError();
    static const LightPanorama studio = PrepareLight(MakeStudioImage(), false);
    UniformValues scene = MakeSceneValues(mesh, 1.0f);
    scene["frame"] = scene["time"] = {0.0f};
    scene["lightLevels"] = {studio.RoughestLevel};
    SceneTexture panorama{studio.Levels};
    panorama.Sampler.WrapV = "clamp";
    const PreviewBindings bindings(graph);
    constexpr std::uint32_t largest = 4096;
    TextureLoader textures(files, file.parent_path(), {largest, largest}, problems);
    DrawCall draw = BuildDraw(
        program, {mesh, &bindings, &textures, {{"lightPanorama", panorama}}, {}}, problems);
    draw.Uniforms = FillUniforms(program, &bindings, scene, problems);
    problems.ThrowFirstError();
    return DescribeDraw(draw, program);
}

/// @param bits of floats, four for each pixel
std::vector<std::uint8_t> EncodePixels(const Json& bits)
{
    const TexelCodec codec(TexelFormat::Unorm8, true);
    TextureImage image;
    for (std::size_t at = 0; at < bits.size(); at += 4) {
        const auto value = [&](std::size_t i) {
            return std::bit_cast<float>(bits[at + i].get<std::uint32_t>());
        };
        const float alpha = value(3) > 0.0f ? 1.0f : 0.0f;
        codec.Append(glm::clamp(glm::vec4(value(0), value(1), value(2), alpha), 0.0f, 1.0f), image);
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(image.Bytes.data());
    return {bytes, bytes + image.Bytes.size()};
}

using LanguagePicturesTest = BrowserPictureTest;

/// Set the environment variable MOX_EVERY_PICTURE to draw all examples instead of the first one.
TEST_F(LanguagePicturesTest, OfEveryExample)
{
    const Mesh mesh = MakeSphere();
    for (const std::filesystem::path& file : ExampleDocuments()) {
        const Json request = MakeRequest(file, mesh, Get().Files);
        const Json answers = AskBrowser(request);
        const Picture preview = Draw(file, mesh, side);
        ASSERT_EQ(answers.size(), request["runs"].size());
        for (std::size_t i = 0; i < answers.size(); ++i) {
            SCOPED_TRACE(Compose(file.stem().string(), " in ",
                                 request["runs"][i]["language"].get<std::string>()));
            if (answers[i].contains("error"))
                ADD_FAILURE() << answers[i]["error"];
            else
                ExpectSamePicture(
                    EncodePixels(answers[i]["pixels"]), preview,
                    ReadsDerivatives(request["runs"][i]["fragment"].get<std::string>())
                        ? derivativeLimits
                        : limits);
        }
        if (!std::getenv("MOX_EVERY_PICTURE"))
            break;
    }
}

} // namespace
