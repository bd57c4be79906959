#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/File.h"
#include "mox/program/MaterialProgram.h"
#include "mox/targets/ProgramCompiler.h"
#include "mox/targets/Reflection.h"
#include "tests/compile/Recheck.h"
#include "tests/compile/SampleProgram.h"
#include "tests/compile/WgslFaults.h"
#include "tests/support/Browser.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/NodeModes.h"
#include "tests/support/RandomMaterial.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <span>
#include <sstream>
#include <thread>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

/// Compiles for all targets and validates every result with an independent reader.
CompiledProgram CompileAndRecheck(const ProgramCompiler& compiler, const CgProgram& program)
{
    ProblemList problems;
    CompiledProgram result = compiler.Compile(program, AllCompileTargets(), "test.xml", problems);
    EXPECT_EQ(FormatProblems(problems), "") << program.Vertex.Text << program.Fragment.Text;
    for (const TargetProgram& target : result.Programs)
        EXPECT_EQ(Recheck(target), "") << GetTargetName(target.Target) << "\n" << target.Bytes;
    return result;
}

std::string ErrorsOf(const CgProgram& program)
{
    ProblemList problems;
    const CompiledProgram result =
        ProgramCompiler().Compile(program, AllCompileTargets(), "test.xml", problems);
    EXPECT_TRUE(result.Programs.empty());
    return FormatProblems(problems);
}

TEST(ProgramCompiler, WritesEveryTarget)
{
    const CompiledProgram result = CompileAndRecheck(ProgramCompiler(), ReadProgram("painted"));
    ASSERT_EQ(result.Programs.size(), 2 * AllCompileTargets().size());
    for (const TargetProgram& program : result.Programs)
        if (program.Target != CompileTarget::Spirv)
            ExpectGolden(Compose("compile/painted/", GetStageName(program.Stage), ".",
                                 GetTargetName(program.Target)),
                         program.Bytes);
    ExpectGolden("compile/painted/reflection.json", FormatReflection(result));
}

TEST(ProgramCompiler, OptimisedModulesAreShorter)
{
    const auto modules = [](bool optimises) {
        ProblemList problems;
        return ProgramCompiler(optimises)
            .Compile(ReadProgram("painted"), {CompileTarget::Spirv}, "test.xml", problems)
            .Programs;
    };
    const std::vector<TargetProgram> plain = modules(false);
    const std::vector<TargetProgram> optimised = modules(true);
    ASSERT_EQ(plain.size(), optimised.size());
    for (std::size_t i = 0; i < plain.size(); ++i) {
        EXPECT_EQ(Recheck(optimised[i]), "");
        EXPECT_LT(optimised[i].Bytes.size(), plain[i].Bytes.size());
    }
}

TEST(ProgramCompiler, TextAndParametersMustMeet)
{
    CgProgram program = ReadProgram("painted");
    std::erase_if(program.Plan.Parameters,
                  [](const auto& p) { return p.Name == "world" || p.Name == "rampTexture"; });
    const std::string internal = "error compile: test.xml: internal error of the code generator: ";
    EXPECT_EQ(ErrorsOf(program), internal + "\"world\" is not a parameter\n");
    EXPECT_EQ(ErrorsOf(MakeFragmentProgram("void main( in float4 interpolant3 : TEXCOORD3, "
                                           "out half4 colour : COLOR0 )\n"
                                           "{\n\tcolour = interpolant3;\n}\n")),
              internal + "nothing writes TEXCOORD3\n");
}

/// Each line is the body of a node's function.
TEST(ProgramCompiler, ErrorsNameTheNode)
{
    ExpectSession("compile/errors.txt", [](const std::string& line) {
        const std::string body = std::regex_replace(line, std::regex("; "), ";\n\t");
        return ErrorsOf(MakeFragmentProgram(Compose(
            "uniform half3 strength;\n\n// node \"Glow\"\n"
            "void glow( in half3 in_value, out half3 out_value )\n{\n\t",
            body,
            "\n}\n\nvoid main( in float4 interpolant0 : TEXCOORD0, out half4 colour : COLOR0 "
            ")\n{\n\thalf3 value;\n\tglow( interpolant0.xyz, value );\n"
            "\tcolour = value.xyzz;\n}\n")));
    });
}

CgProgram BuildMaterial(const MaterialDocument& document, ProblemList& problems)
{
    MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    ResolveGraph(graph, problems);
    return BuildMaterialProgram(graph, TestEnvironment(), {}, problems);
}

