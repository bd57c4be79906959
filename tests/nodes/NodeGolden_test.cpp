#include "mox/Text.h"
#include "mox/host/Plugin.h"
#include "tests/support/Failure.h"
#include "tests/support/Golden.h"
#include "tests/support/NodeText.h"

#include <gtest/gtest.h>

#include <locale>
#include <map>

using namespace Mox;
using namespace Mox::Materials;

namespace {

struct Case
{
    const char* Type;
    const char* Settings;
    const char* Connected; ///< ports with an edge, "*" for all
    std::int32_t Width = 3;
    ComponentType Precision = ComponentType::Half;
};

constexpr auto f = ComponentType::Float;

const Case cases[] = {
    {"CoreLayerBlend", "", "in_value1 in_value2"},
    {"CoreLayerBlend", "Mode=Lighten", "*"},
    {"CoreLayerBlend", "Mode=Multiply", "*"},
    {"CoreLayerBlend", "Mode=Screen", "*"},
    {"CoreLayerBlend", "Mode=Overlay", "*"},
    {"CoreLayerBlend", "Mode=Colour Dodge", "in_value1", 4},
    {"CoreLayerBlend", "Mode=Colour Burn", "in_value1", 1, f},
    {"CoreLayerBlend", "Mode=Hard Light", "*", 1},
    {"CoreLayerBlend", "Mode=Vivid Light", "*", 3, f},
    {"CoreLayerBlend", "Mode=Difference", "in_value2", 2, f},
    {"CoreLayerBlend", "Mode=Exclusion", ""},

    {"CoreMaths", "Function=Lerp", "in_value1", 3, f},
    {"CoreMaths", "Function=Fresnel", "in_facing"},
    {"CoreMaths", "Function=Invert; Default Value 1=0.1", "", 1, f},

    {"CoreSwizzle", "", "in_vec", 3, f},
    {"CoreSwizzle", "Vector Type=Uv", "*"},
    {"CoreSwizzle", "Vector Type=Vector; Component Count=4", "*"},
    {"CoreSwizzle", "Vector Type=Vector; Component Count=2", ""},
    {"CoreSwizzle", "Vector Type=Vector; Component Count=5", "*"},
    {"CoreSwizzle", "Vector Type=Vector; Component Count=1", "*"},
    {"CoreSwizzle", "Reverse=true", "in_x in_z"},
    {"CoreSwizzle", "Vector Type=Uv; Reverse=true", "", 2, f},
    {"CoreSwizzle", "Vector Type=Vector; Component Count=4; Reverse=true", "*"},

    {"CoreConstant", "", "read"},
    {"CoreConstant", "Default Colour=1 0.5 0; Basic Colour=true", "read", 3, f},
    {"CoreConstant", "Alpha=true", "read"},
    {"CoreConstant", "Alpha=true; Default Alpha=0.25", "read alpha"},
    {"CoreConstant", "Constant Type=Component", "red"},
    {"CoreConstant", "Constant Type=Component; Alpha=true", "*", 1, f},
    {"CoreConstant", "Constant Type=Scalar; Basic Colour=true", "read"},
    {"CoreConstant", "Constant Type=Vector; Component Count=3; Max Scalar=2.5", "read"},
    {"CoreConstant", "Constant Type=Vector; Component Count=2; Alpha=true", "read"},
    {"CoreConstant", "Constant Type=Vector; Component Count=5", "read"},
    {"CoreConstant", "Lock=true; Default Colour=1 0.5 0; Basic Colour=true", "read", 3, f},
    {"CoreConstant", "Lock=true; Alpha=true; Default Alpha=0.8", "*"},
    {"CoreConstant", "Lock=true; Alpha=true", "read"},
    {"CoreConstant", "Lock=true; Constant Type=Component; Alpha=true; Default Colour=0 1 1e-7",
     "*"},
    {"CoreConstant", "Lock=true; Constant Type=Scalar; Default Scalar=1234567", "*"},
    {"CoreConstant", "Lock=true; Constant Type=Vector; Default Scalar=0.5", "*"},
    {"CoreConstant", "Name=two words", "*"},
    {"CoreConstant", "Description=Says what; BindingGroup=Group; Help Url=http://a", "*"},

    {"CoreTexture", "", ""},
    {"CoreTexture", "", "in_uv"},
    {"CoreTexture", "Basic Colour=true", "in_uv", 2, f},
    {"CoreTexture", "sRGB=false", "in_uv"},
    {"CoreTexture", "Alpha=true", "in_uv out_colour"},
    {"CoreTexture", "Alpha=true", "*"},
    {"CoreTexture", "Texture Type=1D; Alpha=true", "*", 1, f},
    {"CoreTexture", "Colour Type=Normal; Basic Colour=true", "*"},
    {"CoreTexture", "Colour Type=Normal; Alpha=true", "*", 2, f},
    {"CoreTexture", "Colour Type=Component", "*"},
    {"CoreTexture", "Colour Type=Component; Alpha=true", "*"},
    {"CoreTexture", "Colour Type=Vector", "*"},
    {"CoreTexture", "Colour Type=DXT5 Normal; Basic Colour=true", "*"},
    {"CoreTexture", "Name=2nd", "*"},
    {"CoreTexture", "Description=Says what; BindingGroup=Group; Help Url=http://a", "*"},

    {"CoreAnimatedUv", "", "*"},
    {"CoreAnimatedUv", "Rows=3; Columns=7; Execution Level=Fragment", "in_uv", 2, f},
    {"CoreAnimatedUv", "Mode=Advanced", "*"},
    {"CoreAnimatedUv", "Mode=Advanced; Rows=0; Columns=-2", ""},

    {"CoreUv", "", "*"},
    {"CoreUv", "Name=mapping; Primary=true", "*", 2, f},
    {"CoreUv", "Name=a-b", "*"},

    {"CoreVertexColour", "", "*"},
    {"CoreVertexColour", "Alpha=true", "out_colour"},
    {"CoreVertexColour", "Alpha=true", "*", 3, f},
    {"CoreVertexColour", "Colour Type=Component", "*"},
    {"CoreVertexColour", "Colour Type=Component; Alpha=true", "*"},
    {"CoreVertexColour", "Colour Type=Vector; Description=Painted", "*"},
    {"CoreVertexColour", "Name=", "*"},
};

/// From the type of a node to what it writes in each of its cases.
std::map<std::string, std::string> DescribeCases()
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    std::map<std::string, std::string> texts;
    for (const Case& c : cases) {
        const auto node = plugin.CreateNode(c.Type);
        ApplySettings(*node, c.Settings);
        const std::string failure = FailureOf([&] { node->UpdatePorts({}); });
        ResolveAlone(*node, c.Connected, c.Width, c.Precision);
        const bool isColourful = node->ForegroundColour[0] != 0.0f;
        texts[c.Type] += Compose(
            "== ", *c.Settings ? c.Settings : "as created",
            " | edges: ", *c.Connected ? c.Connected : "none", " | ",
            ShaderType(c.Precision, c.Width, 1, 1).Format(), "\n  title ", node->GetTitle(),
            isColourful ? ", grey" : "", "\n", DescribeState(*node),
            failure == "no failure" ? DescribeShader(*node) : Compose("failure: ", failure, "\n"));
        if (failure == "no failure" && node->HasBinding())
            texts[c.Type] += DescribeBindings(*node);
        texts[c.Type] += "\n";
    }
    return texts;
}

TEST(NodeGolden, WhatEveryNodeWritesInEveryMode)
{
    for (const auto& [type, text] : DescribeCases())
        ExpectGolden("nodes/" + type + ".txt", text);
}

TEST(NodeGolden, GlobalLocaleChangesNothing)
{
    const auto expected = DescribeCases();
    const std::locale before = std::locale::global(std::locale("de_DE.UTF-8"));
    const auto texts = DescribeCases();
    std::locale::global(before);
    EXPECT_EQ(texts, expected) << "a decimal comma or grouped digits reached a text";
}

} // namespace
