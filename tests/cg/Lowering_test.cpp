#include "mox/Text.h"
#include "mox/cg/Liveness.h"
#include "mox/cg/Lowering.h"
#include "mox/languages/Languages.h"
#include "tests/support/PlainStage.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

using namespace Mox;
using Materials::Compose;

namespace {

/// Compares bodies after lowering in the simplest language, and one body in each language.
TEST(CgLowering, LeavesNothingToTheLanguages)
{
    using Languages::Language;
    ExpectSession("cg/lowering.txt", [](const std::string& tried) {
        const std::string words = tried.substr(0, tried.find(": "));
        const Language* const languages[] = {&Language::Glsl, &Language::Essl, &Language::Hlsl,
                                             &Language::Msl, &Language::Wgsl};
        std::string body = tried;
        std::string text;
        for (const Language* language : languages) {
            if (words.find(language->Name) == std::string::npos || words == tried)
                continue;
            body = tried.substr(words.size() + 2);
            const auto precision = words.ends_with("relaxed") ? Languages::Precision::Relaxed
                                                              : Languages::Precision::Full;
            const auto module = Cg::ReadModule(Compose(
                "struct Light { float3 colour; float power; };\n"
                "float twice( float x ) { return 2*x; }\nhalf3 twice( half3 x ) { return 2*x; }\n"
                "float split( in float2 v, out float x, inout float y ) "
                "{ x = v.x; y += v.y; return 1; }\n"
                "void f( in float s, in half h, in float2 v2, in float3 v3, in float4 v4, in int "
                "i, "
                "in bool b, in float3x3 m, in float4x3 m43, in sampler2D tex, in sampler1D ramp, "
                "out float o, out float3 o3 )\n{\n",
                body, "\n}\nvoid main( out float4 c : COLOR0 ) { c = 0; }\n"));
            for (const Cg::SourceError& error : module->Errors)
                text += error.Message + "\n";
            if (!module->Errors.empty())
                return std::optional(text);
            Cg::LowerModule(*module);
            const std::string whole =
                language->Write(Languages::MakeStage(*module, false), precision).Text;
            const std::size_t begin = whole.find("o3", whole.find(" f("));
            const std::size_t open = whole.find("{\n", begin) + 2;
            const std::size_t close = whole.find("\n}\n", open);
            text += Compose(language->Name, "\n", whole.substr(open, close - open), "\n");
        }
        return std::optional(text);
    });
}

/// Each line is the body of "main"; its output c is read, unread is not. The expected result lists
/// the declarations of "main" before what remains of the body.
TEST(CgLiveness, KeepsWhatOutputsDependOn)
{
    ExpectSession("cg/liveness.txt", [](const std::string& tried) {
        const auto module = Cg::ReadModule(Compose(
            "uniform float u;\nuniform float w;\nuniform sampler2D map;\n"
            "void split( in float2 v, in float k, out float x, out float y ) "
            "{ x = v.x*k; y = v.y; }\n"
            "float first( in float x, in float y ) { return x; }\n"
            "void cut( in float x, in float y ) { if( x > 0.5 ) discard; }\n"
            "void below( in float x ) { clip( x ); }\n"
            "void flow( in float n, in float x, in float y, out float r ) "
            "{ r = y; for( int i = 0; i < n; ++i ) { if( x > 0 ) return; r += 1; } }\n"
            "void both( inout float x, out float y ) { y = x; }\n"
            "void main( in float a : TEXCOORD0, in float b : TEXCOORD1, in float2 v : TEXCOORD2, "
            "out float4 c : COLOR0, out float4 unread : COLOR1 )\n{\n",
            tried, "\n}\n"));
        for (const Cg::SourceError& error : module->Errors)
            return std::optional(error.Message + "\n");
        Cg::LowerModule(*module);
        Cg::DropDead(*module, [](const Cg::Variable& output) { return output.Name == "c"; });
        std::string text;
        for (const Cg::Variable* parameter : module->Main()->Parameters)
            text += Compose(parameter->Name, " ");
        for (const Cg::Variable* uniform : module->Uniforms)
            text += Compose(uniform->Name, " ");
        const std::string whole =
            Languages::Language::Glsl
                .Write(Languages::MakeStage(*module, false), Languages::Precision::Full)
                .Text;
        const std::size_t open = whole.find("{\n", whole.find("void main()")) + 2;
        return std::optional(Compose(text, "\n", whole.substr(open, whole.size() - open - 2)));
    });
}

} // namespace
