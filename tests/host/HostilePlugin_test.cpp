#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/document/Catalogue.h"
#include "mox/document/MaterialDiff.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <typeinfo>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

const std::filesystem::path hostilePlugin =
    MOX_ODD_PLUGIN_FOLDER / std::filesystem::path("hostile") / "hostile.so";

/// A material with a node of the given type and a value for the node's binding.
MaterialDocument MakeDocument(const std::string& type)
{
    MaterialDocument document;
    document.File = "h.xml";
    document.Nodes.push_back({"h", type, 0, {}, 3});
    document.Bindings.push_back({"float", "hostile", {{"default", "1"}}, 5, {}});
    return document;
}

/// Runs the steps of a host on a material and collects all messages.
class Pipeline
{
public:
    explicit Pipeline(const std::string& type)
    {
        PluginSet plugins;
        plugins.Load(MOX_CORE_PLUGIN);
        plugins.Load(hostilePlugin);
        Run(plugins, type);
    }

    /// The messages, one per line. The plug-in has been unloaded by the time they are read.
    const std::string& Messages() const { return _messages; }

private:
    template <class Step>
    void Try(Step step)
    {
        try {
            step();
        } catch (const HostError& error) {
            _messages += Compose(error.what(), "\n");
        } catch (const std::bad_alloc& error) {
            EXPECT_EQ(typeid(error), typeid(std::bad_alloc));
            _messages += "no memory\n";
        }
    }

    void Run(const PluginSet& plugins, const std::string& type)
    {
        const MaterialDocument document = MakeDocument(type);
        Try([&] {
            const PluginNode node = plugins.CreateNode(type);
            node.UpdatePorts({});
            FormatNodeFragment(node, "h");
        });
        Try([&] { DescribeDifferences(document, MakeDocument("CoreUv"), plugins); });
        ProblemList problems;
        Try([&] {
            MaterialGraph graph = LoadMaterial(document, plugins, problems);
            Try([&] { ResolveGraph(graph, problems); });
            Try([&] { graph.Nodes().begin()->Gui.GetTitle({}); });
            Try([&] { FormatBindings(CreateBindings(graph)); });
            Try([&] { UseBindings(graph); });
            Try([&] { CheckMaterial(graph, "h.xml", TestEnvironment(), nullptr, problems); });
        });
        for (const Problem& problem : problems.Problems())
            _messages += problem.Format() + "\n";
    }

    void UseBindings(const MaterialGraph& graph)
    {
        for (const PluginBinding& binding : graph.Nodes().begin()->Gui.CreateBindings({})) {
            Try([&] { binding.SetDefaultText("1"); });
            Try([&] { binding.GetDefaultText(); });
            Try([&] { binding.GetDefault(0); });
        }
    }

    std::string _messages;
};

/// Every operation fails in every way; each time, the host reports it and continues.
TEST(HostilePlugin, EveryFailureOfEveryOperationIsReported)
{
    const struct
    {
        std::string Fault;
        std::string Message;
    } thrown[] = {
        {"ShaderError", "a ShaderError"},
        {"string", "a string"},
        {"edge", "an edge was destroyed although the node still refers to it"},
        {"memory", "no memory"},
        {"exception", "an exception of its own"},
        {"silent", "failed without a message"},
        {"class", "failed without a message"},
        {"text", "failed without a message"},
        {"number", "failed without a message"},
    };
    const Plugin plugin(hostilePlugin);
    std::size_t count = 0;
    for (const PluginType& type : plugin.Types()) {
        SCOPED_TRACE(type.TypeName);
        const std::size_t hyphen = type.TypeName.find('-');
        const std::string operation = type.TypeName.substr(0, hyphen);
        const std::string fault = type.TypeName.substr(hyphen + 1);
        for (const auto& [name, message] : thrown) {
            if (name != fault)
                continue;
            ++count;
            const std::string messages = Pipeline(type.TypeName).Messages();
            EXPECT_NE(messages.find(message + "\n"), std::string::npos) << messages;
            const bool isOwn = message.starts_with("failed") || fault == "exception";
            EXPECT_EQ(messages.find(operation + " of the ") != std::string::npos, isOwn)
                << messages;
        }
    }
    EXPECT_EQ(count, 15 * std::size(thrown));
}

TEST(HostilePlugin, WhatIsNullIsReportedAndReplaced)
{
    for (const char* operation :
         {"UpdatePorts", "GetTitle", "ResolveComponentCounts", "ResolvePrecisions",
          "GenerateShader", "HasBinding", "CreateBindings", "LoadProperties"}) {
        for (const auto& [fault, lost] :
             {std::pair("bag", "its properties"), std::pair("property", "the property \""),
              std::pair("name", "the text of the property \"Name\""),
              std::pair("kind", "the text of the property \"Type\"")}) {
            const std::string messages = Pipeline(Compose(operation, "-", fault)).Messages();
            const std::string message = Compose(": the node lost ", lost);
            EXPECT_NE(messages.find(Compose(operation, " of the type \"")), std::string::npos)
                << messages;
            EXPECT_NE(messages.find(message), std::string::npos) << messages;
        }
    }
    for (const char* fault : {"bag", "property", "name", "kind"}) {
        const std::string messages = Pipeline(Compose("Create-", fault)).Messages();
        EXPECT_NE(messages.find("the node "), std::string::npos) << messages;
    }
    EXPECT_NE(Pipeline("Create-nothing").Messages().find("returned no node"), std::string::npos);
    EXPECT_NE(Pipeline("CreateBindings-nothing").Messages().find("a null binding"),
              std::string::npos);
}

TEST(HostilePlugin, FaultyRowsOfCataloguesAreRefused)
{
    const struct
    {
        const char* Fault;
        const char* Message;
    } cases[] = {
        {"label", "the label \"caf\xe9\" is not UTF-8"},
        {"type", "the type name \"\xff\" is not UTF-8"},
        {"library", "the library \"\xc3\" is not UTF-8"},
        {"null header", "type \"Faulty\": row 1 of the icon is missing"},
        {"null colour", "type \"Faulty\": row 3 of the icon is missing"},
        {"null row", "type \"Faulty\": row 4 of the icon is missing"},
        {"none", "no failure"},
    };
    for (const auto& [fault, message] : cases) {
        setenv("HOSTILE_ROW", fault, 1);
        const std::string failure = HostFailureOf([] {
            const Plugin plugin(hostilePlugin);
            EXPECT_EQ(DecodeXpm(plugin.Types().back().CopyIcon()).Pixels,
                      (std::vector<std::uint8_t>{0, 0, 0, 0, 255, 128, 1, 255}));
        });
        EXPECT_TRUE(failure.ends_with(message)) << failure;
    }
    unsetenv("HOSTILE_ROW");
}

} // namespace
