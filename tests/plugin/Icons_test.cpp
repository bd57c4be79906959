#include "mox/host/Icon.h"
#include "mox/host/Plugin.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <string_view>

using namespace Mox;

namespace {

constexpr std::size_t side = 32;

struct ExpectedIcon
{
    std::size_t Colours; ///< with the transparent one
    std::size_t KeyLength;
    std::string Base; ///< the colour that follows the transparent one
};

const std::map<std::string, ExpectedIcon> expectedIcons = {
    {"CoreVertexColour", {443, 2, "#FDCFFD"}},
    {"CoreUv", {233, 2, "#CFCFFC"}},
    {"CoreTexture", {632, 2, "#EEF48F"}},
    {"CoreConstant", {129, 2, "#CDF5CD"}},
    {"CoreMaths", {265, 2, "#F59090"}},
    {"CoreSwizzle", {230, 2, "#9090F5"}},
    {"CoreLayerBlend", {12, 1, "#71B631"}},
    {"CoreAnimatedUv", {258, 2, "#C1ACB7"}},
    {"Surface", {240, 2, "#FFB24D"}},
    {"SurfaceFacingRatio", {200, 2, "#99E6E6"}},
    {"SurfaceTime", {160, 2, "#99E6E6"}},
    {"SurfaceFrame", {160, 2, "#99E6E6"}},
    {"SurfaceWorldPosition", {200, 2, "#99E6E6"}},
    {"SurfaceWorldNormal", {200, 2, "#99E6E6"}},
    {"SurfaceViewDirection", {200, 2, "#99E6E6"}},
};

bool IsUpperCaseColour(std::string_view text)
{
    return text.size() == 7 && text[0] == '#' &&
           text.find_first_not_of("0123456789ABCDEF", 1) == text.npos;
}

/// The colour of a decoded pixel, as tables have it.
std::string ColourOf(const std::uint8_t* pixel)
{
    char text[] = "#RRGGBB";
    std::snprintf(text, sizeof(text), "#%02X%02X%02X", pixel[0], pixel[1], pixel[2]);
    return pixel[3] == 0 ? "None" : text;
}

void CheckIcon(const char* const* table, const ExpectedIcon& expected)
{
    const std::size_t keyLength = expected.KeyLength;
    ASSERT_EQ(std::string(table[0]),
              "32 32 " + std::to_string(expected.Colours) + " " + std::to_string(keyLength));
    std::set<std::string> declared;
    for (std::size_t i = 0; i < expected.Colours; ++i) {
        const std::string_view text = table[1 + i];
        ASSERT_GT(text.size(), keyLength + 3) << text;
        const std::string_view colour = text.substr(keyLength + 3);
        EXPECT_EQ(text.substr(keyLength, 3), "\tc ");
        EXPECT_TRUE(i == 0 ? colour == "None" : IsUpperCaseColour(colour)) << text;
        EXPECT_EQ(i == 0, text.find_first_not_of(' ') == keyLength) << text;
        EXPECT_TRUE(declared.emplace(colour).second) << "colour twice: " << text;
    }
    EXPECT_EQ(std::string_view(table[2]).substr(keyLength + 3), expected.Base);
    for (std::size_t y = 0; y < side; ++y)
        EXPECT_EQ(std::string_view(table[1 + expected.Colours + y]).size(), side * keyLength) << y;

    const Host::Picture icon = Host::DecodeXpm(table);
    ASSERT_EQ(icon.Width, side);
    ASSERT_EQ(icon.Height, side);
    std::set<std::string> used;
    for (std::size_t i = 0; i < icon.Pixels.size(); i += 4)
        used.insert(ColourOf(&icon.Pixels[i]));
    EXPECT_EQ(used, declared);
}

TEST(Icons, EveryTableIsWellFormedAndDecodes)
{
    std::size_t count = 0;
    for (const char* file : {MOX_CORE_PLUGIN, MOX_SURFACE_PLUGIN}) {
        const Host::Plugin plugin(file);
        for (const auto& row : plugin.Descriptions()) {
            SCOPED_TRACE(row.TypeName);
            const auto expected = expectedIcons.find(row.TypeName);
            ASSERT_EQ(row.Icon != nullptr, expected != expectedIcons.end());
            if (!row.Icon)
                continue;
            ++count;
            CheckIcon(row.Icon, expected->second);
        }
    }
    EXPECT_EQ(count, expectedIcons.size());
}

} // namespace
