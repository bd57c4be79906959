#include "mox/program/CgNames.h"
#include "mox/shader/ShaderNode.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

TEST(CgNames, EveryTextBecomesALegalName)
{
    struct Case
    {
        const char* Text;
        const char* Name;
    };
    constexpr Case cases[] = {
        {"tint", "tint"},
        {"mix", "mix"},
        {"2nd", "_2nd"},
        {"a__b", "a__b"},
        {"two words", "two_words"},
        {"a-b.c", "a_b_c"},
        {"", "_"},
        {"float", "float_"},
        {"half3", "half3_"},
        {"float4x4", "float4x4_"},
        {"lerp", "lerp_"},
        {"h4tex2D", "h4tex2D_"},
        {"main", "main_"},
        {"return", "return_"},
        {"texture2D", "texture2D_"},
        {"Return", "Return"},
        {"POSITION", "POSITION_"},
        {"TEXCOORD0", "TEXCOORD0_"},
        {"COLOR", "COLOR_"},
        {"position", "position"},
        {"caf\xc3\xa9", "caf_"},
        {"\xe6\x9c\xa8\xe7\x9b\xae", "_"},
        {"float5", "float5"},
        {"a\nb", "a_b"},
        {"3", "_3"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ToSafeCgName(c.Text), c.Name);
        EXPECT_TRUE(ShaderNode::IsValidCgName(ToSafeCgName(c.Text)));
        EXPECT_FALSE(IsReservedCgWord(ToSafeCgName(c.Text)));
    }
}

TEST(CgNames, NoTwoNamesAreOne)
{
    CgNames names;
    names.Take("MoxSrgbToLinear");
    EXPECT_EQ(names.Claim("a-b"), "a_b");
    EXPECT_EQ(names.Claim("a_b"), "a_b_2");
    EXPECT_EQ(names.Claim("a_b"), "a_b_3");
    EXPECT_EQ(names.Claim("a_b_2"), "a_b_2_2");
    EXPECT_EQ(names.Claim("MoxSrgbToLinear"), "MoxSrgbToLinear_2");
    EXPECT_EQ(names.Claim("float"), "float_");
    EXPECT_EQ(names.Claim("float_"), "float__2");
}

} // namespace
