#include "mox/check/NodeFileCheck.h"

#include "mox/Text.h"
#include "mox/cg/Module.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Excerpt.h"
#include "mox/nodefile/NodeFileReader.h"
#include "mox/nodefile/NodeFiles.h"
#include "mox/nodefile/NodeFolders.h"
#include "mox/program/CgWriter.h"
#include "mox/program/EnvironmentNodes.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPort;

int CountLines(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

/// The configuration in which a node generates its function.
struct NodeUse
{
    NodeSettings Settings;
    std::int32_t Count;
    ComponentType Precision;
    bool IsConnected;

    std::string Describe() const
    {
        std::string text = Compose("for ", ShaderType(Precision, Count, 1, 1).Format());
        for (const auto& [name, value] : Settings)
            text += Compose(", ", name, "=", value);
        return text;
    }
};

/// Makes a node of one type generate its function in every configuration.
class NodeCodeCheck
{
public:
    NodeCodeCheck(const NodeFile& file, const PluginSet& plugins, const Environment& environment,
                  ProblemList& problems)
        : _file(file), _plugins(plugins), _environment(environment), _problems(problems)
    {}

    void Check()
    {
        for (const NodeSettings& settings : ListSettings(_file)) {
            for (std::int32_t count = 1; count <= 4; ++count) {
                for (const auto precision : {ComponentType::Float, ComponentType::Half}) {
                    for (const bool isConnected : {false, true})
                        CheckUse({settings, count, precision, isConnected});
                }
            }
        }
    }

private:
    void CheckUse(const NodeUse& use)
    {
        ShaderGraph graph;
        graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(_environment));
        ShaderGraphGenerator generator(graph);
        try {
            MakeNode(use).GenerateShader({}, generator);
        } catch (const HostError& error) {
            Report(LineOfValue(error.Message), error.Message, use);
            return;
        }
        CheckText(graph, use);
    }

    PluginNode MakeNode(const NodeUse& use) const
    {
        const PluginNode node = _plugins.CreateNode(_file.TypeName);
        for (const auto& [name, value] : use.Settings) {
            Materials::GuiProperty& property = *node.Properties().Get(name);
            SetFromText(property, property.Kind, value);
        }
        node.UpdatePorts({});
        for (GuiPort& port : node.InputPorts()) {
            port.Connected = use.IsConnected || NeedsEdge(port, use.Settings);
            if (port.Connected && !port.CountFixed) {
                port.ComponentCount = use.Count;
                port.CountKnown = true;
            }
        }
        for (GuiPort& port : node.OutputPorts()) {
            if (!port.PrecisionFixed) {
                port.Precision = use.Precision;
                port.PrecisionKnown = true;
            }
        }
        node.ResolveComponentCounts({});
        node.ResolvePrecisions({});
        return node;
    }

    bool NeedsEdge(const GuiPort& port, const NodeSettings& settings) const
    {
        return std::any_of(_file.Inputs.begin(), _file.Inputs.end(), [&](const NodeInput& input) {
            return input.Name == port.Name && input.Source == NodeSource::Edge &&
                   Holds(input.When, settings);
        });
    }

    void CheckText(const ShaderGraph& graph, const NodeUse& use)
    {
        std::string text;
        for (const EnvironmentCode& code : _environment.Code)
            text += code.Text + "\n";
        const int firstHelper = CountLines(text);
        const ShaderNode* function = nullptr;
        for (const ShaderNodeHandle& node : graph.Nodes) {
            if (node->Kind != ShaderNodeKind::Function)
                continue;
            if (node->Inputs.empty() && node->Outputs.empty())
                text += node->Code;
            else
                function = node.get();
        }
        text +=
            Compose(FormatSignature(function->Name, function->Inputs, function->Outputs), "\n{\n");
        const int firstLine = CountLines(text);
        text += function->Code + "}\n";
        const int lastLine = firstLine + CountLines(function->Code) - 1;
        if (!_seen.insert(text).second)
            return;
        const auto module = Cg::ReadModule(text);
        for (const Cg::SourceError& error : module->Errors) {
            const int line = error.Where.Line - 1;
            if (line > lastLine) { // at the bracket after the code
                Report(LineOfCode(*function, lastLine - firstLine, use.Settings),
                       Compose("at the end: ", error.Message), use);
                continue;
            }
            Report(line < firstLine ? LineOfHelper(line - firstHelper)
                                    : LineOfCode(*function, line - firstLine, use.Settings),
                   Compose("column ", error.Where.Column, ": ", error.Message), use);
        }
        if (module->Errors.empty())
            CheckOutputs(*module->Functions.back(), use);
    }

    void CheckOutputs(const Cg::Function& function, const NodeUse& use)
    {
        for (const NodeOutput& output : _file.Outputs) {
            const auto isUnassigned = [&](const Cg::Variable* parameter) {
                return parameter->Name == output.Name && !parameter->IsAssigned;
            };
            if (Holds(output.When, use.Settings) &&
                std::ranges::any_of(function.Parameters, isUnassigned))
                Report(output.Line, Compose("no body assigns \"", output.Name, "\""), use);
        }
    }

    /// The line of the input that reads a value named in a message; 0 if there is none.
    int LineOfValue(const std::string& message) const
    {
        for (const NodeInput& input : _file.Inputs) {
            if (input.Source == NodeSource::Value &&
                message.find(Excerpt(input.SourceText)) != std::string::npos)
                return input.Line;
        }
        return 0;
    }

    /// Maps a line of the helper functions to a line of the file; 0 if it is outside of them.
    int LineOfHelper(int line) const
    {
        for (const NodeFunction& helper : _file.Functions) {
            const int count = CountLines(helper.Text);
            if (line >= 0 && line < count)
                return helper.Line + line;
            line -= count;
        }
        return 0;
    }

    /// Maps a line of the function to a line of the file. The bodies are the last lines of the
    /// function.
    int LineOfCode(const ShaderNode& function, int line, const NodeSettings& settings) const
    {
        int bodyLines = 0;
        for (const NodeBody& body : _file.Bodies)
            bodyLines += Holds(body.When, settings) ? CountLines(body.Text) : 0;
        line -= CountLines(function.Code) - bodyLines;
        for (const NodeBody& body : _file.Bodies) {
            const int count = Holds(body.When, settings) ? CountLines(body.Text) : 0;
            if (line >= 0 && line < count)
                return body.Line + line;
            line -= count;
        }
        return 0;
    }

    /// Reports each error once per line and message, with the first configuration that causes it.
    void Report(int line, const std::string& message, const NodeUse& use)
    {
        if (_reported.insert(Compose(line, " ", message)).second) {
            _problems.Fail("node-code", Place(_file.File, line),
                           Compose(message, " (", use.Describe(), ")"));
        }
    }

    const NodeFile& _file;
    const PluginSet& _plugins;
    const Environment& _environment;
    ProblemList& _problems;
    std::set<std::string> _seen;     ///< sources that have been checked
    std::set<std::string> _reported; ///< lines and messages
};

