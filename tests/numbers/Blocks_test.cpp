#include "mox/Text.h"
#include "mox/targets/ProgramCompiler.h"
#include "mox/targets/Reflection.h"
#include "tests/compile/SampleProgram.h"
#include "tests/numbers/CaseDrawer.h"
#include "tests/numbers/OutsideRunners.h"
#include "tests/support/Browser.h"
#include "tests/support/DeviceTest.h"
#include "tests/support/GlslModule.h"

#include <cstring>
#include <nlohmann/json.hpp>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Json = nlohmann::json;

namespace {

const ShaderType shapes[] = {
    {ComponentType::Float, 1, 1, 1}, {ComponentType::Float, 3, 1, 1},
    {ComponentType::Half, 1, 1, 1},  {ComponentType::Float, 3, 1, 2},
    {ComponentType::Float, 2, 2, 1}, {ComponentType::Bool, 1, 1, 1},
    {ComponentType::Float, 3, 3, 1}, {ComponentType::Float, 2, 1, 1},
    {ComponentType::Float, 2, 3, 1}, {ComponentType::Half, 3, 1, 1},
    {ComponentType::Float, 4, 2, 1}, {ComponentType::Bool, 3, 1, 1},
    {ComponentType::Float, 3, 4, 2}, {ComponentType::Int, 2, 1, 1},
    {ComponentType::Half, 1, 1, 3},  {ComponentType::Fixed, 2, 1, 1},
    {ComponentType::Int, 3, 1, 1},   {ComponentType::Bool, 2, 1, 2},
    {ComponentType::Half, 2, 2, 2},  {ComponentType::Float, 4, 4, 1},
    {ComponentType::Int, 4, 1, 2},   {ComponentType::Half, 4, 3, 1},
};

/// What a program reads from one location, as a four-component vector, and the expected value.
struct BlockRead
{
    std::string Code;
    Numbers Expected;
};

/// Uniforms of every type in each block. Each component has a different value; a bool holds whether
/// that value is divisible by three.
class BlockCase
{
public:
    BlockCase()
    {
        std::string uniforms;
        for (const UniformRate rate : uniformRates) {
            if (rate != UniformRate::Material) // unread uniforms occupy space as well
                _unread.push_back({Compose(GetRateName(rate), "Unread"),
                                   ShaderType(ComponentType::Half, 1, 1, 1), rate});
            for (const ShaderType& shape : shapes) {
                const std::string name = Compose(GetRateName(rate), _uniforms.size());
                uniforms += Compose("uniform ", shape.FormatDeclaration(name), ";\n");
                AddReads(name, shape);
                _uniforms.push_back({name, shape, rate});
            }
        }
        MakeTexts(uniforms);
    }

    CgProgram Program() const
    {
        std::vector<EnvironmentUniform> ofEnvironment = _unread;
        for (const EnvironmentUniform& uniform : _uniforms) {
            if (uniform.Rate != UniformRate::Material)
                ofEnvironment.push_back(uniform);
        }
        return MakeProgram(_vertex, _fragment, ofEnvironment);
    }

    /// The contents of the blocks that a reflection describes.
    std::vector<RunBlock> Fill(const Json& reflection) const
    {
        std::vector<RunBlock> blocks;
        int number = 0;
        for (const UniformRate rate : uniformRates) {
            const Json& block = reflection.at("uniformBlocks").at(GetRateName(rate));
            RunBlock& filled = blocks.emplace_back();
            filled.Name = block.at("name");
            filled.Uniforms.Set = block.at("set");
            filled.Uniforms.Bytes.resize(block.at("size"));
            for (const EnvironmentUniform& uniform : _uniforms) {
                if (uniform.Rate == rate)
                    FillMember(MemberOf(block, uniform.Name), uniform.Type, number,
                               filled.Uniforms.Bytes);
            }
        }
        return blocks;
    }

