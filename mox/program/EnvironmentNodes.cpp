#include "mox/program/EnvironmentNodes.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::int32_t environmentFlags = 0;
constexpr const char* readPort = "read";
constexpr const char* writePort = "write";

const EnvironmentEntry* FindValue(const Environment& environment, const std::string& name)
{
    for (const EnvironmentEntry& value : environment.Values) {
        if (value.Name == name)
            return &value;
    }
    return nullptr;
}

ShaderNodeHandle InsertInterfaceNode(const EnvironmentEntry& value, ShaderGraph& graph)
{
    auto node = ShaderNode::CreateInterfaceParameter(value.Name, environmentFlags, value.Type);
    graph.InsertNode(node);
    return node;
}

class Completion
{
public:
    Completion(const Environment& environment, const std::vector<DocumentValue>& state,
               ShaderGraph& graph)
        : _environment(environment), _graph(graph), _generator(graph)
    {
        for (const DocumentValue& value : state)
            _state[value.Name] = value.Value;
        for (const auto& [key, node] : graph.InterfaceNodes) {
            if (!node->InEdges.empty() && key.second == environmentFlags)
                _written.insert(key.first);
        }
    }

    void Complete()
    {
        std::set<std::pair<std::int32_t, std::int32_t>> done;
        for (const EnvironmentEntry& output : _environment.Outputs) {
            const auto type = static_cast<std::int32_t>(output.Register->Type);
            if (Holds(output) && done.emplace(type, output.Register->Index).second)
                AddOutput(output);
        }
        // Computing a value may require further values, which are appended to this list.
        for (const ShaderNodeHandle& node : _graph.Nodes) {
            if (node->Kind != ShaderNodeKind::InterfaceParameter || !node->InEdges.empty())
                continue;
            for (const EnvironmentEntry& value : _environment.Values) {
                if (value.Name == node->Name && Holds(value) && !IsReadByWhatItNeeds(value)) {
                    Feed(value, node);
                    break;
                }
            }
        }
    }

private:
    bool Holds(const EnvironmentEntry& entry) const
    {
        return std::all_of(entry.When.begin(), entry.When.end(), [&](const Condition& condition) {
            const auto& values = condition.Values;
            if (values.empty())
                return _written.contains(condition.Name);
            const auto state = _state.find(condition.Name);
            return state != _state.end() &&
                   std::find(values.begin(), values.end(), state->second) != values.end();
        });
    }

    /// Whether a value of the environment is conditional on the material writing something that the
    /// material itself computes from that value. Such an entry cannot be used, since it would form
    /// a cycle.
    bool IsReadByWhatItNeeds(const EnvironmentEntry& value)
    {
        return std::any_of(value.When.begin(), value.When.end(), [&](const Condition& condition) {
            return condition.Values.empty() && IsReadBy(condition.Name, value.Name);
        });
    }

    bool IsReadBy(const std::string& written, const std::string& value)
    {
        const auto [reads, isNew] = _reads.try_emplace(written);
        if (isNew)
            reads->second = FindReads(written);
        return reads->second.contains(value);
    }

    /// Returns the names of all values that the material reads to compute what it writes under a
    /// name, including those that the environment needs to compute these.
    std::set<std::string> FindReads(const std::string& written) const
    {
        std::set<std::string> names;
        std::vector<std::string> found;
        const auto add = [&](const std::string& name) {
            if (names.insert(name).second)
                found.push_back(name);
        };
        std::set<const ShaderNode*> seen;
        std::vector<const ShaderNode*> open{
            _graph.InterfaceNodes.at({written, environmentFlags}).get()};
        while (!open.empty()) {
            const ShaderNode* node = open.back();
            open.pop_back();
            for (const auto& edge : node->InEdges) {
                const ShaderNode* tail = edge.lock()->Tail.lock().get();
                if (tail->Kind == ShaderNodeKind::InterfaceParameter)
                    add(tail->Name);
                if (seen.insert(tail).second)
                    open.push_back(tail);
            }
        }
        while (!found.empty()) {
            const std::string name = found.back();
            found.pop_back();
            for (const EnvironmentEntry& value : _environment.Values) {
                for (const EnvironmentInput& input : value.Inputs) {
                    if (value.Name == name && input.Source == EnvironmentSource::Value)
                        add(input.SourceName);
                }
            }
        }
        return names;
    }

    void AddOutput(const EnvironmentEntry& output)
    {
        const auto node = ShaderNode::CreateRegisterParameter(*output.Register, output.Type);
        node->Name = output.Name;
        _generator.AddNode(node);
        Feed(output, node);
    }

