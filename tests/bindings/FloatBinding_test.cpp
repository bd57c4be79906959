#include "mox/bindings/FloatBinding.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

using namespace Mox::Materials;

namespace {

FloatBinding Make(std::uint32_t count)
{
    return {StreamType::Float, "a", count};
}

TEST(FloatBinding, AColumnIsAbsentUntilOneOfItsValuesIsSet)
{
    FloatBinding binding = Make(3);
    binding.SetDefault(3, 1.0f);
    EXPECT_FALSE(binding.hasDefault);
    EXPECT_EQ(binding.GetDefaultText(), "");
    binding.SetDefault(0, 0.5f);
    EXPECT_EQ(binding.GetDefaultText(), "0.5, 0, 0");
    EXPECT_FALSE(binding.hasMin || binding.hasMax);
    binding.ranges[1].min = 7.0f;
    EXPECT_EQ(binding.GetMin(1), 0.0f);
    binding.SetMin(0, 2.0f);
    EXPECT_EQ(binding.GetMin(1), 7.0f);
    EXPECT_EQ(binding.GetMin(99), 0.0f);
    binding.SetMax(2, -1.5f);
    EXPECT_EQ(binding.GetMaxText(), "0, 0, -1.5");
    binding.SetMax(0, std::string("9"));
    EXPECT_EQ(binding.GetMax(0), 0.0f) << "the string form does nothing";
    EXPECT_EQ(binding.GetMaxString(2), "");
}

/// Each line contains a number of components and a string.
TEST(FloatBinding, TextReplacesAWholeColumn)
{
    ExpectSession("bindings/columns.txt", [](const std::string& line) {
        const std::size_t quote = line.find('"') + 1;
        FloatBinding binding = Make(std::stoul(line));
        binding.SetMinText(line.substr(quote, line.size() - quote - 1));
        const std::string text = binding.hasMin ? binding.GetMinText() + "\n" : "no column\n";
        binding.SetMinText("5");
        binding.SetMinText("1, x");
        const float kept = binding.GetCount() > 0 ? 5.0f : 0.0f;
        EXPECT_EQ(binding.GetMin(0), kept) << "a text that does not parse changes nothing";
        return text;
    });
}

TEST(FloatBinding, GrowingCopiesTheLastComponent)
{
    FloatBinding binding = Make(2);
    binding.SetDefaultText("1, 2");
    binding.SetMaxText("3, 4");
    binding.SetCount(4);
    EXPECT_EQ(binding.GetDefaultText(), "1, 2, 2, 2");
    EXPECT_EQ(binding.GetMaxText(), "3, 4, 4, 4");
    binding.SetCount(1);
    binding.SetCount(3);
    EXPECT_EQ(binding.GetDefaultText(), "1, 1, 1");
    binding.SetCount(0);
    EXPECT_EQ(binding.GetDefaultText(), "");
    EXPECT_EQ(binding.GetCount(), 0u);
    EXPECT_EQ(binding.count, 2u) << "the base keeps the number it was made with";
    binding.SetCount(2);
    EXPECT_EQ(binding.GetDefaultText(), "0, 0");
}

TEST(FloatBinding, NumbersDoNotFollowTheLocale)
{
    ASSERT_TRUE(std::setlocale(LC_ALL, "de_DE.UTF-8"));
    FloatBinding binding = Make(2);
    binding.SetDefaultText("0.5, 1234567");
    EXPECT_EQ(binding.GetDefaultText(), "0.5, 1.23457e+06");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "de_DE.UTF-8");
    std::setlocale(LC_ALL, "C");
}

TEST(FloatBinding, SplitStringGivesNoEmptyPieces)
{
    using Pieces = std::vector<std::string>;
    EXPECT_EQ(SplitString("", ','), Pieces{});
    EXPECT_EQ(SplitString(",,", ','), Pieces{});
    EXPECT_EQ(SplitString(",a,,b", ','), (Pieces{"a", "b"}));
    EXPECT_EQ(SplitString("a b", ' '), (Pieces{"a", "b"}));
}

} // namespace
