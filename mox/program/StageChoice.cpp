#include "mox/program/StageChoice.h"

#include "mox/Text.h"

#include <algorithm>
#include <string_view>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

constexpr std::size_t nobody = static_cast<std::size_t>(-1);

constexpr ComponentMask all = ~ComponentMask(0);

bool IsFunction(const ProgramNode& node)
{
    return node.Definition->Kind == ShaderNodeKind::Function;
}

/// Whether a value of this type can be interpolated.
bool CanCross(const ShaderType& type)
{
    constexpr std::int32_t widest = 4;
    const bool isReal = type.Component == ComponentType::Float ||
                        type.Component == ComponentType::Half ||
                        type.Component == ComponentType::Fixed;
    return isReal && type.Rows == 1 && type.ArrayLength == 1 && type.Columns >= 1 &&
           type.Columns <= widest;
}

ComponentMask MaskOf(const ShaderType& type)
{
    return CanCross(type) ? (ComponentMask(1) << type.Columns) - 1 : all;
}

/// Returns the property that moves the functions of a node to another stage if it is changed to the
/// value "to": its value is "from" or leaves the choice of the stage to the node. Null if the node
/// has no such property.
const GuiProperty* FindStageProperty(const ShaderOrigin& origin, std::string_view from,
                                     std::string_view to)
{
    if (!origin.Properties)
        return nullptr;
    for (const auto& property : origin.Properties->Properties) {
        if (property->Kind == GuiPropertyKind::Enum &&
            (property->Text == from || property->Text == "Automatic") &&
            std::ranges::count(property->Choices, to) > 0)
            return property.get();
    }
    return nullptr;
}

} // namespace

StageChoice::StageChoice(const ProgramGraph& graph, StageCopies copies, ProblemList& problems)
    : _graph(graph), _problems(problems), _copies(copies), _copied(graph.Nodes().size()),
      _inVertex(graph.Nodes().size()), _inFragment(graph.Nodes().size()),
      _vertexReader(graph.Nodes().size(), nobody), _read(graph.ValueCount())
{
    if (copies == StageCopies::MadeTwice)
        FindRates();
    // In reverse order, so that all readers of a node are decided before the node.
    for (std::size_t i = graph.Nodes().size(); i-- > 0;) {
        const ProgramNode& node = graph.Nodes()[i];
        if (node.Inputs.empty() && !IsFunction(node))
            continue; // a parameter reads nothing
        if (node.Level == ShaderLevel::Vertex)
            _inVertex[i] = true;
        else if (node.Level == ShaderLevel::Fragment)
            _inFragment[i] = true;
        if (CanHandOn(i))
            HandOn(i);
        ReadInputs(i);
    }
    ReportWhatCannotCross();
}

/// Analyses the bodies of functions, unless that has been done.
void StageChoice::FindRates()
{
    if (!_rates.empty())
        return;
    _rates.resize(_graph.ValueCount());
    for (std::size_t i = 0; i < _graph.Nodes().size(); ++i) {
        const ProgramNode& node = _graph.Nodes()[i];
        if (IsFunction(node)) {
            const auto [known, isNew] = _definitions.try_emplace(node.Definition);
            if (isNew)
                known->second = FunctionBody(*node.Definition).FindCopies();
            _copied[i] = known->second ? &*known->second : nullptr;
        }
        FindRatesOf(i);
    }
}

void StageChoice::FindRatesOf(std::size_t index)
{
    const ProgramNode& node = _graph.Nodes()[index];
    const auto isConstant = [&](const ProgramValue& value) {
        const std::vector<Rate>& rates = _rates[_graph.NumberOf(value)];
        return std::all_of(rates.begin(), rates.end(),
                           [](Rate rate) { return rate == Rate::Constant; });
    };
    // Not constant for samplers: the stages read textures at different mip levels.
    const bool isSampler = IsSampler(node.Definition->Type);
    Rate rate = Rate::PerPixel;
    if (node.Level == ShaderLevel::Vertex)
        rate = Rate::Interpolated;
    else if (!isSampler && node.Level == ShaderLevel::Automatic &&
             std::all_of(node.Inputs.begin(), node.Inputs.end(), isConstant))
        rate = Rate::Constant;
    const bool isCopy = node.Level == ShaderLevel::Automatic && _copied[index];
    for (std::size_t port = 0; port < node.Definition->Outputs.size(); ++port) {
        std::vector<Rate>& rates = _rates[_graph.NumberOf({index, port})];
        if (!isCopy) {
            rates = {rate}; // one entry for all components
            continue;
        }
        for (const InputComponent& source : (*_copied[index])[port]) {
            const std::vector<Rate>& read = _rates[_graph.NumberOf(node.Inputs[source.Input])];
            rates.push_back(read[std::min(source.Component, read.size() - 1)]);
        }
    }
}

