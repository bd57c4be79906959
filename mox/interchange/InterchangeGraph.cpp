#include "mox/interchange/InterchangeGraph.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"
#include "mox/interchange/Folding.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPropertyKind;
using InputValues = InterchangeGraph::Values;
using Site = InterchangeGraph::Site;

bool Holds(const InterchangeCondition& condition, const InputValues& inputs,
           const std::string& type)
{
    using Test = InterchangeCondition::Test;
    if (condition.What == Test::NodeType)
        return type == condition.Text;
    if (condition.What == Test::NodeWidth)
        return Compose(WidthOfType(type)) == condition.Text;
    const auto input = inputs.find(condition.Input);
    if (input == inputs.end())
        return false;
    const InterchangeValue& value = input->second;
    switch (condition.What) {
    case Test::Width:
        return Compose(value.Width) == condition.Text;
    case Test::InputType:
        return value.Type == condition.Text;
    case Test::OneOf:
        return !value.IsConnected() && !value.Text.empty() &&
               Compose(",", condition.Text, ",").find(Compose(",", value.Text, ",")) !=
                   std::string::npos;
    default:
        return !value.IsConnected() &&
               (value.Text == condition.Text || EqualsText(value, condition.Text));
    }
}

/// Sets a property to the value that the table specifies.
void SetFromTable(DocumentNode& record, const std::string& property, const std::string& text,
                  const InputValues& inputs, const InterchangeNode& node)
{
    const char sign = text.front();
    if (sign != '$' && sign != '%' && sign != '^') {
        MaterialBuilder::Set(record, property, text);
        return;
    }
    const std::string name = text.substr(1);
    const InterchangeValue& value = inputs.at(name);
    if (sign == '^') {
        std::string word = value.Text;
        word.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(word.front())));
        MaterialBuilder::Set(record, property, GuiPropertyKind::Enum, word);
        return;
    }
    if (value.Numbers.empty()) {
        throw NoCounterpart(
            Compose("the input \"", name, "\" of ", node.Name, " must be a number"));
    }
    const float number = value.Numbers.front();
    if (sign == '$')
        MaterialBuilder::Set(record, property,
                             Compose(static_cast<int>(std::clamp(number, -1e6f, 1e6f))));
    else
        MaterialBuilder::Set(record, property, GuiPropertyKind::Float, FormatNumber(number));
}

/// Returns the number of components that a node operates on.
int FreeCount(const InterchangeNode& node, const InterchangeAlternative& alternative,
              const InputValues& inputs)
{
    int count = 1;
    for (const InterchangePort& port : alternative.Inputs) {
        if (port.Count != 0)
            continue;
        const InterchangeValue& value = inputs.at(port.Input);
        if (value.IsConnected())
            count = std::max(count, value.Count);
        else if (!value.IsUniform())
            count = std::max(count, static_cast<int>(value.Numbers.size()));
        if (node.IsVector)
            count = std::max(count, value.Width);
    }
    return count;
}

int WidestInput(const InterchangeAlternative& alternative, const InputValues& inputs)
{
    int width = 1;
    for (const InterchangePort& port : alternative.Inputs) {
        if (port.Count == 0)
            width = std::max(width, inputs.at(port.Input).Width);
    }
    return width;
}

} // namespace

InterchangeGraph::Site InterchangeGraph::Site::Step(const std::string& name) const
{
    Site step;
    step.Owner = Owner.empty() ? Id : Owner;
    step.Id = name.empty() ? step.Owner : Compose(step.Owner, "_", name);
    step.Line = Line;
    step.IsStep = true;
    return step;
}

DocumentNode InterchangeGraph::Site::Record(const std::string& type) const
{
    DocumentNode record;
    record.Id = Id;
    record.Type = type;
    record.Line = Line;
    if (IsStep)
        return record;
    if (!Description.empty())
        MaterialBuilder::Set(record, "Description", GuiPropertyKind::String, Description);
    if (PositionX)
        MaterialBuilder::Set(record, "PositionX", GuiPropertyKind::Float, FormatNumber(*PositionX));
    if (PositionY)
        MaterialBuilder::Set(record, "PositionY", GuiPropertyKind::Float, FormatNumber(*PositionY));
    return record;
}

const InterchangeAlternative* InterchangeGraph::Choose(const InterchangeNode& node,
                                                       const InputValues& inputs,
                                                       const std::string& type)
{
    for (const InterchangeAlternative& alternative : node.Alternatives) {
        if (Holds(alternative.When, inputs, type))
            return &alternative;
    }
    return nullptr;
}

bool InterchangeGraph::Holds(const std::vector<InterchangeCondition>& conditions,
                             const InputValues& inputs, const std::string& type)
{
    return std::all_of(conditions.begin(), conditions.end(), [&](const auto& condition) {
        return Mox::Host::Holds(condition, inputs, type);
    });
}

