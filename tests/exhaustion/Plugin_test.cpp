#include "mox/Text.h"
#include "mox/authoring/GuiNodeFactory.h"
#include "mox/bindings/Material.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/host/HostError.h"
#include "mox/host/Plugin.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/NodeModes.h"
#include "tests/support/NodeText.h"

#include <boost/dll/shared_library.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <memory>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using NodeHandle = boost::shared_ptr<GuiNode>;

constexpr const char* pluginFiles[] = {MOX_CORE_PLUGIN, MOX_SURFACE_PLUGIN};

/// Calls a function for each type of these plug-ins, with a function that creates a node.
template <class Call>
void ForEachType(Call call)
{
    for (const char* file : pluginFiles) {
        const Host::Plugin plugin(file);
        for (const Host::PluginType& row : plugin.Types()) {
            SCOPED_TRACE(row.TypeName);
            call([&] { return plugin.CreateNode(row.TypeName).Handle(); });
        }
    }
}

/// The same for each mode of each type.
template <class Call>
void ForEachMode(Call call)
{
    ForEachType([&](auto create) {
        for (const std::string& mode : CombineSettings(*create())) {
            SCOPED_TRACE(mode);
            call([&] {
                NodeHandle node = create();
                ApplySettings(*node, mode);
                return node;
            });
        }
    });
}

std::string DescribeNode(const NodeHandle& node)
{
    if (!node)
        return "none";
    std::string text = Compose(node->Describe(), "\n", DescribeState(*node));
    for (const auto& property : node->Properties->Properties)
        text += Compose(property->Name, "=", Host::FormatValue(*property), "\n");
    return text;
}

TEST(PluginExhaustion, FactoryWithoutMemoryIsNull)
{
    for (const char* file : pluginFiles) {
        const boost::dll::shared_library library(file);
        auto& create = library.get<GuiNodeFactory*()>("CreateNodeFactory");
        Allocations::FailAt(1, Allocations::Shortage::Lasting);
        const GuiNodeFactory* none = create();
        EXPECT_TRUE(Allocations::EndFailing()) << "the plug-in has another operator new";
        EXPECT_EQ(none, nullptr);
        const auto make = [&] {
            std::unique_ptr<GuiNodeFactory> factory(create());
            if (!factory)
                throw std::bad_alloc();
            return factory;
        };
        ExpectMade(make, [](const auto& factory) {
            std::string text;
            for (std::size_t i = 0; factory && i < factory->Descriptions.size(); ++i)
                text += factory->Descriptions[i].Label + "\n";
            return text;
        });
    }
}

TEST(PluginExhaustion, Create)
{
    ForEachType([](auto create) { ExpectMade(create, DescribeNode); });
}

TEST(PluginExhaustion, Load)
{
    const Host::Plugin keepsTheLibraryLoaded(MOX_CORE_PLUGIN);
    const auto load = [] {
        try {
            return std::make_unique<Host::Plugin>(MOX_CORE_PLUGIN);
        } catch (const Host::HostError& error) {
            // How the plug-in reports that it has no memory for a factory.
            EXPECT_EQ(error.Message, "returned no factory");
            throw std::bad_alloc();
        }
    };
    ExpectMade(load, [](const auto& loaded) { return loaded ? loaded->File().string() : ""; });
}

TEST(PluginExhaustion, UpdatePorts)
{
    ForEachMode([](auto make) {
        if (make()->InputPorts.empty() && make()->OutputPorts.empty())
            return;
        ExpectSurvival(
            [&] {
                auto node = make();
                for (auto* ports : {&node->InputPorts, &node->OutputPorts})
                    std::vector<GuiPort>().swap(*ports);
                return node;
            },
            [](const NodeHandle& node) {
                node->UpdatePorts({});
                // Allocates at least once, for types whose ports never change.
                const GuiPort atLeastOne(longText, "");
            },
            DescribeNode, ExpectUsable);
    });
}

TEST(PluginExhaustion, LoadProperties)
{
    ForEachType([](auto create) {
        const NodeHandle stored = create();
        for (const auto& property : stored->Properties->Properties) {
            if (property->Kind == GuiPropertyKind::String)
                property->Text = longText;
            property->Floats[0] = 0.5f;
        }
        ExpectSurvival(
            create, [&](const NodeHandle& node) { node->LoadProperties(stored->Properties); },
            DescribeNode, ExpectUsable);
    });
}

TEST(PluginExhaustion, GenerateShader)
{
    ForEachMode([](auto make) {
        const NodeHandle node = make();
        if (node->GetType() == "CoreDefault")
            return;
        node->UpdatePorts({});
        ResolveAlone(*node, "*", 3, ComponentType::Float);
        const auto generate = [&] {
            ShaderGraph graph;
            for (const auto& [name, type] : SurfaceValues())
                graph.InsertNode(ShaderNode::CreateInterfaceParameter(name, 0, type));
            return DescribeShader(*node, graph);
        };
        EXPECT_FALSE(generate().starts_with("failure"));
        ExpectText(generate);
    });
}

TEST(PluginExhaustion, CreateBindings)
{
    ForEachMode([](auto make) {
        const NodeHandle node = make();
        node->UpdatePorts({});
        if (!node->HasBinding())
            return;
        node->Description->SetString(longText);
        ExpectSurvival([] { return boost::make_shared<Material>(); },
                       [&](const auto& material) { node->CreateBindings(material); },
                       [](const auto& material) { return FormatBindings(*material); });
    });
}

/// An edge that no longer exists is reported as such, unless there is no memory for the message.
TEST(PluginExhaustion, EdgesThatHaveGone)
{
    const NodeHandle node = Host::Plugin(MOX_CORE_PLUGIN).CreateNode("CoreMaths").Handle();
    node->UpdatePorts({});
    ResolveAlone(*node, "", 3, ComponentType::Float);
    node->AddOutEdge(boost::make_shared<GuiEdge>());
    const auto generate = [&] {
        try {
            ShaderGraph graph;
            ShaderGraphGenerator generator(graph);
            node->GenerateShader(generator);
        } catch (const boost::bad_weak_ptr&) {
            return std::string("missed");
        }
        return std::string("not missed");
    };
    EXPECT_EQ(generate(), "missed");
    ExpectText(generate);
}

} // namespace
