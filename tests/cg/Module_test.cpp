#include "mox/Text.h"
#include "mox/cg/Intrinsics.h"
#include "mox/cg/Module.h"
#include "mox/host/File.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <regex>

using namespace Mox;
using Materials::Compose;

namespace {

std::string Describe(const Cg::Module& module)
{
    std::string text;
    for (const Cg::SourceError& error : module.Errors)
        text += Compose(error.Where.Line, ":", error.Where.Column, ": ", error.Message, "\n");
    return text.empty() ? "understood\n" : text;
}

/// A case that starts with a declaration is a complete source file; any other is the body of a
/// function with declarations of every kind in scope.
TEST(CgModule, SaysWhatItDoesNotUnderstand)
{
    ExpectSession("cg/errors.txt", [](const std::string& tried) {
        static const std::regex declaration(
            R"(^(\w+ \w+\(|struct |static const |static float x = 1;|uniform |#|/\*))");
        if (std::regex_search(tried, declaration))
            return Describe(*Cg::ReadModule(tried));
        return Describe(*Cg::ReadModule(Compose(
            "struct Light { float3 colour; float power; }; static const int three = 3; "
            "float twice( float x ) { return 2*x; } half3 twice( half3 x ) { return 2*x; } "
            "void split( in float2 v, out float x, out float y ) { x = v.x; y = v.y; } "
            "void f( in float s, in half h, in float2 v2, in float3 v3, in float4 v4, in int i, "
            "in bool b, in float3x3 m, in float4x3 m43, in sampler2D tex, in samplerCUBE cube, "
            "inout Light light, out float o, out float3 o3 ) {\n",
            tried, "\n}\n")));
    });
}

/// Holds for any depth and length, even on a small stack.
TEST(CgModule, IsBounded)
{
    const auto repeat = [](const std::string& text, std::size_t count) {
        std::string repeated;
        for (std::size_t i = 0; i < count; ++i)
            repeated += text;
        return repeated;
    };
    constexpr std::size_t many = 20'000;
    for (const std::string& text :
         {"float f() { return " + repeat("(", many), "float f() { return " + repeat("-", many),
          "float f( float x ) { return " + repeat("x?", many),
          "float f( float x ) { return " + repeat("x=", many),
          "float f( float x ) { return x" + repeat("+x", many) + "; }",
          "float f( float3 x ) { return x" + repeat(".xyz", many) + "; }",
          "void f() " + repeat("{", many), "void f() { " + repeat("if(true) ", many),
          "void f() { int x; " + repeat("if(true) x=1; else ", many),
          "float f( float x ) { return " + repeat("f(", many), "void f() {" + repeat("}", many),
          "void f( " + repeat("float x, ", many), "void f() { " + repeat("for(;;) ", many),
          std::string(many, '\0'), "/*" + repeat("*", many)}) {
        const auto module = Cg::ReadModule(text);
        EXPECT_FALSE(module->Errors.empty()) << text.substr(0, 60);
        EXPECT_LE(module->Errors.size(), 101u);
    }
    EXPECT_TRUE(
        Cg::ReadModule("void f() { int x = 1; " + repeat("x += 1; { int y = x; }", many) + "}")
            ->Errors.empty());
}

TEST(CgModule, EveryFunctionIsDocumented)
{
    const std::string page = Host::ReadFile(MOX_TEST_DATA "/../docs/cg.md");
    std::set<std::string> documented;
    static const std::regex word(R"(`(\w+)\()");
    for (std::sregex_iterator it(page.begin(), page.end(), word), end; it != end; ++it) {
        if (!Cg::FindTextureRead((*it)[1].str()))
            documented.insert((*it)[1]);
    }
    std::set<std::string> known;
    for (const Cg::Intrinsic& intrinsic : Cg::Intrinsics())
        known.emplace(intrinsic.Name);
    EXPECT_EQ(documented, known);
}

} // namespace
