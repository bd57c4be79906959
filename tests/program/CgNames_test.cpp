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
        {"texCUBEproj", "texCUBEproj_"},
        {"f1tex1Dlod2", "f1tex1Dlod2_"},
        {"tex2DProj", "tex2DProj"},
        {"unpack_4ubyte", "unpack_4ubyte_"},
        {"float4x5", "float4x5"},
        {"int1x", "int1x"},
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

/// Names come from documents, in which a text may be very long.
TEST(CgNames, LengthOfANameUsesNoStack)
{
    const std::string name = "tex2D" + std::string(2'000'000, 'a');
    EXPECT_EQ(ToSafeCgName(name), name + "_");
}

TEST(CgNames, EqualNamesCostNoMoreThanOthers)
{
    CgNames names;
    std::string last;
    for (int i = 0; i < 200'000; ++i)
        last = names.Claim("mulCode");
    EXPECT_EQ(last, "mulCode_200000");
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
