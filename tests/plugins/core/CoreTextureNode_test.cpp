#include "mox/Text.h"
#include "mox/host/Plugin.h"
#include "tests/support/Failure.h"
#include "tests/support/NodeText.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using NodeHandle = boost::shared_ptr<GuiNode>;

NodeHandle& ReferenceOf(GuiNode& node)
{
    return node.Properties->Get("Reference")->Node;
}

std::string Describe(GuiNode& node)
{
    std::string title;
    const std::string failure = FailureOf([&] { title = node.GetTitle(); });
    if (failure != "no failure")
        return Compose("  ", failure, "\n  ", DescribeShader(node), "  ", DescribeBindings(node));
    return Compose("  title ", title, node.ForegroundColour[2] == 0.6f ? ", grey" : "",
                   node.Description->Editable ? "" : ", description locked",
                   node.HasBinding() ? "" : ", no binding", "\n", DescribeState(node));
}

/// Each line creates a node, changes its reference or its settings, and updates it:
///     a
///     b -> a
///     b ->
///     b Alpha=true
TEST(CoreTextureNode, References)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    std::map<std::string, NodeHandle> nodes;
    ExpectSession("plugins/core/references.txt", [&](const std::string& line) {
        const std::string name = line.substr(0, line.find(' '));
        const std::string rest = line.substr(std::min(name.size() + 1, line.size()));
        NodeHandle& node = nodes[name];
        if (!node) {
            node = plugin.CreateNode("CoreTexture").Handle();
            node->SetName(name);
        }
        if (rest == "->")
            ReferenceOf(*node).reset();
        else if (rest.starts_with("-> "))
            ReferenceOf(*node) = nodes.at(rest.substr(3));
        else
            ApplySettings(*node, rest);
        node->UpdatePorts({});
        return Describe(*node);
    });
    for (const auto& [name, node] : nodes)
        ReferenceOf(*node).reset(); // otherwise nodes in a cycle would keep each other alive
}

/// A plug-in may offer the type but fail to create the node.
TEST(CoreTextureNode, ReferenceToAPlaceholderForATexture)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const NodeHandle placeholder = plugin.CreateNode("CoreDefault").Handle();
    placeholder->Type->SetString("CoreTexture");
    const NodeHandle near = plugin.CreateNode("CoreTexture").Handle();
    const NodeHandle far = plugin.CreateNode("CoreTexture").Handle();
    near->SetName("near");
    ReferenceOf(*near) = placeholder;
    ReferenceOf(*far) = near;
    const auto* expected = "node \"near\" (CoreTexture): it refers to node \"Default\" "
                           "(CoreTexture), which is a placeholder and not a texture node";
    EXPECT_EQ(FailureOf([&] { near->UpdatePorts({}); }), expected);
    EXPECT_EQ(FailureOf([&] { far->GetTitle(); }), expected);
}

TEST(CoreTextureNode, AlphaWithoutItsPortIsNotUsed)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const NodeHandle node = plugin.CreateNode("CoreTexture").Handle();
    ApplySettings(*node, "Alpha=true");
    EXPECT_EQ(DescribeBindings(*node).find("using_alpha"), std::string::npos);
}

TEST(CoreTextureNode, LongChainOfReferences)
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    const NodeHandle end = plugin.CreateNode("CoreTexture").Handle();
    end->SetName("end");
    NodeHandle last = end;
    for (int i = 0; i < 100000; ++i) {
        const NodeHandle node = plugin.CreateNode("CoreTexture").Handle();
        ReferenceOf(*node) = last;
        node->UpdatePorts({});
        last = node;
    }
    EXPECT_EQ(last->GetTitle(), "end");
    ResolveAlone(*last, "in_uv", 2, ComponentType::Half);
    EXPECT_NE(DescribeShader(*last).find("uniform parameter \"end\" (sampler2D)"),
              std::string::npos);
    EXPECT_EQ(DescribeBindings(*last), "no binding\n");
    EXPECT_NE(DescribeBindings(*end).find("tag=\"end\""), std::string::npos);
    last.reset();
    EXPECT_EQ(end.use_count(), 1) << "the whole chain has gone";
}

} // namespace