/// Whether a node is a copy that both stages need, and the fragment stage can read all its values
/// from interpolants. Constant components need none.
bool StageChoice::CanHandOn(std::size_t index)
{
    const ProgramNode& node = _graph.Nodes()[index];
    if (_copies != StageCopies::HandedOn || node.Level != ShaderLevel::Automatic ||
        !_inVertex[index] || !_inFragment[index])
        return false;
    FindRates();
    if (!_copied[index])
        return false;
    for (std::size_t port = 0; port < node.Definition->Outputs.size(); ++port) {
        const std::size_t number = _graph.NumberOf({index, port});
        const auto has = [&](Rate rate) {
            return std::find(_rates[number].begin(), _rates[number].end(), rate) !=
                   _rates[number].end();
        };
        if (_read[number] != 0 && (!CanCross(node.Definition->Outputs[port].Type) ||
                                   has(Rate::PerPixel) || !has(Rate::Interpolated)))
            return false;
    }
    return true;
}

void StageChoice::HandOn(std::size_t node)
{
    _inFragment[node] = false;
    for (std::size_t port = 0; port < _graph.Nodes()[node].Definition->Outputs.size(); ++port) {
        const ProgramValue value{node, port};
        if (_read[_graph.NumberOf(value)] != 0)
            Cross(value, all, node);
    }
}

void StageChoice::ReadInputs(std::size_t index)
{
    const ProgramNode& node = _graph.Nodes()[index];
    const std::vector<ComponentMask> masks = FindReadComponents(index);
    for (std::size_t i = 0; i < node.Inputs.size(); ++i) {
        if (_inVertex[index])
            NeedInVertex(node.Inputs[i], index);
        if (_inFragment[index])
            NeedInFragment(node.Inputs[i], masks[i], index);
    }
}

/// Returns the components of each input that affect what the fragment stage reads of a node.
std::vector<ComponentMask> StageChoice::FindReadComponents(std::size_t index) const
{
    const ProgramNode& node = _graph.Nodes()[index];
    const std::size_t outputs = node.Definition->Outputs.size();
    if (_copies == StageCopies::HandedOn || outputs == 0)
        return std::vector<ComponentMask>(node.Inputs.size(), all);
    std::vector<ComponentMask> masks(node.Inputs.size(), 0);
    for (std::size_t port = 0; port < outputs; ++port) {
        const ComponentMask read = _read[_graph.NumberOf({index, port})];
        if (read == 0)
            continue;
        if (!_copied[index])
            return std::vector<ComponentMask>(node.Inputs.size(), all);
        const std::vector<InputComponent>& components = (*_copied[index])[port];
        for (std::size_t i = 0; i < components.size(); ++i) {
            const InputComponent& source = components[i];
            constexpr std::size_t bits = 32; // a value with more components cannot cross anyway
            if (i >= bits || source.Component >= bits)
                masks[source.Input] = all;
            else if ((read >> i & 1u) != 0)
                masks[source.Input] |= ComponentMask(1) << source.Component;
        }
    }
    return masks;
}

ProgramValue StageChoice::SourceOf(ProgramValue value) const
{
    while (_graph.Nodes()[value.Node].Definition->Kind == ShaderNodeKind::InterpolantParameter)
        value = _graph.Nodes()[value.Node].Inputs.front();
    return value;
}

std::optional<ProgramValue> StageChoice::CrossingOf(const ProgramValue& value) const
{
    const ProgramNode& node = _graph.Nodes()[value.Node];
    if (node.Level == ShaderLevel::Vertex)
        return SourceOf(value);
    const bool isHandedOn = IsFunction(node) && !_inFragment[value.Node];
    return isHandedOn ? std::optional(value) : std::nullopt;
}

void StageChoice::NeedInVertex(const ProgramValue& value, std::size_t reader)
{
    if (_inVertex[value.Node])
        return;
    _inVertex[value.Node] = true;
    _vertexReader[value.Node] = reader;
    if (_graph.Nodes()[value.Node].Level == ShaderLevel::Fragment)
        ReportConflict(value.Node);
}

