#include "mox/preview/DrawBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace Mox::Host;

namespace {

TEST(DrawBuilder, IntegersTakeAnyFloat)
{
    const std::pair<float, std::int32_t> rows[] = {{2.9f, 2},
                                                   {-2.9f, -2},
                                                   {NAN, 0},
                                                   {INFINITY, 2147483647},
                                                   {3e9f, 2147483647},
                                                   {2147483648.0f, 2147483647},
                                                   {-3e9f, -2147483648},
                                                   {-INFINITY, -2147483648}};
    for (const auto& [value, whole] : rows) {
        CompiledProgram program;
        const ShaderType integer(ComponentType::Int, 1, 1, 1);
        program.Parameters = {{ParameterKind::Uniform, "n", "n", integer, {}, false, true, false}};
        program.Blocks = {
            {UniformRate::Frame, "block", 16, {{0, "n", integer, 0, 4, 0, 0, true, false}}}};
        ProblemList problems;
        const auto blocks = FillUniforms(program, nullptr, {{"n", {value}}}, problems);
        std::int32_t written = 1;
        std::memcpy(&written, blocks.at(0).Bytes.data(), sizeof(written));
        EXPECT_EQ(written, whole) << value;
    }
}

TEST(DrawBuilder, OnlyStreamsOfFloatsCanBeSet)
{
    const std::pair<ShaderType, bool> rows[] = {{{ComponentType::Float, 4, 1, 1}, true},
                                                {{ComponentType::Half, 4, 1, 1}, true},
                                                {{ComponentType::Int, 4, 1, 1}, false},
                                                {{ComponentType::Float, 2, 2, 1}, false},
                                                {{ComponentType::Float, 2, 1, 2}, false}};
    Mesh mesh;
    mesh.Positions = {{}, {}};
    for (const auto& [type, isPossible] : rows) {
        CompiledProgram program;
        program.Parameters = {
            {ParameterKind::VertexStream, "bones", "bones", type, {}, false, true, false}};
        program.Vertex.Inputs = {{0, "bones", type, 0}};
        ProblemList problems;
        const DrawCall draw =
            BuildDraw(program, {mesh, nullptr, nullptr, {}, {{"bones", {1, 2, 3, 4}}}}, problems);
        EXPECT_EQ(problems.HasErrors(), !isPossible) << type;
        ASSERT_EQ(draw.Streams.empty(), !isPossible) << type;
        for (const DrawStream& stream : draw.Streams)
            EXPECT_EQ(stream.Values, (std::vector<float>{1, 2, 3, 4, 1, 2, 3, 4})) << type;
    }
}

TEST(DrawBuilder, NumbersOfTheCommandLine)
{
    using Numbers = std::vector<float>;
    const std::pair<const char*, std::optional<Numbers>> rows[] = {
        {"1", Numbers{1}},         {"1,0.5,-2e3", Numbers{1, 0.5f, -2000}},
        {" 0, 1 ", Numbers{0, 1}}, {"", std::nullopt},
        {"1;2", std::nullopt},     {"1,,2", std::nullopt},
        {"1,", std::nullopt},      {",1", std::nullopt},
        {"1 2", std::nullopt},     {"1x", std::nullopt},
        {"nan", std::nullopt},     {"1,inf", std::nullopt},
        {"1e99", std::nullopt},    {"0x10", std::nullopt}};
    for (const auto& [text, numbers] : rows)
        EXPECT_EQ(ParseNumbers(text), numbers) << text;
}

} // namespace
