#include "mox/Text.h"
#include "mox/cg/Lowering.h"
#include "mox/languages/Languages.h"
#include "tests/compile/WgslFaults.h"
#include "tests/support/Browser.h"
#include "tests/support/CgCases.h"
#include "tests/support/GlslModule.h"
#include "tests/support/PlainStage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Languages;
using Materials::Compose;

namespace {

/// A program that covers what the expression cases omit: uniforms of all layouts, textures, and
/// discard.
constexpr const char* readsEverything = R"(
uniform float first;
uniform float3 lights[2];
uniform float3x3 turn;
uniform float2x2 narrow;
uniform float3x2 rows;
uniform float4x3 world[2];
uniform bool on;
uniform bool3 switches;
uniform half3 tint;
uniform half weights[3];
uniform int2 counts;
uniform sampler1D ramp : TEXUNIT1;
uniform sampler2D map : TEXUNIT0;
uniform sampler3D volume : TEXUNIT2;
uniform samplerCUBE sky : TEXUNIT3;
float4 reads( sampler1D r, sampler2D m, sampler3D v, samplerCUBE s, float4 at )
{
	return tex1D( r, at.x ) + tex1Dbias( r, at ) + tex1Dlod( r, at ) + tex1Dproj( r, at.xy ) +
		tex1D( r, at.x, at.y, at.z ) + tex2D( m, at.xy ) + tex2Dbias( m, at ) + tex2Dlod( m, at ) +
		tex2Dproj( m, at.xyz ) + tex2D( m, at.xy, at.yz, at.zw ) + tex3D( v, at.xyz ) +
		tex3Dbias( v, at ) + tex3Dlod( v, at ) + tex3Dproj( v, at ) +
		tex3D( v, at.xyz, at.xxx, at.yyy ) + texCUBE( s, at.xyz ) + texCUBEbias( s, at ) +
		texCUBElod( s, float4( at.xyz, 2 ) ) + texCUBE( s, at.xyz, at.xxx, at.yyy ) + h4tex2D( m, at.xy );
}
void main( in float4 at : %IN, out float4 colour : %OUT )
{
	colour = reads( ramp, map, volume, sky, at );
	if( on && switches.y ) colour.xyz += lights[1]*tint + mul( turn, lights[counts.x] );
	colour.xy += mul( narrow, counts*first );
	colour.xyz += mul( rows, colour.xy ) + mul( at, world[1] )*weights[counts.y] + float3( switches );
	colour = at.x > 0 ? tex2D( map, at.xy ) : colour;
}
)";

std::string Replace(std::string text, std::string_view from, std::string_view to)
{
    return text.replace(text.find(from), from.size(), to);
}

struct Source
{
    std::string Code;
    bool IsVertex;
};

std::vector<Source> MakeSources()
{
    std::vector<Source> sources;
    for (const CgCases& cases : MakeCgCases()) {
        if (sources.empty())
            sources.push_back({cases.Vertex, true});
        sources.push_back({cases.Fragment, false});
    }
    sources.push_back(
        {Replace(Replace(readsEverything, "%IN", "ATTR3"), "%OUT", "POSITION"), true});
    std::string fragment = Replace(Replace(readsEverything, "%IN", "TEXCOORD2"), "%OUT", "COLOR0");
    fragment = Replace(fragment, "colour = at.x",
                       "colour.x += ddx( at.x ) + fwidth( at.y );\n"
                       "\tif( at.x < 0 ) discard;\n\tclip( at );\n\tcolour = at.x");
    sources.push_back({fragment, false});
    return sources;
}

/// Writes a source in a language; it is parsed again each time, since lowering changes the tree.
std::string Write(const Source& source, const Language& language, Precision precision)
{
    const auto module = Cg::ReadModule(source.Code);
    for (const Cg::SourceError& error : module->Errors)
        ADD_FAILURE() << error.Where.Line << ": " << error.Message << "\n" << source.Code;
    if (!module->Errors.empty())
        return {};
    Cg::LowerModule(*module);
    return language.Write(MakeStage(*module, source.IsVertex), precision).Text;
}

