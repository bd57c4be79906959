#include "mox/host/Xpm.h"
#include "mox/nodefile/NodeFiles.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

using namespace Mox;

namespace {

constexpr std::size_t side = 32;

bool IsUpperCaseColour(std::string_view text)
{
    return text.size() == 7 && text[0] == '#' &&
           text.find_first_not_of("0123456789ABCDEF", 1) == text.npos;
}

/// @returns the first line of the table and the colour after the transparent one
std::string CheckIcon(const Host::XpmTable& table)
{
    const std::string& header = table[0];
    std::size_t width = 0, height = 0, colourCount = 0, keyLength = 0;
    std::istringstream(header) >> width >> height >> colourCount >> keyLength;
    EXPECT_TRUE(width == side && height == side) << header;
    for (std::size_t i = 0; i < colourCount; ++i) {
        const std::string_view text = table[1 + i];
        const std::string_view colour = text.substr(keyLength + 3);
        EXPECT_EQ(text.substr(keyLength, 3), "\tc ");
        EXPECT_TRUE(i == 0 ? colour == "None" : IsUpperCaseColour(colour)) << text;
        EXPECT_EQ(i == 0, text.find_first_not_of(' ') == keyLength) << text;
    }
    for (std::size_t y = 0; y < side; ++y)
        EXPECT_EQ(std::string_view(table[1 + colourCount + y]).size(), side * keyLength) << y;

    EXPECT_EQ(Host::DecodeXpm(table).Pixels.size(), side * side * 4);
    return header + " " + table[2].substr(keyLength + 3);
}

TEST(Icons, EveryTableIsWellFormedAndDecodes)
{
    const Host::NodeFiles files(TestPlugins());
    std::string text;
    for (const Host::Plugin& plugin : TestPlugins().Plugins()) {
        for (const Host::PluginType& type : plugin.Types()) {
            SCOPED_TRACE(type.TypeName);
            const Host::XpmTable icon = files.FindIcon(type);
            text += type.TypeName + ": " + (icon.empty() ? "none" : CheckIcon(icon)) + "\n";
        }
    }
    ExpectGolden("plugins/core/icons.txt", text);
}

} // namespace