TEST(ProgramCompiler, EveryExample)
{
    const ProgramCompiler compiler;
    for (const std::filesystem::path& file : ExampleDocuments()) {
        SCOPED_TRACE(file);
        ProblemList problems;
        const CgProgram program = BuildMaterial(ReadMaterialDocument(file), problems);
        ASSERT_FALSE(problems.HasErrors()) << FormatProblems(problems);
        CompileAndRecheck(compiler, program);
    }
}

/// Every node type in its first mode, or in all modes if the environment variable MOX_EVERY_MODE is
/// set.
std::vector<NodeMode> ModesToTest()
{
    std::vector<NodeMode> modes = ModesOfEveryNode();
    std::set<std::string> types;
    if (!std::getenv("MOX_EVERY_MODE"))
        std::erase_if(modes, [&](const NodeMode& mode) { return !types.insert(mode.Type).second; });
    return modes;
}

TEST(ProgramCompiler, WgslOfEveryExampleAndEveryNodeKeepsToTheBaseLanguage)
{
    std::vector<std::pair<std::string, MaterialDocument>> materials;
    for (const std::filesystem::path& file : ExampleDocuments())
        materials.emplace_back(file, ReadMaterialDocument(file));
    for (NodeMode& mode : ModesToTest())
        materials.emplace_back(mode.Name, std::move(mode.Material));
    for (const auto& [name, document] : materials) {
        SCOPED_TRACE(name);
        ProblemList problems;
        const CompiledProgram result =
            Translate(BuildMaterial(document, problems), {CompileTarget::Wgsl},
                      Mox::Languages::Precision::Full, {}, "test.xml", problems);
        EXPECT_FALSE(problems.HasErrors()) << FormatProblems(problems);
        for (const TargetProgram& program : result.Programs)
            EXPECT_EQ(FindWgslFaults(program.Bytes), std::vector<std::string>()) << program.Bytes;
    }
}

class BrowserPrograms : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!HasBrowser())
            GTEST_SKIP() << "no browser was found";
    }

    /// @param name for messages
    void Add(const std::string& name, const MaterialDocument& document)
    {
        ProblemList problems;
        const std::vector<TargetProgram> texts =
            Translate(BuildMaterial(document, problems), {CompileTarget::Essl, CompileTarget::Wgsl},
                      Mox::Languages::Precision::Full, {}, "test.xml", problems)
                .Programs;
        ASSERT_FALSE(problems.HasErrors()) << name << "\n" << FormatProblems(problems);
        for (std::size_t i = 0; i < texts.size(); i += 2) {
            _names.push_back(Compose(name, ", ", GetTargetName(texts[i].Target)));
            _request["runs"].push_back({{"language", GetTargetName(texts[i].Target)},
                                        {"vertex", texts[i].Bytes},
                                        {"fragment", texts[i + 1].Bytes}});
        }
    }

    void ExpectAccepted()
    {
        nlohmann::json wrong = _request["runs"].back();
        wrong["fragment"] = wrong["fragment"].get<std::string>() + "wrong";
        _request["runs"].push_back(wrong);
        const nlohmann::json answers = AskBrowser(_request);
        const nlohmann::json& runs = _request["runs"];
        ASSERT_EQ(answers.size(), runs.size());
        EXPECT_TRUE(answers.back().contains("error"));
        for (std::size_t i = 0; i + 1 < runs.size(); ++i)
            EXPECT_FALSE(answers[i].contains("error"))
                << _names[i] << ": " << answers[i] << "\n"
                << runs[i]["vertex"].get<std::string>() << runs[i]["fragment"].get<std::string>();
    }

private:
    std::vector<std::string> _names; ///< of the runs
    nlohmann::json _request;
};

TEST_F(BrowserPrograms, OfEveryExample)
{
    for (const std::filesystem::path& file : ExampleDocuments())
        Add(file, ReadMaterialDocument(file));
    ExpectAccepted();
}

TEST_F(BrowserPrograms, OfEveryNodeAndOfAThousand)
{
    for (const NodeMode& mode : ModesToTest())
        Add(mode.Name, mode.Material);
    std::string chain = "node0 CoreConstant; Name=start\nsurface Surface\n";
    for (int i = 1; i <= 1000; ++i) {
        chain += Compose("node", i, " CoreMaths; Function=Multiply; Default Value 2=0.5\nnode",
                         i - 1, i == 1 ? ".read" : ".out_value", " -> node", i, ".in_value1\n");
    }
    Add("chain", MaterialFromText(chain + "node1000.out_value -> surface.in_colour\n"));
    ExpectAccepted();
}

