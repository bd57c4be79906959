#include "mox/Text.h"
#include "mox/bindings/Material.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Plugin.h"
#include "tests/support/Failure.h"
#include "tests/support/NodeText.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Materials;

namespace {

constexpr const char* badCount = "component count must be between 2 and 4";

/// One more change of settings on the node of the steps before, and what it must look like then.
struct Step
{
    const char* Settings;
    const char* Ports; ///< inputs, "->", outputs, each with its fixed count
    const char* Flags; ///< "-" before a hidden property, "!" before one that cannot be edited
    const char* Watched = "";           ///< the value of the watched property
    const char* Failure = "no failure"; ///< of UpdatePorts
};

std::string FormatPorts(const std::vector<GuiPort>& ports)
{
    std::string text;
    for (const GuiPort& port : ports)
        text += Compose(port.Name, " ", port.CountFixed ? port.ComponentCount : 0, " ");
    return text;
}

std::string FormatFlags(const GuiNode& node)
{
    constexpr std::size_t standardProperties = 8;
    std::string text;
    const auto& properties = node.Properties->Properties;
    for (std::size_t i = standardProperties; i < properties.size(); ++i) {
        const GuiProperty& property = *properties[i];
        for (const char* mark : {property.Visible ? "" : "-", property.Editable ? "" : "!"})
            text += *mark ? Compose(text.empty() ? "" : ", ", mark, property.Name) : "";
    }
    return node.ForegroundColour[0] == 0.6f ? text + ", grey" : text;
}

/// Runs the steps one after another on a single new node.
void ExpectSteps(const char* type, const char* watched, std::initializer_list<Step> steps)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const auto node = plugin.CreateNode(type);
    for (const Step& step : steps) {
        SCOPED_TRACE(Compose(type, ": ", step.Settings));
        ApplySettings(*node, step.Settings);
        ResolveAlone(*node, "*", 3, ComponentType::Half);
        EXPECT_EQ(FailureOf([&] { node->UpdatePorts({}); }), step.Failure);
        EXPECT_EQ(FormatPorts(node->InputPorts) + "-> " + FormatPorts(node->OutputPorts),
                  step.Ports + std::string(" "));
        EXPECT_EQ(FormatFlags(*node), step.Flags);
        EXPECT_EQ(Host::FormatValue(*node->Properties->Get(watched)), step.Watched);
        for (const auto* ports : {&node->InputPorts, &node->OutputPorts}) {
            for (const GuiPort& port : *ports)
                EXPECT_FALSE(port.Connected || port.CountKnown != port.CountFixed) << port.Name;
        }
    }
}

TEST(NodeTransition, Swizzle)
{
    ExpectSteps(
        "CoreSwizzle", "Component Count",
        {
            {"", "in_vec 3 -> out_x 1 out_y 1 out_z 1", "!Component Count", "3"},
            {"Vector Type=Vector", "in_vec 3 -> out_x 1 out_y 1 out_z 1", "", "3"},
            {"Component Count=5", "->", "", "5", badCount},
            {"Component Count=4", "in_vec 4 -> out_x 1 out_y 1 out_z 1 out_w 1", "", "4"},
            {"Reverse=true", "in_x 1 in_y 1 in_z 1 in_w 1 -> out_vec 4", "", "4"},
            {"Vector Type=Uv", "in_x 1 in_y 1 -> out_vec 2", "!Component Count", "2"},
            {"Vector Type=Vector; Component Count=1", "->", "", "1", badCount},
            {"Vector Type=Colour", "in_x 1 in_y 1 in_z 1 -> out_vec 3", "!Component Count", "3"},
        });
}