    /// The first is the sum of all others, computed in the vertex stage.
    std::vector<BlockRead> Reads;

private:
    static float NumberAt(const ShaderType& shape, int number)
    {
        return shape.Component != ComponentType::Bool ? static_cast<float>(number)
               : number % 3 == 0                      ? 1.0f
                                                      : 0.0f;
    }

    void AddReads(const std::string& name, const ShaderType& shape)
    {
        const int begin = _count;
        for (int element = 0; element < shape.ArrayLength; ++element) {
            for (int row = 0; row < shape.Rows; ++row) {
                std::string code = name;
                if (shape.ArrayLength > 1)
                    code += Compose("[", element, "]");
                if (shape.Rows > 1)
                    code += Compose("[", row, "]");
                Numbers expected{};
                for (int column = 0; column < shape.Columns; ++column) {
                    const int at = (element * shape.Columns + column) * shape.Rows + row;
                    expected[static_cast<std::size_t>(column)] = NumberAt(shape, begin + at);
                    ++_count;
                }
                static constexpr const char* rests[] = {", 0, 0, 0", ", 0, 0", ", 0", ""};
                Reads.push_back(
                    {Compose("float4( ", code, rests[shape.Columns - 1], " )"), expected});
            }
        }
    }

    void MakeTexts(const std::string& uniforms)
    {
        BlockRead sum{"pa", {}};
        std::string total = "float4( 0, 0, 0, 0 )";
        std::string choice;
        for (const BlockRead& read : Reads) {
            for (std::size_t i = 0; i < sum.Expected.size(); ++i)
                sum.Expected[i] += read.Expected[i];
            total += Compose(" +\n\t\t", read.Code);
        }
        Reads.insert(Reads.begin(), sum);
        for (std::size_t i = 0; i < Reads.size(); ++i)
            choice += Compose("\tif( pk == ", i, " ) colour = ", Reads[i].Code, ";\n");
        _vertex = Compose(uniforms,
                          "void main( in float2 place : ATTR0, in float4 a : ATTR1, "
                          "in float4 b : ATTR2, in float4 c : ATTR3, in float k : ATTR4, "
                          "out float4 position : POSITION, out float4 pa : TEXCOORD0, "
                          "out float4 pb : TEXCOORD1, out float4 pc : TEXCOORD2, "
                          "out float pk : TEXCOORD3 )\n{\n\tposition = float4( place, 0.5, 1 );\n"
                          "\tpa = 0*a + ",
                          total, ";\n\tpb = b;\n\tpc = c;\n\tpk = k;\n}\n");
        _fragment = Compose(uniforms,
                            "void main( in float4 pa : TEXCOORD0, in float4 pb : TEXCOORD1, "
                            "in float4 pc : TEXCOORD2, in float pk : TEXCOORD3, "
                            "out float4 colour : COLOR0 )\n{\n\tcolour = pb + pc;\n",
                            choice, "}\n");
    }

    static const Json& MemberOf(const Json& block, const std::string& name)
    {
        for (const Json& member : block.at("members")) {
            if (member.at("name") == name)
                return member;
        }
        throw std::runtime_error(name + " is not in the reflection");
    }

    static void FillMember(const Json& member, const ShaderType& shape, int& number,
                           std::vector<std::byte>& bytes)
    {
        EXPECT_EQ(member.at("type"), shape.Format());
        const bool isWhole =
            shape.Component == ComponentType::Int || shape.Component == ComponentType::Bool;
        const bool isMatrix = shape.Rows > 1;
        for (int element = 0; element < shape.ArrayLength; ++element) {
            for (int column = 0; column < shape.Columns; ++column) {
                for (int row = 0; row < shape.Rows; ++row) {
                    const int step = isMatrix ? member.at("matrixStride").get<int>() : 4;
                    const int offset = member.at("offset").get<int>() +
                                       element * member.value("arrayStride", 0) + column * step +
                                       row * 4;
                    const float value = NumberAt(shape, number++);
                    const auto whole = static_cast<std::int32_t>(value);
                    std::memcpy(&bytes.at(static_cast<std::size_t>(offset)),
                                isWhole ? static_cast<const void*>(&whole) : &value, 4);
                }
            }
        }
    }