/// Set the environment variable MOX_RANDOM_MATERIALS to test more materials.
TEST(ProgramCompiler, RandomMaterials)
{
    const char* wanted = std::getenv("MOX_RANDOM_MATERIALS");
    const std::uint32_t count = wanted ? std::stoul(wanted) : 100;
    const std::uint32_t first = std::random_device()();
    const ProgramCompiler compiler;
    std::uint32_t compiled = 0;
    for (std::uint32_t seed = first; seed - first < count && !HasFailure(); ++seed) {
        SCOPED_TRACE(Compose("seed ", seed));
        ProblemList problems;
        const CgProgram program =
            BuildMaterial(MakeRandomMaterial(seed, 1 + static_cast<int>(seed % 30)), problems);
        for (const Problem& problem : problems.Problems()) {
            // The number of interpolated values is limited; everything else must work.
            ASSERT_TRUE(problem.Level == Severity::Warning ||
                        problem.Rule == "too-many-interpolants")
                << problem.Format();
        }
        if (problems.HasErrors())
            continue;
        ++compiled;
        CompileAndRecheck(compiler, program);
    }
    EXPECT_GT(compiled, count * 9 / 10);
    RecordProperty("compiled", static_cast<int>(compiled));
}

/// Makes a pair of programs that reads one parameter of the given kind per name.
CgProgram ProgramWithNames(ParameterKind kind, const std::vector<std::string>& names)
{
    std::string declarations, inputs, sum = "float4( 0, 0, 0, 1 )";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string name = Compose("given_", i);
        if (kind == ParameterKind::Uniform)
            declarations += Compose("uniform half4 ", name, ";\n");
        else if (kind == ParameterKind::Sampler)
            declarations += Compose("uniform sampler2D ", name, " : TEXUNIT", i, ";\n");
        else
            inputs += Compose("in half4 ", name, " : ATTR", i, ", ");
        sum += kind == ParameterKind::Sampler ? Compose(" + h4tex2D( ", name, ", float2( 0, 0 ) )")
                                              : " + " + name;
    }
    const std::string fragmentSum = inputs.empty() ? sum : "interpolant0";
    CgProgram program = MakeProgram(
        Compose(declarations, "void main( ", inputs,
                "out float4 clip : POSITION, out float4 interpolant0 : TEXCOORD0 )\n"
                "{\n\tclip = interpolant0 = ",
                sum, ";\n}\n"),
        Compose(declarations,
                "void main( in float4 interpolant0 : TEXCOORD0, out half4 colour : COLOR0 )\n"
                "{\n\tcolour = pow( interpolant0, 2 )*lerp( 1, interpolant0, 0.5 ) + ",
                fragmentSum, ";\n}\n"));
    for (std::size_t i = 0; i < names.size(); ++i)
        program.Plan.Parameters[i].Name = names[i];
    return program;
}

TEST(ProgramCompiler, ParametersMayBeCalledAnything)
{
    std::istringstream stream(ReadFile(MOX_TEST_DATA "/compile/words.txt"));
    const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    const ProgramCompiler compiler;
    for (const auto kind :
         {ParameterKind::Uniform, ParameterKind::Sampler, ParameterKind::VertexStream}) {
        for (auto rest = std::span(words); !rest.empty();) {
            const auto part = rest.first(std::min<std::size_t>(rest.size(), 16));
            rest = rest.subspan(part.size());
            const std::vector<std::string> names(part.begin(), part.end());
            for (const TargetProgram& program :
                 CompileAndRecheck(compiler, ProgramWithNames(kind, names)).Programs) {
                if (kind == ParameterKind::VertexStream && program.Stage == ProgramStage::Fragment)
                    continue;
                std::set<std::string> distinct;
                for (const std::string& there : program.Names) {
                    EXPECT_FALSE(there.empty());
                    EXPECT_NE(program.Bytes.find(there), std::string::npos) << there;
                    distinct.insert(there);
                }
                EXPECT_EQ(distinct.size(), names.size());
            }
        }
    }
}

TEST(ProgramCompiler, NamesStayWhereTheLanguageAllows)
{
    const std::vector<std::string> names{"sample", "texture2D", "input",     "half4", "gl_x",
                                         "a__b",   "vec4",      "two words", "tint"};
    const CompiledProgram result =
        CompileAndRecheck(ProgramCompiler(), ProgramWithNames(ParameterKind::Uniform, names));
    std::string text;
    for (const TargetProgram& program : result.Programs) {
        if (program.Stage == ProgramStage::Vertex)
            continue;
        text += Compose(GetTargetName(program.Target), ":");
        for (const std::string& name : program.Names)
            text += " " + name;
        text += "\n";
    }
    ExpectGolden("compile/names.txt", text);
}