InterchangeValue InterchangeGraph::Default(const std::string& text)
{
    InterchangeValue value;
    value.Text = text;
    value.Numbers = ParseNumbers(text);
    value.Width = std::max(1, static_cast<int>(value.Numbers.size()));
    if (IsGeometryName(text))
        value.Width = text == "UV0" ? 2 : 3;
    return value;
}

InterchangeValue InterchangeGraph::Supply(const InterchangeValue& value, const Site& site)
{
    if (value.IsConnected() || !IsGeometryName(value.Text))
        return value;
    Expression call;
    call.Name = value.Text;
    call.IsCall = true;
    return Call(call, {}, site.Step(value.Text));
}

InterchangeGraph::Values InterchangeGraph::Make(const InterchangeNode& node,
                                                const InterchangeAlternative& alternative,
                                                const InputValues& inputs, const Site& site)
{
    if (alternative.Kind == Carry::None)
        throw NoCounterpart(alternative.Note);
    if (alternative.Code == "image")
        return MakeTexture(alternative, inputs, site);
    if (alternative.Code == "stream")
        return MakeStream(inputs, site);
    if (alternative.Code == "constant")
        return MakeConstant(inputs, site);
    if (alternative.Code == "normalmap") {
        InputValues known = inputs;
        const InterchangeValue& in = inputs.at("in");
        known["value"] = in.IsUnpacked ? in
                                       : Evaluate(ParseFormula("mox_decode_normal( in )"), inputs,
                                                  site.Step("unpacked"));
        return {{"out", Evaluate(alternative.Is, known, site)}};
    }
    if (!alternative.Is.IsEmpty())
        return {{"out", Evaluate(alternative.Is, inputs, site)}};
    if (alternative.Code == "extract") {
        const InterchangeValue& index = inputs.at("index");
        const int number = index.Numbers.empty()
                               ? 0
                               : static_cast<int>(std::clamp(index.Numbers.front(), 0.0f, 3.0f));
        const InterchangeValue in = Supply(inputs.at("in"), site);
        if (site.IsStep && in.IsConnected())
            return {{"out", Component(in, number, site)}};
        InputValues components = MakeNode(node, alternative, inputs, site);
        const auto chosen = components.find(Compose(number));
        return {{"out", chosen == components.end() ? components["0"] : chosen->second}};
    }
    return MakeNode(node, alternative, inputs, site);
}

InterchangeValue InterchangeGraph::Evaluate(const Formula& formula, InputValues known,
                                            const Site& site)
{
    for (const Formula::Step& step : formula.Steps) {
        if (step.Name.empty())
            return EvaluateExpression(step.Value, known, site);
        known[step.Name] = EvaluateExpression(step.Value, known, site.Step(step.Name));
    }
    return {};
}

InterchangeValue InterchangeGraph::EvaluateExpression(const Expression& expression,
                                                      const InputValues& known, const Site& site)
{
    if (expression.IsCall)
        return Call(expression, known, site);
    if (!expression.Name.empty()) {
        const auto value = known.find(expression.Name);
        if (value == known.end())
            throw HostError({}, Compose("unknown value ", expression.Name, " in a formula"));
        return value->second;
    }
    InterchangeValue value;
    value.Numbers = expression.Numbers;
    value.Width = static_cast<int>(value.Numbers.size());
    return value;
}

InterchangeValue InterchangeGraph::Call(const Expression& call, const InputValues& known,
                                        const Site& site)
{
    const InterchangeNode* node = GetStandardNodes().Find(call.Name);
    if (!node || call.Arguments.size() > node->Inputs.size())
        throw HostError({}, Compose("a formula calls the unknown node ", call.Name));
    InputValues inputs;
    for (std::size_t i = 0; i < node->Inputs.size(); ++i) {
        const auto& [name, text] = node->Inputs[i];
        inputs[name] =
            i < call.Arguments.size()
                ? EvaluateExpression(call.Arguments[i], known, site.Step(call.Arguments[i].Name))
                : Default(text);
    }
    if (const auto folded = FoldCall(*node, inputs))
        return *folded;
    const InterchangeAlternative* alternative = Choose(*node, inputs, {});
    if (!alternative)
        throw NoCounterpart(Compose("no counterpart for these inputs of ", node->Name));
    Site step = site;
    step.IsStep = step.IsStep || alternative->Code == "extract";
    step.Type.clear(); // the type belongs to the whole formula, not to this step
    InputValues outputs = Make(*node, *alternative, inputs, step);
    return FindOutput(outputs, "out", site);
}