void StageChoice::NeedInFragment(const ProgramValue& value, ComponentMask components,
                                 std::size_t reader)
{
    if (_graph.Nodes()[value.Node].Level == ShaderLevel::Vertex) {
        _inVertex[value.Node] = true;
        Cross(SourceOf(value), components, reader);
        return;
    }
    _inFragment[value.Node] = true;
    _read[_graph.NumberOf(value)] |= components;
}

void StageChoice::Cross(const ProgramValue& value, ComponentMask components, std::size_t reader)
{
    const ComponentMask read = _copies == StageCopies::MadeTwice ? components : all;
    _crossing[value] |= read & MaskOf(_graph.PortOf(value).Type);
    _crossingReader.try_emplace(value, reader);
}

void StageChoice::ReportWhatCannotCross()
{
    for (const auto& [value, reader] : _crossingReader) {
        const ShaderType& type = _graph.PortOf(value).Type;
        if (CanCross(type) || _crossing.at(value) == 0)
            continue;
        const ProgramNode& read = _graph.Nodes()[reader];
        _problems.Fail(
            "cannot-cross", PlaceOf(*_graph.Nodes()[value.Node].Origin),
            Compose(DescribeValue(_graph, value), " is ", type.Format(),
                    ", which cannot be passed from the vertex to the fragment program, where ",
                    read.Shader->Describe(),
                    read.Origin->Node.empty() ? " of the environment"
                                              : Compose(" of node \"", read.Origin->Node, "\""),
                    " reads it", FormatRemedy(reader, value.Node)));
    }
}

/// Formats the path from a node to the one that forces it into the vertex stage, without the part
/// that the environment adds after the material's output node.
std::string StageChoice::FormatPath(std::size_t node) const
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
        add(origin.empty() ? _graph.Nodes()[i].Shader->Describe()
                           : Compose("node \"", origin, "\""),
            !origin.empty());
        if (const ShaderOrigin* end = EndBehind(i))
            add(Compose("node \"", end->Node, "\" port \"", end->Port, "\""), true);
    }
    return materialLength > 0 ? path.substr(0, materialLength) : path;
}

/// Returns the output node's input between a node and the reader that needs it per vertex, or null.
const ShaderOrigin* StageChoice::EndBehind(std::size_t node) const
{
    const std::size_t reader = _vertexReader[node];
    if (reader == nobody)
        return nullptr;
    const std::vector<ProgramValue>& inputs = _graph.Nodes()[reader].Inputs;
    const auto input = std::ranges::find(inputs, node, &ProgramValue::Node);
    return _graph.EndBefore(reader, static_cast<std::size_t>(input - inputs.begin()));
}

/// Lists the properties that can move one node to the vertex stage or the other to the fragment
/// stage.
std::string StageChoice::FormatRemedy(std::size_t toVertex, std::size_t toFragment) const
{
    std::string remedy;
    const auto add = [&](const ShaderOrigin& origin, const char* from, const char* to) {
        if (const GuiProperty* property = FindStageProperty(origin, from, to)) {
            remedy +=
                Compose(remedy.empty() ? "; to resolve this, set property \"" : " or property \"",
                        property->Name, "\" of node \"", origin.Node, "\" to \"", to, "\"");
        }
    };
    add(*_graph.Nodes()[toVertex].Origin, "Fragment", "Vertex");
    add(*_graph.Nodes()[toFragment].Origin, "Vertex", "Fragment");
    return remedy;
}

void StageChoice::ReportConflict(std::size_t node)
{
    std::size_t last = node;
    while (_vertexReader[last] != nobody)
        last = _vertexReader[last];
    _problems.Fail("stage-conflict", PlaceOf(*_graph.Nodes()[node].Origin),
                   Compose(_graph.Nodes()[node].Shader->Describe(),
                           " runs per fragment, but its result is needed per vertex: ",
                           FormatPath(node), FormatRemedy(node, last)));
}

std::string DescribeValue(const ProgramGraph& graph, const ProgramValue& value)
{
    const ProgramNode& node = graph.Nodes()[value.Node];
    if (IsParameter(*node.Definition))
        return Compose("\"", NameOf(node), "\"");
    if (node.Definition->Kind != ShaderNodeKind::Function)
        return node.Definition->Describe();
    if (node.Origin->Node.empty())
        return Compose("\"", graph.NameOf(value), "\" of the environment");
    return Compose("\"", graph.PortOf(value).Name, "\" of node \"", node.Origin->Node, "\"");
}

} // namespace Mox::Host