/// A constant and a vertex stream with the same name, a binding named like a uniform of the
/// environment, and two names that collide when they are made valid.
TEST(ProgramCompiler, EqualNamesAreDifferentParameters)
{
    ProblemList problems;
    const CgProgram program = BuildMaterial(MaterialFromText(R"(
        paint CoreConstant; Name=paint
        uv CoreUv; Name=paint
        map CoreTexture; Name=map
        light CoreConstant; Name=lightDirection
        two words CoreConstant; Name=light Colour
        sum CoreMaths; Function=Addition
        sum2 CoreMaths; Function=Addition
        sum3 CoreMaths; Function=Addition
        surface Surface
        uv.read -> map.in_uv
        map.out_colour -> sum.in_value1
        paint.read -> sum.in_value2
        sum.out_value -> sum2.in_value1
        light.read -> sum2.in_value2
        sum2.out_value -> sum3.in_value1
        two words.read -> sum3.in_value2
        sum3.out_value -> surface.in_colour
    )"),
                                            problems);
    const CompiledProgram result = CompileAndRecheck(ProgramCompiler(), program);
    std::string text = FormatProblems(problems);
    for (std::size_t i = 0; i < result.Parameters.size(); ++i) {
        const ProgramParameter& parameter = result.Parameters[i];
        text += Compose(parameter.IsBinding ? "binding" : "environment", " \"", parameter.Name,
                        "\": ", parameter.CgName);
        for (const TargetProgram& target : result.Programs) {
            if (!target.Names[i].empty())
                text += Compose(", ", GetTargetName(target.Target), " ", target.Names[i]);
        }
        text += "\n";
    }
    const auto list = [&](const std::string& place, const nlohmann::json& entries) {
        for (const nlohmann::json& entry : entries) {
            text += Compose(place, ": ", entry.at("name").get<std::string>());
            if (entry.contains("environment"))
                text += " is " + entry["environment"].get<std::string>();
            text += "\n";
        }
    };
    const auto reflection = nlohmann::json::parse(FormatReflection(result));
    for (const auto& [rate, block] : reflection.at("uniformBlocks").items())
        list(rate, block.at("members"));
    for (const auto& [stage, interface] : reflection.at("stages").items()) {
        for (const char* part : {"samplers", "inputs", "outputs"})
            list(Compose(stage, " ", part), interface.at(part));
    }
    ExpectGolden("compile/equal_names.txt", text);
}

/// Describes a block of the environment without the stages that read it.
nlohmann::json WithoutStages(nlohmann::json block)
{
    block.erase("stages");
    for (nlohmann::json& member : block["members"])
        member.erase("stages");
    return block;
}

TEST(ProgramCompiler, BlocksOfTheEnvironmentAreThoseOfEveryMaterial)
{
    std::map<std::string, std::set<std::string>> blocks;
    for (const std::filesystem::path& file : ExampleDocuments()) {
        ProblemList problems;
        const CgProgram program = BuildMaterial(ReadMaterialDocument(file), problems);
        const auto reflection = nlohmann::json::parse(FormatReflection(
            Translate(program, {}, Mox::Languages::Precision::Full, {}, file.string(), problems)));
        ASSERT_FALSE(problems.HasErrors()) << FormatProblems(problems);
        for (const char* rate : {"frame", "object"})
            blocks[rate].insert(WithoutStages(reflection.at("uniformBlocks").at(rate)).dump());
    }
    EXPECT_EQ(blocks["frame"].size(), 1u);
    EXPECT_EQ(blocks["object"].size(), 1u);
}

TEST(ProgramCompiler, AMemberNamesEachStageThatReadsIt)
{
    ProblemList problems;
    const CgProgram program = BuildMaterial(MaterialFromText(R"(
        shift CoreConstant; Name=shift
        surface Surface
        shift.read -> surface.in_offset
        shift.read -> surface.in_colour
    )"),
                                            problems);
    const auto reflection = nlohmann::json::parse(FormatReflection(
        Translate(program, {}, Mox::Languages::Precision::Full, {}, "test.xml", problems)));
    EXPECT_EQ(reflection.at("uniformBlocks").at("material").at("members")[0].at("stages").dump(),
              R"(["vertex","fragment"])");
}

TEST(ProgramCompiler, SameBytesEveryTime)
{
    const CgProgram program = ReadProgram("painted");
    const auto compile = [&](const ProgramCompiler& compiler) {
        std::string bytes;
        for (const TargetProgram& target : CompileAndRecheck(compiler, program).Programs)
            bytes += target.Bytes;
        return bytes;
    };
    const std::string expected = compile(ProgramCompiler());
    const ProgramCompiler shared;
    std::array<std::string, 8> results;
    std::vector<std::thread> threads;
    threads.reserve(results.size());
    for (std::string& result : results)
        threads.emplace_back([&] {
            result = compile(shared);
            result += compile(ProgramCompiler());
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& result : results)
        EXPECT_EQ(result, expected + expected);
}

} // namespace
