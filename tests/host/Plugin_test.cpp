#include "mox/authoring/GuiNode.h"
#include "mox/host/HostError.h"
#include "mox/host/Plugin.h"
#include "mox/host/PluginSet.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <exception>
#include <filesystem>
#include <limits>

using namespace Mox;

namespace {

const std::filesystem::path corePlugin = MOX_CORE_PLUGIN;

bool IsLoaded(const std::filesystem::path& file)
{
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library)
        dlclose(library);
    return library != nullptr;
}

TEST(Plugin, MakesWhatItLists)
{
    const Host::Plugin plugin(corePlugin);
    for (const auto& row : plugin.Types()) {
        const auto node = plugin.CreateNode(row.TypeName).Handle();
        EXPECT_EQ(node->GetType(), row.TypeName);
        EXPECT_EQ(node->Properties->Version,
                  row.TypeName == "CoreDefault" ? std::numeric_limits<std::int32_t>::max() : 0);
    }
    for (const std::string type : {"coremaths", "Maths", ""})
        EXPECT_EQ(HostFailureOf([&] { plugin.CreateNode(type); }),
                  "cannot create \"" + type + "\" node");
}

TEST(Plugin, GivesNoEmptyNode)
{
    const auto file = MOX_ODD_PLUGIN_FOLDER / std::filesystem::path("odd_no_node.so");
    EXPECT_EQ(HostFailureOf([&] { Host::Plugin(file).CreateNode("Odd"); }),
              "the plug-in returned no node of the type \"Odd\"");
}

/// A library is unloaded after its last node, and errors outlive it.
TEST(Plugin, StaysLoadedForItsNodes)
{
    const std::pair<std::filesystem::path, std::string> plugins[] = {
        {MOX_CORE_PLUGIN, "CoreMaths"}, {MOX_SURFACE_PLUGIN, "SurfaceFrame"}};
    for (const auto& [file, type] : plugins) {
        if (IsLoaded(file))
            GTEST_SKIP() << "another test of this process keeps the plug-in loaded";
        std::exception_ptr kept;
        boost::shared_ptr<Materials::GuiNode> node;
        {
            const Host::Plugin plugin(file);
            node = plugin.CreateNode(type).Handle();
            try {
                plugin.CreateNode("nothing");
            } catch (const Host::HostError&) {
                kept = std::current_exception();
            }
        }
        EXPECT_TRUE(IsLoaded(file));
        EXPECT_EQ(node->GetType(), type);
        node.reset();
        EXPECT_FALSE(IsLoaded(file));
        EXPECT_EQ(HostFailureOf([&] { std::rethrow_exception(kept); }),
                  "cannot create \"nothing\" node");
    }
}

TEST(Plugin, PlaceholderTakesAnyVersionAndRefusesToExport)
{
    const Host::Plugin plugin(corePlugin);
    const auto node = plugin.CreateNode("CoreDefault").Handle();
    EXPECT_EQ(node->GetTitle(), "Default?");
    EXPECT_EQ(node->Description->GetString(), "");
    const auto stored = plugin.CreateNode("CoreMaths").Handle();
    stored->SetName("lost");
    stored->Properties->Version = std::numeric_limits<std::int32_t>::max();
    node->LoadProperties(stored->Properties);
    EXPECT_EQ(node->GetType(), "CoreMaths");
    EXPECT_EQ(node->GetTitle(), "lost?");
    EXPECT_EQ(node->Properties->Properties.size(), 8u);
    EXPECT_EQ(node->Description->GetString(),
              "This node has been created as a placeholder because a node of type \"CoreMaths\" "
              "could not be created. You need to either reload this material using the correct "
              "plug-in DLLs or replace this node with alternatives.");
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    EXPECT_EQ(FailureOf([&] { node->GenerateShader(generator); }),
              "cannot export as the node \"lost\" cannot be properly created. Please either get "
              "the DLL that can load this node or replace with alternatives.");
    EXPECT_FALSE(node->HasBinding());
}

TEST(Plugin, WhatIsNoPluginIsRefused)
{
    const struct
    {
        std::filesystem::path File;
        std::string Message; ///< or its beginning, if followed by the dynamic loader's own message
    } cases[] = {
        {"nowhere.so", "cannot be loaded as a plug-in: "},
        {__FILE__, "cannot be loaded as a plug-in: "},
        {MOX_PLUGIN_FOLDER, "cannot be loaded as a plug-in: "},
        {MOX_MATERIALS_LIBRARY, "is not a plug-in: it does not export GetMaterialLibVersion"},
        {"odd_version.so", "has interface version 4, expected version 5"},
        {"odd_version_throws.so", "GetMaterialLibVersion: failed without a message"},
        {"odd_no_factory_export.so", "is not a plug-in: it does not export CreateNodeFactory"},
        {"odd_null.so", "returned no factory"},
        {"odd_own_failure.so", "CreateNodeFactory: an exception of the module's own"},
        {"odd_symbol.so", "cannot be loaded as a plug-in: "},
    };
    for (const auto& [name, message] : cases) {
        const bool isOdd = name.string().starts_with("odd_");
        const auto file = isOdd ? MOX_ODD_PLUGIN_FOLDER / name : name;
        const std::string failure =
            HostFailureOf([&file = file] { const Host::Plugin plugin(file); });
        const std::string expected = file.string() + ": " + message;
        EXPECT_EQ(message.ends_with(": ") ? failure.substr(0, expected.size()) : failure, expected);
        EXPECT_EQ(failure.find('\n'), std::string::npos) << failure;
        EXPECT_FALSE(IsLoaded(file) && isOdd) << name;
    }
}

} // namespace