TEST(Languages, GlslangTakesEveryText)
{
    for (const Source& source : MakeSources()) {
        for (const auto precision : {Precision::Full, Precision::Relaxed}) {
            for (const auto& [language, input] :
                 {std::pair(Language::Glsl, GlslangInput::Glsl),
                  std::pair(Language::VulkanGlsl, GlslangInput::VulkanGlsl),
                  std::pair(Language::Essl, GlslangInput::Essl),
                  std::pair(Language::Hlsl, GlslangInput::Hlsl)}) {
                const std::string text = Write(source, language, precision);
                ASSERT_EQ(ReadWithGlslang(text, input, source.IsVertex), "") << text;
                ASSERT_EQ(text.find("__"), text.npos) << text;
                // These languages do not define the remainder of negative numbers.
                ASSERT_EQ(text.find(" % "), text.npos) << text;
                ASSERT_EQ(text.find(" %= "), text.npos) << text;
            }
        }
    }
}

/// Compiles all sources as one translation unit, against a header that is as strict as the
/// language.
TEST(Languages, ACompilerTakesEveryMsl)
{
    std::string text = "#include <metal_stdlib>\n";
    int number = 0;
    for (const Source& source : MakeSources()) {
        for (const auto precision : {Precision::Full, Precision::Relaxed})
            text += Compose("namespace stage", number++, " {\n",
                            Write(source, Language::Msl, precision), "}\n");
    }
    const TemporaryFolder folder;
    RunCommand(Compose(MOX_CXX_COMPILER " -std=c++20 -w -fsyntax-only -I" MOX_TEST_DATA
                                        "/languages/metal ",
                       Quoted(folder.Write("stages.cpp", text))),
               folder.Path() / "log");
}

TEST(Languages, WgslKeepsToTheBaseLanguage)
{
    for (const Source& source : MakeSources()) {
        const std::string text = Write(source, Language::Wgsl, Precision::Full);
        EXPECT_EQ(FindWgslFaults(text), std::vector<std::string>()) << text;
    }
}

/// Otherwise the test above and that of all nodes would prove nothing.
TEST(Languages, EachFaultOfWgslIsFound)
{
    constexpr const char* statements[] = {
        "v.xy = w.xy;",
        "(*p).zw *= 2.0;",
        "change(&v.x);",
        "change(&list[1]);",
        "change(&(*p).x);",
        "both(&v, 1.0, &v);",
        "both(p, p);",
        "let x: f32 = 1.0 / 0.0;",
        "let x: i32 = count / 0;",
        "let x: f32 = 1e39;",
        "let x: f32 = 3e38 * 10.0;",
        "let x: f32 = sqrt(-1.0);",
        "let x: f32 = v.x + pow(0.0, -1.0);",
        "let x: f32 = clamp(0.5, 1.0, 0.0);",
        "let x__y: f32 = 1.0;",
        "if (v.x > 0.0) {\n\t\tv = textureSample(t, s, w);\n\t}",
        "for (var i: i32 = 0; i < 4; i += 1) {\n\t\tv += reader(w);\n\t}",
        "if (v.x > 0.0) {\n\t\treturn v;\n\t}\n\tv = dpdx(w);",
    };
    constexpr const char* allowed[] = {
        "v.x = w.y;",
        "both(&v, 1.0, &w);",
        "both(p, w);",
        "let x: f32 = sqrt(4.0) / 0.5 + pow(2.0, -1.0) * operand / 0.0;",
        "let b: bool = (x & y) == z && w == v;",
        "if (v.x > 0.0) {\n\t\tv = textureSampleLevel(t, s, w, 0.0);\n\t}\n\tv = reader(w);",
    };
    const auto wrap = [](const std::string& statement) {
        return "fn reader(w: vec2f) -> vec2f {\n\treturn textureSample(t, s, w);\n}\n\n"
               "fn tested(\n\tv: vec2f,\n\tp: ptr<function, vec2f>) -> vec2f {\n\t" +
               statement + "\n\treturn v;\n}\n";
    };
    for (const char* statement : statements)
        EXPECT_EQ(FindWgslFaults(wrap(statement)).size(), 1u) << statement;
    for (const char* statement : allowed)
        EXPECT_EQ(FindWgslFaults(wrap(statement)), std::vector<std::string>()) << statement;
}

} // namespace