    int _count = 0;
    std::vector<EnvironmentUniform> _uniforms;
    std::vector<EnvironmentUniform> _unread;
    std::string _vertex;
    std::string _fragment;
};

class BlocksTest : public DeviceTest<CaseDrawer>
{
protected:
    void Compare(const char* language, const std::vector<Numbers>& pixels, std::size_t first = 0)
    {
        ASSERT_EQ(pixels.size(), _case.Reads.size() * CaseDrawer::Count) << language;
        for (std::size_t i = first; i < _case.Reads.size(); ++i)
            EXPECT_EQ(pixels[i * CaseDrawer::Count], _case.Reads[i].Expected)
                << language << ": " << _case.Reads[i].Code;
    }

    const BlockCase _case;
};

/// The source of a block's declaration in a stage, up to the end of its members.
std::string DeclarationOf(const std::string& block, const std::string& text)
{
    const std::size_t name = text.find(" " + block);
    return name == text.npos ? "" : text.substr(name, text.find('}', name) - name);
}

TEST_F(BlocksTest, EveryMemberIsReadWhereTheReflectionSays)
{
    ProblemList problems;
    const CompiledProgram compiled =
        ProgramCompiler().Compile(_case.Program(), AllCompileTargets(), "test.xml", problems);
    problems.ThrowFirstError();
    const std::vector<RunBlock> blocks = _case.Fill(Json::parse(FormatReflection(compiled)));
    std::vector<DrawUniforms> uniforms;
    uniforms.reserve(blocks.size());
    for (const RunBlock& block : blocks)
        uniforms.push_back(block.Uniforms);
    const std::vector<Numbers> inputs = CaseDrawer::MakeInputs(1);
    const std::size_t rows = _case.Reads.size();

    std::vector<BrowserRun> runs;
    for (std::size_t i = 0; i < compiled.Programs.size(); i += 2) {
        const TargetProgram& vertex = compiled.Programs[i];
        const TargetProgram& fragment = compiled.Programs[i + 1];
        const std::string language(GetTargetName(vertex.Target));
        for (const RunBlock& block : blocks)
            EXPECT_EQ(DeclarationOf(block.Name, vertex.Bytes),
                      DeclarationOf(block.Name, fragment.Bytes));
        const auto draw = [&](GlslangInput input) {
            return Get().Draw(CompileWithGlslang(vertex.Bytes, input, true),
                              CompileWithGlslang(fragment.Bytes, input, false), rows, inputs,
                              uniforms);
        };
        if (vertex.Target == CompileTarget::GlslVulkan)
            Compare("glsl-vulkan", draw(GlslangInput::VulkanGlsl));
        else if (vertex.Target == CompileTarget::Hlsl)
            Compare("hlsl", draw(GlslangInput::Hlsl));
        else if (vertex.Target == CompileTarget::Msl) // only its fragment stage runs
            Compare("msl", RunMsl({fragment.Bytes}, {rows}, inputs, blocks)[0].Pixels, 1);
        else if (vertex.Target == CompileTarget::Essl)
            runs.push_back({"essl", vertex.Bytes, fragment.Bytes});
        else if (vertex.Target == CompileTarget::Wgsl)
            runs.push_back({"wgsl", vertex.Bytes, fragment.Bytes});
    }
    if (!HasBrowser())
        GTEST_SKIP() << "no browser was found";
    const std::vector<RunResult> results = DrawInBrowser(runs, rows, inputs, blocks);
    for (std::size_t i = 0; i < results.size(); ++i) {
        ASSERT_EQ(results[i].Error, "") << runs[i].Language << "\n" << runs[i].Fragment;
        Compare(runs[i].Language, results[i].Pixels);
    }
}

} // namespace
