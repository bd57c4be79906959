#include "mox/check/MaterialCheck.h"

#include "mox/Text.h"
#include "mox/document/DocumentTextures.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/program/CgNames.h"
#include "mox/program/FunctionBody.h"
#include "mox/program/MaterialProgram.h"
#include "mox/program/ReservedWords.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "mox/shader/ShaderNode.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPort;
using Materials::GuiPropertyKind;
using Materials::StreamType;

/// Calls visit with each node and its bindings. A node that fails has no bindings.
template <class Visit>
void ForEachBinding(const MaterialGraph& graph, Visit visit)
{
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        std::vector<PluginBinding> bindings;
        try {
            bindings = CreateNodeBindings(node);
        } catch (const HostError&) {
            continue; // reported by ReportFailedBindings
        }
        for (const PluginBinding& binding : bindings)
            visit(node, binding);
    }
}

using BindingKey = std::pair<std::string, std::string>; ///< keyword of the stream type, name

std::set<BindingKey> FindBindings(const MaterialGraph& graph)
{
    std::set<BindingKey> keys;
    ForEachBinding(graph, [&](const MaterialGraph::Node&, const PluginBinding& binding) {
        keys.emplace(binding.StreamName(), binding.Tag());
    });
    return keys;
}

/// Whether the user can set numbers in the node, which may replace inputs.
bool HasNumbers(const PluginNode& node)
{
    const auto& properties = node.Properties().Properties;
    return std::any_of(properties.begin(), properties.end(), [](const auto& property) {
        return property->Visible && (property->Kind == GuiPropertyKind::Float ||
                                     property->Kind == GuiPropertyKind::Colour);
    });
}

/// The functions that a node generates on its own; empty if it fails.
std::list<ShaderNodeHandle> WriteFunctions(const MaterialGraph::Node& node)
{
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    try {
        node.Gui.GenerateShader(node.Where, generator);
    } catch (const HostError&) {
        return {}; // generation reports the problem of the node
    }
    return graph.Nodes;
}

/// Reports an error for each node that fails to create its bindings, unless it already has an
/// error.
void ReportFailedBindings(const MaterialGraph& graph, ProblemList& problems)
{
    std::set<std::string> failed;
    for (const Problem& problem : problems.Problems()) {
        if (problem.Level == Severity::Error)
            failed.insert(problem.Where.Node);
    }
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        if (failed.contains(node.Id))
            continue;
        try {
            CreateNodeBindings(node);
        } catch (const HostError& error) {
            problems.Fail("node-failed", error);
        }
    }
}

/// Warns of bindings whose names are not Cg identifiers or are Cg keywords, so that programs use
/// different names.
void WarnOfAwkwardNames(const MaterialGraph& graph, ProblemList& problems)
{
    ForEachBinding(graph, [&](const MaterialGraph::Node& node, const PluginBinding& binding) {
        const std::string safe = ToSafeCgName(binding.Tag());
        if (!ShaderNode::IsValidCgName(binding.Tag())) {
            problems.Warn("name-no-cg-name", node.Where,
                          Compose("the name \"", binding.Tag(),
                                  "\" is not a valid Cg name; a valid name would be \"", safe,
                                  "\""));
        } else if (IsReservedWord(binding.Tag())) {
            problems.Warn("name-reserved", node.Where,
                          Compose("the name \"", binding.Tag(),
                                  "\" is a reserved word in Cg; a valid name would be \"", safe,
                                  "\""));
        }
    });
}

/// Warns of bindings with the same name, which the host cannot distinguish.
void WarnOfEqualBindings(const MaterialGraph& graph, ProblemList& problems)
{
    std::map<std::string, std::string> owners;
    ForEachBinding(graph, [&](const MaterialGraph::Node& node, const PluginBinding& binding) {
        const auto [owner, isFirst] = owners.emplace(binding.Tag(), node.Id);
        if (!isFirst) {
            problems.Warn("equal-bindings", node.Where,
                          Compose("node \"", owner->second, "\" also has a binding \"",
                                  binding.Tag(), "\"; give one of them a different \"Name\""));
        }
    });
}

/// Warns if more than one constant, or more than one texture, is the basic colour.
void WarnOfBasicColours(const MaterialGraph& graph, ProblemList& problems)
{
    std::map<StreamType, std::string> owners;
    ForEachBinding(graph, [&](const MaterialGraph::Node& node, const PluginBinding& binding) {
        if (!binding.IsBasicColour())
            return;
        const auto [owner, isFirst] = owners.emplace(binding.Stream(), node.Id);
        if (!isFirst) {
            problems.Warn("two-basic-colours", node.Where,
                          Compose("node \"", owner->second, "\" is already the basic colour"));
        }
    });
}