InterchangeGraph::Values InterchangeGraph::MakeNode(const InterchangeNode& node,
                                                    const InterchangeAlternative& alternative,
                                                    const InputValues& given, const Site& site)
{
    InputValues inputs = given;
    for (const InterchangePort& port : alternative.Inputs)
        inputs[port.Input] = Supply(given.at(port.Input), site);
    if (node.Name == "mox_normal_to_tangent") {
        const auto turned = _inTangentSpace.find(inputs.at("in").Node);
        if (turned != _inTangentSpace.end())
            return {{"out", turned->second}};
    }
    const bool isShared = alternative.Inputs.empty() && node.IsHelper;
    if (isShared && _shared.contains(node.Name))
        return _shared[node.Name];

    DocumentNode record = site.Record(alternative.Type);
    if (isShared)
        record.Id = alternative.Type;
    for (const auto& [property, text] : alternative.Settings)
        SetFromTable(record, property, text, inputs, node);
    const int free = FreeCount(node, alternative, inputs);
    const bool isWide = std::any_of(
        alternative.Inputs.begin(), alternative.Inputs.end(), [&](const InterchangePort& port) {
            const InterchangeValue& value = inputs.at(port.Input);
            return port.Count == 0 && value.IsConnected() && value.Count == free;
        });
    Feeds feeds;
    for (const InterchangePort& port : alternative.Inputs) {
        InterchangeValue value = inputs.at(port.Input);
        const int wanted = port.Count != 0 ? port.Count : free;
        const bool needsWidth = node.IsVector && port.Count == 0;
        if (!value.IsConnected()) {
            if (value.Numbers.empty())
                value.Numbers = {0.0f};
            const std::string* property =
                GetStandardNodes().FindProperty(alternative.Type, port.Port);
            if (property && value.IsUniform() && (!needsWidth || isWide || free == 1)) {
                MaterialBuilder::Set(record, *property, GuiPropertyKind::Float,
                                     FormatNumber(value.Numbers.front()));
                continue;
            }
            const int size = value.IsUniform() && !needsWidth && port.Count != 3 ? 1 : wanted;
            value = _builder.Resize(value, size, site.Id, site.Line);
            value = _builder.Constant(value.Numbers, Compose(site.Id, "_", port.Input), site.Line);
        } else if (value.Count != wanted && (value.Count != 1 || needsWidth)) {
            value = _builder.Resize(value, wanted, Compose(site.Id, "_", port.Input), site.Line);
        }
        feeds.emplace_back(port.Port, value);
    }
    const std::string id = AddNode(std::move(record), feeds, site);
    InputValues outputs;
    const int width = std::max(free, WidestInput(alternative, inputs));
    for (const InterchangePort& port : alternative.Outputs) {
        InterchangeValue& output = outputs[port.Input];
        output = MakePortValue(id, port.Port, port.Count != 0 ? port.Count : free);
        if (port.Count == 0)
            output.Width = width;
    }
    if (node.Name == "mox_normal_to_world")
        _inTangentSpace[id] = inputs.at("in");
    if (isShared)
        _shared[node.Name] = outputs;
    return outputs;
}
InterchangeValue InterchangeGraph::Component(const InterchangeValue& value, int index,
                                             const Site& site)
{
    if (value.Count == 1)
        return value;
    constexpr const char* ports[] = {"out_x", "out_y", "out_z", "out_w"};
    const Site step = site.Step("split");
    DocumentNode record = step.Record("CoreSwizzle");
    MaterialBuilder::Set(record, "Vector Type", "Vector");
    MaterialBuilder::Set(record, "Component Count", Compose(value.Count));
    const std::string id = AddNode(std::move(record), {{"in_vec", value}}, step);
    return MakePortValue(id, ports[std::min(index, value.Count - 1)], 1);
}

/// Adds a node with its edges. Identical steps of formulas share one node.
std::string InterchangeGraph::AddNode(DocumentNode record, const Feeds& feeds, const Site& site)
{
    std::string key = record.Type;
    for (const DocumentProperty& property : record.Properties)
        key += Compose("\n", property.Name, "=", property.Value);
    for (const auto& [port, value] : feeds)
        key += Compose("\n", port, "<", value.Node, ".", value.Port);
    const auto same = site.IsStep ? _steps.find(key) : _steps.end();
    if (same != _steps.end())
        return same->second;
    const std::string id = _builder.Add(std::move(record));
    for (const auto& [port, value] : feeds)
        _builder.Connect(value, id, port, site.Line);
    if (site.IsStep)
        _steps[key] = id;
    return id;
}

InterchangeValue InterchangeGraph::FindOutput(InputValues& outputs, const std::string& name,
                                              const Site& site)
{
    const auto found = outputs.find(name);
    if (found != outputs.end())
        return found->second;
    const auto only = outputs.find("out");
    if (only == outputs.end())
        return outputs.empty() ? InterchangeValue() : outputs.begin()->second;
    constexpr std::string_view components[] = {"r", "g", "b"};
    const auto index = std::find(std::begin(components), std::end(components), name);
    if (index != std::end(components) && only->second.IsConnected())
        return Component(only->second, static_cast<int>(index - std::begin(components)), site);
    if (name == "rgba" && only->second.IsConnected())
        return _builder.Resize(only->second, 4, site.Id, site.Line);
    return only->second;
}

} // namespace Mox::Host
