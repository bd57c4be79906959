// A host that is built separately from the library, possibly with another compiler. It loads the
// installed plug-ins and one more, and works with the nodes and exceptions of both.

#include <boost/smart_ptr/make_shared.hpp>

#include <iostream>
#include <mox/ShaderError.h>
#include <mox/authoring/GuiNode.h>
#include <mox/host/PluginSet.h>
#include <mox/program/Environment.h>
#include <mox/program/ShaderGraphText.h>
#include <mox/shader/ShaderGraphGenerator.h>

using namespace Mox;
using Materials::GuiEdge;
using Materials::GuiNode;
using NodeHandle = boost::shared_ptr<GuiNode>;

namespace {

int failures = 0;

void Expect(bool isTrue, const char* what)
{
    if (isTrue)
        return;
    ++failures;
    std::cerr << "not so: " << what << '\n';
}

/// Returns the type and message of the exception that a call throws.
template <class Call>
std::string Thrown(Call call)
{
    try {
        call();
    } catch (const ShaderError& error) {
        return std::string("ShaderError ") + error.what();
    } catch (const Host::HostError& error) {
        return "HostError " + error.Message;
    } catch (const std::string& message) {
        return "string " + message;
    } catch (const boost::bad_weak_ptr&) {
        return "bad_weak_ptr";
    } catch (...) {
        return "something else";
    }
    return "nothing";
}

void Generate(GuiNode& node)
{
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    node.GenerateShader(generator);
}

void Resolve(GuiNode& node)
{
    for (auto& port : node.InputPorts)
        port.Connected = true;
    node.ResolveComponentCounts();
    node.ResolvePrecisions();
}

/// Connects a node of one plug-in to a node of another and generates the shader graph.
void ExpectGraph(const Host::PluginSet& plugins)
{
    const NodeHandle uv = plugins.CreateNode("CoreUv").Handle();
    const NodeHandle checker = plugins.CreateNode("Checker").Handle();
    const auto edge = boost::make_shared<GuiEdge>();
    edge->Tail = uv;
    edge->TailPort = "read";
    edge->Head = checker;
    edge->HeadPort = "in_uv";
    uv->AddOutEdge(edge);
    checker->AddInEdge(edge);
    Expect(Thrown([&] { checker->AddInEdge(edge); }) ==
               "ShaderError in-edge entry for addition already exists on node",
           "an edge is listed once");
    Resolve(*uv);
    Resolve(*checker);
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    uv->GenerateShader(generator);
    checker->GenerateShader(generator);
    for (const auto& [key, record] : generator.EdgeMap)
        generator.Connect(record.Tail, record.TailPort, record.Heads.at(0), record.HeadPorts.at(0));
    const std::string text = Host::FormatShaderGraph(graph);
    Expect(graph.Nodes.size() == 3 && graph.Edges.size() == 2, "an adapter joins half to float");
    Expect(text.find("floor( in_uv * 8 )") != std::string::npos, "the plug-in's code is there");
}

void ExpectFailures(const Host::PluginSet& plugins, const Host::Plugin& checkers)
{
    Expect(Thrown([&] { checkers.CreateNode("nothing"); }) ==
               "HostError cannot create \"nothing\" node",
           "a ShaderError of the factory arrives as the host's own");

    const NodeHandle wrong = plugins.CreateNode("Checker").Handle();
    Resolve(*wrong);
    wrong->Properties->Get("Squares")->SetInt(0);
    Expect(Thrown([&] { Generate(*wrong); }) ==
               "ShaderError node \"Checker\" (Checker): \"Squares\" must be at least 1",
           "a ShaderError of a node arrives");

    for (const char* type : {"CoreMaths", "Checker"}) {
        const NodeHandle doubled = plugins.CreateNode(type).Handle();
        Resolve(*doubled);
        doubled->InputPorts.push_back(doubled->InputPorts.front());
        Expect(Thrown([&] { Generate(*doubled); }) ==
                   "string parameter name \"" + doubled->InputPorts.front().Name +
                       "\" is duplicated in function \"unknown\"",
               "the plain string arrives");

        const NodeHandle orphan = plugins.CreateNode(type).Handle();
        Resolve(*orphan);
        orphan->AddOutEdge(boost::make_shared<GuiEdge>());
        Expect(Thrown([&] { Generate(*orphan); }) == "bad_weak_ptr", "bad_weak_ptr arrives");
    }
}

} // namespace

// An uncaught exception should end the test.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    if (argc != 2) {
        std::cerr << "usage: host PLUG-IN\n";
        return 2;
    }
    NodeHandle survivor;
    {
        Host::PluginSet plugins;
        plugins.LoadFolder(Host::DefaultPluginFolder());
        const Host::Plugin& checkers = plugins.Load(argv[1]);
        Expect(plugins.Plugins().size() == 4, "four plug-ins in one host");
        Expect(!Host::ReadEnvironment(Host::DefaultEnvironmentFolder()).Outputs.empty(),
               "the environment is found");
        ExpectGraph(plugins);
        ExpectFailures(plugins, checkers);
        survivor = plugins.CreateNode("Checker").Handle();
    }
    Expect(survivor->GetTitle() == "Checker", "a node outlives its plug-in's handle");
    return failures == 0 ? 0 : 1;
}
