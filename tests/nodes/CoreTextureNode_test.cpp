#include "mox/bindings/Material.h"
#include "mox/host/Plugin.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Failure.h"
#include "tests/support/NodeText.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using NodeHandle = boost::shared_ptr<GuiNode>;

class CoreTextureNodeTest : public testing::Test
{
protected:
    NodeHandle Create(const std::string& name, const NodeHandle& reference = {}) const
    {
        NodeHandle node = _plugin.CreateNode("CoreTexture");
        node->SetName(name);
        node->Properties->Get("Reference")->Node = reference;
        node->UpdatePorts({});
        return node;
    }

private:
    const Host::Plugin _plugin{MOX_CORE_PLUGIN};
};

TEST_F(CoreTextureNodeTest, ReferringNodeSharesNameAndLagsInSettings)
{
    const NodeHandle c = Create("c");
    const NodeHandle b = Create("b", c);
    const NodeHandle a = Create("a", b);
    ApplySettings(*c, "Colour Type=Vector");
    c->UpdatePorts({});
    a->UpdatePorts({});
    EXPECT_EQ(a->GetTitle(), "c");
    EXPECT_EQ(a->Properties->Get("Colour Type")->GetEnum(), "Colour") << "b has not copied it yet";
    b->UpdatePorts({});
    a->UpdatePorts({});
    EXPECT_EQ(a->Properties->Get("Colour Type")->GetEnum(), "Vector");
    EXPECT_EQ(a->ForegroundColour[2], 0.6f);
    EXPECT_FALSE(a->HasBinding());
    EXPECT_EQ(DescribeState(*a), "  in  in_uv \"uv\" x2 float\n"
                                 "  out out_colour \"rgba\" x4\n"
                                 "  locked \"Texture Type\" \"Colour Type\" \"Alpha\" \"sRGB\" "
                                 "\"Basic Colour\"\n");
    EXPECT_FALSE(a->Description->Editable);
    EXPECT_TRUE(a->Name->Editable);

    ApplySettings(*c, "Colour Type=Colour");
    c->UpdatePorts({});
    EXPECT_GE(c->FindOutputPort("out_alpha"), 0) << "alpha stays true after a vector";
    EXPECT_EQ(DescribeBindings(*a), "no binding\n");
}

TEST_F(CoreTextureNodeTest, CircleOfReferencesIsAFailureThatNamesTheNode)
{
    const NodeHandle a = Create("a");
    const NodeHandle b = Create("b", a);
    const NodeHandle outside = Create("outside", b);
    a->Properties->Get("Reference")->Node = b;
    const auto message = [](const char* name) {
        return "node \"" + std::string(name) +
               "\" (CoreTexture): its chain of references closes into a circle";
    };
    EXPECT_EQ(FailureOf([&] { a->GetTitle(); }), message("a"));
    EXPECT_EQ(FailureOf([&] { outside->GetTitle(); }), message("outside"));
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    EXPECT_EQ(FailureOf([&] { outside->GenerateShader(generator); }), message("outside"));
    const auto material = boost::make_shared<Material>();
    outside->CreateBindings(material);
    EXPECT_TRUE(material->Bindings.empty());
    a->Properties->Get("Reference")->Node = a;
    EXPECT_EQ(FailureOf([&] { a->GetTitle(); }), message("a"));
    a->UpdatePorts({});
    a->Properties->Get("Reference")->Node.reset();
}

TEST_F(CoreTextureNodeTest, LettingGoOfAReferenceKeepsTheSettings)
{
    const NodeHandle source = Create("source");
    ApplySettings(*source, "Colour Type=Normal; Alpha=true; Texture Type=1D; Basic Colour=true");
    source->UpdatePorts({});
    const NodeHandle node = Create("node", source);
    node->Properties->Get("Reference")->Node.reset();
    node->UpdatePorts({});
    EXPECT_EQ(DescribeState(*node), "  in  in_uv \"u\" x1 float\n"
                                    "  out out_colour \"normal\" x3\n"
                                    "  out out_alpha \"alpha\" x1\n"
                                    "  hidden \"sRGB\" \"Basic Colour\"\n");
    EXPECT_TRUE(node->Description->Editable);
    EXPECT_EQ(node->ForegroundColour[0], 0.0f);
    EXPECT_EQ(node->GetTitle(), "node");
    EXPECT_TRUE(node->HasBinding());
}

TEST_F(CoreTextureNodeTest, LongChainOfReferences)
{
    const NodeHandle end = Create("end");
    NodeHandle last = end;
    for (int i = 0; i < 100000; ++i)
        last = Create("link", last);
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