    void Feed(const EnvironmentEntry& entry, const ShaderNodeHandle& target)
    {
        const Place& where = entry.Where;
        CallLibrary(where, [&] {
            if (entry.Body.empty()) {
                const ShaderNodeHandle source = FindSource(entry.Inputs.front());
                if (!source)
                    throw HostError(where, MissingValue(entry.Inputs.front()));
                _generator.Connect(source, readPort, Enter(target), writePort);
                return;
            }
            std::vector<std::pair<ShaderNodeHandle, const EnvironmentInput*>> sources;
            ShaderFunctionBuilder builder;
            for (const EnvironmentInput& input : entry.Inputs) {
                if (input.Source == EnvironmentSource::State) {
                    const auto state = _state.find(input.SourceName);
                    builder.AppendCode(
                        FormatLocal(input, state == _state.end() ? input.Default : state->second));
                } else if (const ShaderNodeHandle source = FindSource(input)) {
                    builder.AddInput(input.Type, input.Name);
                    sources.emplace_back(source, &input);
                } else if (!input.Default.empty()) {
                    builder.AppendCode(FormatLocal(input, input.Default));
                } else {
                    throw HostError(where, MissingValue(input));
                }
            }
            builder.AddOutput(entry.Type, environmentOutput);
            builder.AppendCode(entry.Body);
            const ShaderNodeHandle function = builder.Build(entry.Level, entry.Name + "Code");
            _generator.AddNode(function);
            for (const auto& [source, input] : sources)
                _generator.Connect(source, readPort, function, input->Name);
            _generator.Connect(function, environmentOutput, Enter(target), writePort);
        });
    }

    static std::string MissingValue(const EnvironmentInput& input)
    {
        return Compose("nothing defines the value \"", input.SourceName, "\", and input \"",
                       input.Name, "\" has no default");
    }

    /// Returns the parameter that an input reads, or null if it is a value that no source provides.
    ShaderNodeHandle FindSource(const EnvironmentInput& input)
    {
        if (input.Source != EnvironmentSource::Value)
            return FindParameter(input);
        const EnvironmentEntry* value = FindHolding(input.SourceName);
        if (!value && !_written.contains(input.SourceName))
            return {};
        if (_graph.HasInterfaceNode(input.SourceName, environmentFlags))
            return Enter(_graph.FindInterfaceNode(input.SourceName, environmentFlags));
        return value ? Enter(InsertInterfaceNode(*value, _graph)) : ShaderNodeHandle();
    }

    const EnvironmentEntry* FindHolding(const std::string& name) const
    {
        const auto& values = _environment.Values;
        const auto value = std::find_if(values.begin(), values.end(), [&](const auto& candidate) {
            return candidate.Name == name && Holds(candidate);
        });
        return value == values.end() ? nullptr : &*value;
    }

    ShaderNodeHandle FindParameter(const EnvironmentInput& input)
    {
        ShaderNodeHandle& node = _parameters[{input.Source, input.SourceName, input.Type.Format()}];
        if (!node) {
            node = input.Source == EnvironmentSource::Stream
                       ? ShaderNode::CreateVaryingParameter(input.SourceName, input.Type)
                       : ShaderNode::CreateUniformParameter(input.SourceName, input.Type);
            _generator.AddNode(node);
        }
        return node;
    }

    /// Registers a node of the graph with the generator.
    const ShaderNodeHandle& Enter(const ShaderNodeHandle& node)
    {
        _generator.NodeMap.try_emplace(node, node);
        return node;
    }

    const Environment& _environment;
    ShaderGraph& _graph;
    ShaderGraphGenerator _generator;
    std::map<std::string, std::string> _state;           ///< the material's render state
    std::set<std::string> _written;                      ///< names of the values that the material
                                                         ///< writes
    std::map<std::string, std::set<std::string>> _reads; ///< by name of the written value, see
                                                         ///< FindReads
    std::map<std::tuple<EnvironmentSource, std::string, std::string>, ShaderNodeHandle> _parameters;
};

} // namespace

std::string FormatLocal(const EnvironmentInput& input, const std::string& expression)
{
    return Compose("\t", input.Type.FormatDeclaration(input.Name), " = ", expression, ";\n");
}

EnvironmentProvider::EnvironmentProvider(const Environment& environment) : _environment(environment)
{}

ShaderNodeHandle EnvironmentProvider::ProvideInterfaceNode(const std::string& name,
                                                           std::int32_t flags, ShaderGraph& graph)
{
    const EnvironmentEntry* value = FindValue(_environment, name);
    return value && flags == environmentFlags ? InsertInterfaceNode(*value, graph)
                                              : ShaderNodeHandle();
}

void CompleteShaderGraph(const Environment& environment, const std::vector<DocumentValue>& state,
                         ShaderGraph& graph)
{
    Completion(environment, state, graph).Complete();
}

} // namespace Mox::Host
