#include "mox/program/StageLayout.h"

#include "mox/Text.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// What people know a value by: the parameter's name, or node and port.
std::string DescribeValue(const ProgramGraph& graph, const ProgramValue& value)
{
    const ShaderNode& shader = *graph.Nodes()[value.Node].Definition;
    const std::string& node = graph.Nodes()[value.Node].Origin->Node;
    if (shader.Kind != ShaderNodeKind::Function)
        return Compose("\"", shader.Name, "\"");
    if (node.empty())
        return Compose("\"", graph.NameOf(value), "\" of the environment");
    return Compose("\"", graph.PortOf(value).Name, "\" of node \"", node, "\"");
}

bool CanBeInterpolated(const ShaderType& type)
{
    constexpr std::int32_t widest = 4;
    const bool isReal = type.Component == ComponentType::Float ||
                        type.Component == ComponentType::Half ||
                        type.Component == ComponentType::Fixed;
    return isReal && type.Rows == 1 && type.ArrayLength == 1 && type.Columns >= 1 &&
           type.Columns <= widest;
}

void ReportCrowd(const ProgramGraph& graph, const StagePlan& plan, ProblemList& problems)
{
    std::string values;
    for (const ProgramValue& value : plan.Crossing()) {
        values += Compose(values.empty() ? "" : ", ", DescribeValue(graph, value), " (",
                          graph.PortOf(value).Type.Format(), ")");
    }
    problems.Fail(
        "too-many-interpolants", {},
        Compose("what the vertex program hands to the fragment program does not fit into ",
                GetRegisterInfo(ShaderRegisterType::FragmentTexCoord).Count,
                " registers of four components: ", values));
}

void ReportWhatCannotCross(const ProgramGraph& graph, const StagePlan& plan, ProblemList& problems)
{
    for (const ProgramValue& value : plan.Crossing()) {
        const ShaderType& type = graph.PortOf(value).Type;
        if (CanBeInterpolated(type))
            continue;
        problems.Fail("cannot-cross", PlaceOf(*graph.Nodes()[value.Node].Origin),
                      Compose(DescribeValue(graph, value), " is ", type.Format(),
                              ", which cannot be handed from the vertex to the fragment program"));
    }
}

} // namespace

StageLayout::StageLayout(const ProgramGraph& graph, ProblemList& problems)
{
    const std::size_t problemsBefore = problems.Problems().size();
    _plan.emplace(graph, StagePlan::Copies::HandedOn, problems);
    ReportWhatCannotCross(graph, *_plan, problems);
    if (problems.Problems().size() > problemsBefore || LayOut(graph))
        return;
    _plan.emplace(graph, StagePlan::Copies::MadeTwice, problems);
    if (!LayOut(graph))
        ReportCrowd(graph, *_plan, problems);
}

/// @returns false if the crossing values do not fit into the registers
bool StageLayout::LayOut(const ProgramGraph& graph)
{
    const std::int32_t limit = GetRegisterInfo(ShaderRegisterType::FragmentTexCoord).Count;
    constexpr std::int64_t registerWidth = 4;
    std::vector<std::int32_t> widths;
    for (const ProgramValue& value : _plan->Crossing())
        widths.push_back(graph.PortOf(value).Type.Columns);
    if (std::accumulate(widths.begin(), widths.end(), std::int64_t(0)) > limit * registerWidth)
        return false;
    const std::vector<InterpolantSlot> slots = PackInterpolants(widths);
    if (std::any_of(slots.begin(), slots.end(),
                    [&](const InterpolantSlot& slot) { return slot.Register >= limit; }))
        return false;
    auto slot = slots.begin();
    for (const ProgramValue& value : _plan->Crossing())
        _slots.emplace(value, *slot++);
    return true;
}

} // namespace Mox::Host