class NodeFileCheck
{
public:
    NodeFileCheck(const PluginSet& plugins, const Environment& environment, ProblemList& problems)
        : _plugins(plugins), _environment(environment), _problems(problems), _files(plugins)
    {}

    void CheckFolder(const std::string& folder)
    {
        for (const NodeHead& head : ListNodeFiles(folder)) {
            try {
                CheckFile(head.File, ReadNodeFile(head.File));
            } catch (const HostError& error) {
                _problems.Fail("node-file", error);
            }
        }
    }

private:
    void CheckFile(const std::string& name, const NodeFile& file)
    {
        CheckDefaults(file);
        if (file.IsCompiled) {
            CheckCompiled(file);
            return;
        }
        if (IsTypeFree(name, file))
            NodeCodeCheck(file, _plugins, _environment, _problems).Check();
    }

    void CheckDefaults(const NodeFile& file)
    {
        for (const NodeProperty& property : file.Properties) {
            const auto value = ParseFloat(property.Value.empty() ? "0" : property.Value);
            if (property.Range && !file.IsCompiled &&
                (!value || *value < property.Range->first || *value > property.Range->second)) {
                _problems.Fail(
                    "node-default", Place(file.File, property.Line),
                    Compose("the default of ", Excerpt(property.Name), " is outside its range"));
            }
        }
    }

    bool IsTypeFree(const std::string& name, const NodeFile& file)
    {
        for (const std::string& other : _files.FilesOf(file.TypeName)) {
            if (!std::filesystem::equivalent(other, name)) {
                _problems.Fail(
                    "node-twice", Place(name),
                    Compose("the type \"", file.TypeName, "\" is also defined in ", other));
                return false;
            }
        }
        const Plugin* supplier = _plugins.FindSupplier(file.TypeName);
        if (!supplier) {
            _problems.Fail(
                "node-file", Place(name),
                Compose("no plug-in offers the type \"", file.TypeName,
                        "\": its start tag contains references or begins too late in the file"));
            return false;
        }
        if (!supplier->OffersNodeFiles()) {
            _problems.Fail("node-twice", Place(name),
                           Compose("the plug-in ", supplier->File().filename().string(),
                                   " already has the type \"", file.TypeName, "\""));
            return false;
        }
        return true;
    }

    void CheckCompiled(const NodeFile& file)
    {
        const PluginNode node = _plugins.CreateNode(file.TypeName);
        if (!node) {
            _problems.Fail("node-file", Place(file.File),
                           Compose("no plug-in offers the type \"", file.TypeName, "\""));
            return;
        }
        for (const NodeProperty& property : file.Properties) {
            const auto own = node.Properties().Index.find(property.Name);
            if (own == node.Properties().Index.end() || own->second->Kind != property.Kind) {
                _problems.Fail("node-file", Place(file.File, property.Line),
                               Compose("the type \"", file.TypeName, "\" has no ",
                                       FormatKind(property.Kind), " property ",
                                       Excerpt(property.Name)));
            }
        }
    }

    const PluginSet& _plugins;
    const Environment& _environment;
    ProblemList& _problems;
    const NodeFiles _files;
};

} // namespace

void CheckNodeFiles(const std::vector<std::string>& folders, const PluginSet& plugins,
                    const Environment& environment, ProblemList& problems)
{
    if (folders.empty())
        return;
    NodeFileCheck check(plugins, environment, problems);
    for (const std::string& folder : folders)
        check.CheckFolder(folder);
}

} // namespace Mox::Host