/// Warns of frame grids with zero or negative numbers of rows or columns.
void WarnOfEmptyGrids(const MaterialGraph& graph, ProblemList& problems)
{
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        if (node.IsPlaceholder || node.Gui.Type() != "CoreAnimatedUv")
            continue;
        for (const char* name : {"Rows", "Columns"}) {
            const std::int32_t count = node.Gui.Properties().Get(name)->GetInt();
            if (count <= 0) {
                problems.Warn("empty-grid", node.Where,
                              Compose("property \"", name, "\" is ", count, ", so the ",
                                      count == 0 ? "Cg source of the node does not compile"
                                                 : "node reads frames that do not exist"));
            }
        }
    }
}

/// Warns of numbers that are infinite or NaN, because bindings pass them on to the host.
void WarnOfInfiniteNumbers(const MaterialGraph& graph, ProblemList& problems)
{
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        for (const auto& property : node.Gui.Properties().Properties) {
            const bool isColour = property->Kind == GuiPropertyKind::Colour;
            if (!property->Visible || (!isColour && property->Kind != GuiPropertyKind::Float))
                continue;
            const std::span<const float> numbers(property->Floats, isColour ? 3 : 1);
            if (!std::ranges::all_of(numbers, [](float number) { return std::isfinite(number); })) {
                problems.Warn("not-finite", node.Where,
                              Compose("property \"", property->Name, "\" is not finite"));
            }
        }
    }
}

/// Warns of unconnected inputs that read as 0 at nodes without numeric properties, which offer no
/// other way to set a value.
void WarnOfOpenInputs(const MaterialGraph& graph, const Environment& environment,
                      ProblemList& problems)
{
    std::string code;
    for (const EnvironmentCode& file : environment.Code)
        code += file.Text + "\n";
    for (auto entry = graph.Nodes().begin(); entry != graph.Nodes().end(); ++entry) {
        const MaterialGraph::Node& node = *entry;
        if (node.IsPlaceholder || HasNumbers(node.Gui))
            continue;
        std::optional<std::list<ShaderNodeHandle>> functions;
        for (const GuiPort& port : node.Gui.InputPorts()) {
            if (port.Connected || graph.HasLooseEdge(entry.Index(), port.Name))
                continue;
            if (!functions)
                functions = WriteFunctions(node);
            if (std::none_of(functions->begin(), functions->end(), [&](const auto& function) {
                    return function->Kind == ShaderNodeKind::Function &&
                           FunctionBody(*function, code).DeclaresZero(port.Name);
                }))
                continue;
            Place where = node.Where;
            where.Port = port.Name;
            problems.Warn("open-input", where, "the input has no edge and reads as 0");
        }
    }
}

/// Warns of values in the document for a binding that no node creates.
void WarnOfStrayBindings(const MaterialGraph& graph, const std::filesystem::path& document,
                         ProblemList& problems)
{
    if (graph.Document().Bindings.empty())
        return;
    const std::set<BindingKey> made = FindBindings(graph);
    for (const DocumentBinding& binding : graph.Document().Bindings) {
        if (!made.contains({binding.Stream, binding.Tag})) {
            problems.Warn(
                "stray-binding", {document.string(), binding.Line},
                Compose("no node has a ", binding.Stream, " binding \"", binding.Tag, "\""));
        }
    }
}

} // namespace

void CheckMaterial(const MaterialGraph& graph, const std::filesystem::path& file,
                   const Environment& environment, const ProgramFormat* format,
                   ProblemList& problems)
{
    WarnOfAwkwardNames(graph, problems);
    WarnOfEqualBindings(graph, problems);
    WarnOfBasicColours(graph, problems);
    WarnOfEmptyGrids(graph, problems);
    WarnOfInfiniteNumbers(graph, problems);
    WarnOfOpenInputs(graph, environment, problems);
    WarnOfMissingTextures(graph.Document(), file, problems);
    WarnOfStrayBindings(graph, file, problems);

    ProblemList found;
    const CgProgram program = BuildMaterialProgram(graph, environment, {}, found);
    if (format && !problems.HasErrors() && !found.HasErrors())
        WriteProgram(*format, program, graph, file, found);
    problems.Append(found);
    ReportFailedBindings(graph, problems);
}

} // namespace Mox::Host