TEST(NodeTransition, Constant)
{
    const char* colour = "-Component Count, -Min Scalar, -Max Scalar, -Default Scalar";
    const std::string noAlpha = Compose(colour, ", -Default Alpha");
    const std::string lockedColour = Compose(colour, ", -Basic Colour, grey");
    ExpectSteps(
        "CoreConstant", "Component Count",
        {
            {"", "-> read 3", noAlpha.c_str(), "4"},
            {"Alpha=true", "-> read 3 alpha 1", colour, "4"},
            {"Constant Type=Vector; Component Count=7; Lock=true", "->", colour, "7", badCount},
            {"Component Count=2", "-> read 2",
             "-Default Colour, -Alpha, -Default Alpha, -Basic Colour, grey", "2"},
            {"Constant Type=Component; Component Count=9", "-> red 1 green 1 blue 1 alpha 1",
             lockedColour.c_str(), "9"},
            {"Lock=false", "-> red 1 green 1 blue 1 alpha 1", colour, "9"},
            {"Constant Type=Scalar", "-> read 1",
             "-Component Count, -Default Colour, -Alpha, -Default Alpha, -Basic Colour", "9"},
            {"Constant Type=Vector", "->",
             "-Component Count, -Default Colour, -Alpha, -Default Alpha, -Basic Colour", "9",
             badCount},
        });
}

TEST(NodeTransition, Texture)
{
    ExpectSteps("CoreTexture", "Alpha",
                {
                    {"", "in_uv 2 -> out_colour 3", "", "false"},
                    {"Colour Type=Vector", "in_uv 2 -> out_colour 4", "!Alpha", "true"},
                    {"Colour Type=Colour", "in_uv 2 -> out_colour 3 out_alpha 1", "", "true"},
                    {"Colour Type=DXT5 Normal; Alpha=false", "in_uv 2 -> out_colour 3",
                     "!Alpha, -sRGB, -Basic Colour", "true"},
                    {"Colour Type=Normal", "in_uv 2 -> out_colour 3 out_alpha 1",
                     "-sRGB, -Basic Colour", "true"},
                    {"Texture Type=1D; Colour Type=Component; Alpha=false",
                     "in_uv 1 -> out_red 1 out_green 1 out_blue 1", "", "false"},
                });
}

TEST(NodeTransition, VertexColour)
{
    ExpectSteps("CoreVertexColour", "Alpha",
                {
                    {"", "-> out_colour 3", "", "false"},
                    {"Colour Type=Vector", "-> out_colour 4", "!Alpha", "true"},
                    {"Colour Type=Colour", "-> out_colour 3 out_alpha 1", "", "true"},
                    {"Alpha=false", "-> out_colour 3", "", "false"},
                    {"Colour Type=Component; Alpha=true",
                     "-> out_red 1 out_green 1 out_blue 1 out_alpha 1", "", "true"},
                });
}

TEST(NodeTransition, AnimatedUv)
{
    ExpectSteps(
        "CoreAnimatedUv", "Mode",
        {
            {"", "in_frame 1 in_uv 2 -> out_uv1 2 out_uv2 2 out_blend 1", "", "Basic"},
            {"Mode=Advanced",
             "in_frame 1 -> out_offset1 2 out_offset2 2 out_scale 2 "
             "out_blend 1",
             "", "Advanced"},
            {"Mode=Basic", "in_frame 1 in_uv 2 -> out_uv1 2 out_uv2 2 out_blend 1", "", "Basic"},
        });
}

TEST(NodeTransition, BindingOfAVectorFollowsTheProperty)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const auto node = plugin.CreateNode("CoreConstant");
    ApplySettings(*node, "Constant Type=Vector; Component Count=6");
    EXPECT_NE(DescribeBindings(*node).find("count=\"6\" tag=\"Constant\" gui=\"slider\" "
                                           "min=\"0, 0, 0, 0, 0, 0\""),
              std::string::npos);
    for (const char* count : {"Component Count=0", "Component Count=-1"}) {
        ApplySettings(*node, count);
        EXPECT_EQ(FailureOf([&] { node->CreateBindings(boost::make_shared<Material>()); }),
                  badCount);
    }
}

TEST(NodeTransition, LayerBlendKeepsItsPorts)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const auto node = plugin.CreateNode("CoreLayerBlend");
    node->InputPorts.front().Connected = true;
    ApplySettings(*node, "Mode=Screen");
    node->UpdatePorts({});
    EXPECT_TRUE(node->InputPorts.front().Connected);
    EXPECT_EQ(node->GetTitle(), "Screen");
}

} // namespace
