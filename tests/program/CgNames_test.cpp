#include "mox/program/CgNames.h"
#include "mox/program/ReservedWords.h"
#include "mox/shader/ShaderNode.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

TEST(CgNames, EveryTextBecomesALegalName)
{
    ExpectSession("program/names.txt", [](const std::string& text) {
        const std::string name = ToSafeCgName(text);
        EXPECT_TRUE(ShaderNode::IsValidCgName(name));
        EXPECT_FALSE(IsReservedWord(name));
        return name + "\n";
    });
    EXPECT_EQ(ToSafeCgName(""), "_");
}

/// Names come from documents, which may contain very long strings.
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
