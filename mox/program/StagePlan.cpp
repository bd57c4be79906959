#include "mox/program/StagePlan.h"

#include "mox/Text.h"
#include "mox/program/CopyProof.h"

#include <algorithm>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::size_t nobody = static_cast<std::size_t>(-1);

} // namespace

StagePlan::StagePlan(const ProgramGraph& graph, Copies copies, ProblemList& problems)
    : _graph(graph), _problems(problems), _inVertex(graph.Nodes().size()),
      _inFragment(graph.Nodes().size()), _vertexReader(graph.Nodes().size(), nobody),
      _wanted(graph.ValueCount())
{
    // From the last node to the first: whoever reads a node is settled before it.
    for (std::size_t i = graph.Nodes().size(); i-- > 0;) {
        const ProgramNode& node = graph.Nodes()[i];
        const ShaderLevel level = node.Level;
        if (node.Inputs.empty() && node.Definition->Kind != ShaderNodeKind::Function)
            continue; // a parameter reads nothing
        if (level == ShaderLevel::Vertex)
            _inVertex[i] = true;
        else if (level == ShaderLevel::Fragment)
            _inFragment[i] = true;
        const bool isHandedOn = level == ShaderLevel::Automatic && _inVertex[i] && _inFragment[i] &&
                                copies == Copies::HandedOn && IsMereCopy(*node.Definition);
        if (isHandedOn) {
            _inFragment[i] = false;
            for (std::size_t port = 0; port < node.Definition->Outputs.size(); ++port) {
                if (_wanted[graph.NumberOf({i, port})])
                    _crossing.insert({i, port});
            }
        }
        for (const ProgramValue& input : node.Inputs) {
            if (_inVertex[i])
                NeedInVertex(input, i);
            if (_inFragment[i])
                NeedInFragment(input);
        }
    }
}

ProgramValue StagePlan::SourceOf(ProgramValue value) const
{
    while (_graph.Nodes()[value.Node].Definition->Kind == ShaderNodeKind::InterpolantParameter)
        value = _graph.Nodes()[value.Node].Inputs.front();
    return value;
}

void StagePlan::NeedInVertex(const ProgramValue& value, std::size_t reader)
{
    if (_inVertex[value.Node])
        return;
    _inVertex[value.Node] = true;
    _vertexReader[value.Node] = reader;
    if (_graph.Nodes()[value.Node].Level == ShaderLevel::Fragment)
        ReportConflict(value.Node);
}

void StagePlan::NeedInFragment(const ProgramValue& value)
{
    if (_graph.Nodes()[value.Node].Level == ShaderLevel::Vertex) {
        const ProgramValue source = SourceOf(value);
        _inVertex[source.Node] = true;
        _crossing.insert(source);
        return;
    }
    _inFragment[value.Node] = true;
    _wanted[_graph.NumberOf(value)] = true;
}

/// The path from a node to the one that forces it into the vertex stage. What the environment does
/// behind the material's end is left out.
std::string StagePlan::FormatPath(std::size_t node) const
{
    std::string path;
    std::string last;
    std::size_t materialLength = 0;
    const auto add = [&](const std::string& step, bool isOfMaterial) {
        if (step != last)
            path += (path.empty() ? "" : " -> ") + step;
        last = step;
        if (isOfMaterial)
            materialLength = path.size();
    };
    for (std::size_t i = node; i != nobody; i = _vertexReader[i]) {
        const std::string& origin = _graph.Nodes()[i].Origin->Node;
        add(origin.empty() ? _graph.Nodes()[i].Definition->Describe()
                           : Compose("node \"", origin, "\""),
            !origin.empty());
        if (const ShaderOrigin* end = EndBehind(i))
            add(Compose("node \"", end->Node, "\" port \"", end->Port, "\""), true);
    }
    return materialLength > 0 ? path.substr(0, materialLength) : path;
}

/// The end of the material between a node and who needs it per vertex, or null.
const ShaderOrigin* StagePlan::EndBehind(std::size_t node) const
{
    const std::size_t reader = _vertexReader[node];
    if (reader == nobody)
        return nullptr;
    const std::vector<ProgramValue>& inputs = _graph.Nodes()[reader].Inputs;
    const auto input = std::find_if(inputs.begin(), inputs.end(),
                                    [&](const ProgramValue& value) { return value.Node == node; });
    return _graph.EndBefore(reader, static_cast<std::size_t>(input - inputs.begin()));
}

void StagePlan::ReportConflict(std::size_t node)
{
    _problems.Fail(
        "stage-conflict", PlaceOf(*_graph.Nodes()[node].Origin),
        Compose(_graph.Nodes()[node].Definition->Describe(),
                " runs per fragment, but its result is needed per vertex: ", FormatPath(node)));
}

} // namespace Mox::Host
