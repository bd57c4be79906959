#include "mox/Text.h"
#include "mox/bindings/Material.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Plugin.h"
#include "tests/support/Failure.h"
#include "tests/support/NodeText.h"
#include "tests/support/Session.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Materials;

namespace {

/// Each line changes settings of the node that the last line with a type and a property created.
TEST(NodeTransition, PortsAndFlagsFollowTheSettings)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    boost::shared_ptr<GuiNode> node;
    std::string watched;
    ExpectSession("plugins/core/transitions.txt", [&](const std::string& line) {
        if (line.starts_with("Core")) {
            const std::size_t comma = line.find(", ");
            node = plugin.CreateNode(line.substr(0, comma)).Handle();
            watched = line.substr(comma + 2);
        } else {
            ApplySettings(*node, line);
            ResolveAlone(*node, "*", 3, ComponentType::Half);
        }
        const std::string failure = FailureOf([&] { node->UpdatePorts({}); });
        for (const auto* ports : {&node->InputPorts, &node->OutputPorts}) {
            for (const GuiPort& port : *ports)
                EXPECT_FALSE(port.Connected || port.CountKnown != port.CountFixed)
                    << line << ": " << port.Name;
        }
        return Compose(failure == "no failure" ? "" : Compose("  failure: ", failure, "\n"),
                       node->ForegroundColour[0] == 0.6f ? "  grey\n" : "", DescribeState(*node),
                       "  \"", watched, "\" ", Host::FormatValue(*node->Properties->Get(watched)),
                       "\n");
    });
}

TEST(NodeTransition, BindingOfAVectorFollowsTheProperty)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const auto node = plugin.CreateNode("CoreConstant").Handle();
    ApplySettings(*node, "Constant Type=Vector; Component Count=6");
    EXPECT_NE(DescribeBindings(*node).find("count=\"6\" tag=\"Constant\" gui=\"slider\" "
                                           "min=\"0, 0, 0, 0, 0, 0\""),
              std::string::npos);
    for (const char* count : {"Component Count=0", "Component Count=-1"}) {
        ApplySettings(*node, count);
        EXPECT_EQ(FailureOf([&] { node->CreateBindings(boost::make_shared<Material>()); }),
                  "component count must be between 2 and 4");
    }
}

TEST(NodeTransition, LayerBlendKeepsItsPorts)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const auto node = plugin.CreateNode("CoreLayerBlend").Handle();
    node->InputPorts.front().Connected = true;
    ApplySettings(*node, "Mode=Screen");
    node->UpdatePorts({});
    EXPECT_TRUE(node->InputPorts.front().Connected);
    EXPECT_EQ(node->GetTitle(), "Screen");
}

} // namespace
