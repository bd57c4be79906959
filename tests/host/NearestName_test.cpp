#include "mox/host/NearestName.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

TEST(NearestName, IsFoundByNameAndLabel)
{
    const std::vector<RightName> ports = {
        {"out_colour", "normal"}, {"out_alpha", "alpha"}, {"out_roughness", "roughness"}};
    EXPECT_EQ(
        SuggestName("out_normal", ports),
        "; did you mean \"out_colour\" (normal)? Also available: \"out_alpha\", \"out_roughness\"");
    EXPECT_EQ(
        SuggestName("Out_Alhpa", ports),
        "; did you mean \"out_alpha\"? Also available: \"out_colour\" (normal), \"out_roughness\"");
    EXPECT_EQ(SuggestName("out_rough", {{"out_roughness"}}), "; did you mean \"out_roughness\"?");
    EXPECT_EQ(SuggestName("in_uv", {{"out_roughness"}}), "; available: \"out_roughness\"");
    EXPECT_EQ(SuggestName("b", {{"a"}}), "; available: \"a\"") << "nothing in common";
    EXPECT_EQ(SuggestName("in_uv", {}), "");
    EXPECT_EQ(SuggestName(std::string(100000, 'a'), ports), "");
    EXPECT_EQ(SuggestName("zzzzz", std::vector<RightName>(13, {"x"})), "") << "too many to list";
}

} // namespace
