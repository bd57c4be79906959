#include "mox/interchange/InterchangeGraph.h"

#include "mox/Text.h"
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
        return value.Text == condition.Text || EqualsText(value, condition.Text);
    }
}

DocumentNode Record(const Site& site, const std::string& type)
{
    DocumentNode record;
    record.Id = site.Id;
    record.Type = type;
    record.Line = site.Line;
    if (site.IsStep)
        return record;
    if (!site.Description.empty())
        MaterialBuilder::Set(record, "Description", GuiPropertyKind::String, site.Description);
    if (site.PositionX)
        MaterialBuilder::Set(record, "PositionX", GuiPropertyKind::Float,
                             FormatNumber(*site.PositionX));
    if (site.PositionY)
        MaterialBuilder::Set(record, "PositionY", GuiPropertyKind::Float,
                             FormatNumber(*site.PositionY));
    return record;
}

Site StepOf(const Site& site, const std::string& name)
{
    Site step;
    step.Owner = site.Owner.empty() ? site.Id : site.Owner;
    step.Id = name.empty() ? step.Owner : Compose(step.Owner, "_", name);
    step.Line = site.Line;
    step.IsStep = true;
    return step;
}

/// Sets a property as the table says.
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
        throw NoCounterpart(Compose("the input \"", name, "\" of ", node.Name,
                                    " must be a value and not a connection"));
    }
    const float number = value.Numbers.front();
    if (sign == '$')
        MaterialBuilder::Set(record, property,
                             Compose(static_cast<int>(std::clamp(number, -1e6f, 1e6f))));
    else
        MaterialBuilder::Set(record, property, GuiPropertyKind::Float, FormatNumber(number));
}

/// The number of components on which a node works.
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

InterchangeValue OutputOf(const std::string& id, const std::string& port, int count, int width)
{
    InterchangeValue value;
    value.Node = id;
    value.Port = port;
    value.Count = count;
    value.Width = width;
    return value;
}

} // namespace

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
    return Call(call, {}, StepOf(site, value.Text));
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
                                                  StepOf(site, "unpacked"));
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
        known[step.Name] = EvaluateExpression(step.Value, known, StepOf(site, step.Name));
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
            throw HostError({}, Compose("no value ", expression.Name, " in a formula"));
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
        throw HostError({}, Compose("a formula calls ", call.Name));
    InputValues inputs;
    for (std::size_t i = 0; i < node->Inputs.size(); ++i) {
        const auto& [name, text] = node->Inputs[i];
        inputs[name] =
            i < call.Arguments.size()
                ? EvaluateExpression(call.Arguments[i], known, StepOf(site, call.Arguments[i].Name))
                : Default(text);
    }
    if (const auto folded = FoldCall(*node, inputs))
        return *folded;
    const InterchangeAlternative* alternative = Choose(*node, inputs, {});
    if (!alternative)
        throw NoCounterpart(Compose("no counterpart for these inputs of ", node->Name));
    Site step = site;
    step.IsStep = step.IsStep || alternative->Code == "extract";
    step.Type.clear(); // which is that of the whole formula
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

    DocumentNode record = Record(site, alternative.Type);
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
    for (const InterchangePort& port : alternative.Outputs)
        outputs[port.Input] = OutputOf(id, port.Port, port.Count != 0 ? port.Count : free,
                                       port.Count != 0 ? port.Count : width);
    if (node.Name == "mox_normal_to_world")
        _inTangentSpace[id] = inputs.at("in");
    if (isShared)
        _shared[node.Name] = outputs;
    return outputs;
}

InterchangeGraph::Values InterchangeGraph::MakeTexture(const InterchangeAlternative& alternative,
                                                       const InputValues& inputs, const Site& site)
{
    const InterchangeValue& file = inputs.at("file");
    const InterchangeValue coordinate = Evaluate(alternative.Is, inputs, StepOf(site, "uv"));
    InputValues known = inputs;
    InputValues outputs;
    known["value"] = ReadTexture(file, inputs, coordinate, site);
    const int width = known["value"].Width;
    const bool hasAlpha = site.Type == "multioutput";
    if (hasAlpha)
        outputs["a"] = outputs["outa"] = OutputOf(known["value"].Node, "out_alpha", 1, 1);
    if (alternative.After.IsEmpty()) {
        outputs["out"] = known["value"];
        return outputs;
    }
    for (auto& [name, value] : known) {
        if (name != "value" && value.Width > width &&
            !(value.Numbers.empty() && !value.IsConnected()))
            value = _builder.Resize(value, width, Compose(site.Id, "_", name), site.Line);
    }
    outputs["out"] = Evaluate(alternative.After, known, StepOf(site, "value"));
    return outputs;
}

InterchangeValue InterchangeGraph::ReadTexture(const InterchangeValue& file,
                                               const InputValues& inputs,
                                               const InterchangeValue& coordinate, const Site& site)
{
    const bool isTriple = site.IsNormalMap || site.Type == "multioutput";
    const int width = isTriple ? 3 : WidthOfType(site.Type);
    const bool isColour = site.Type.starts_with("color") || site.Type == "multioutput";
    const char* kind = site.IsNormalMap ? "Normal"
                       : width <= 2     ? "Component"
                       : width == 3     ? "Colour"
                                        : "Vector";
    const bool isSrgb = isColour && (file.ColourSpace == "srgb_texture" ||
                                     file.ColourSpace.starts_with("g22_rec709"));
    DocumentNode record = Record(site, "CoreTexture");
    DocumentBinding binding{"texture", {}, {}, site.Line, {}};
    if (!file.Text.empty())
        binding.Values.push_back({"default", file.Text});
    const auto add = [&](std::string_view attribute, std::initializer_list<const char*> names,
                         std::initializer_list<std::pair<const char*, const char*>> words) {
        for (const char* name : names) {
            const auto input = inputs.find(name);
            for (const auto& [word, meaning] : words) {
                if (input != inputs.end() && input->second.Text == word)
                    binding.Values.push_back({std::string(attribute), meaning});
            }
        }
    };
    add("wrap_u", {"uaddressmode", "wrapS"},
        {{"mirror", "mirror"}, {"clamp", "clamp"}, {"constant", "clamp"}, {"black", "clamp"}});
    add("wrap_v", {"vaddressmode", "wrapT"},
        {{"mirror", "mirror"}, {"clamp", "clamp"}, {"constant", "clamp"}, {"black", "clamp"}});
    add("filter", {"filtertype"}, {{"closest", "nearest"}});

    std::string key;
    if (!file.Text.empty() || !file.Parameter.empty()) {
        key =
            Compose(file.Parameter, "\n", kind, isSrgb ? 1 : 0, site.Type == "multioutput" ? 1 : 0);
        for (const DocumentValue& value : binding.Values)
            key += "\n" + value.Name + "=" + value.Value;
    }
    const auto same = key.empty() ? _textures.end() : _textures.find(key);
    if (same != _textures.end()) {
        MaterialBuilder::Set(record, "Reference", GuiPropertyKind::Node, same->second);
    } else {
        MaterialBuilder::Set(record, "Colour Type", GuiPropertyKind::Enum, kind);
        MaterialBuilder::Set(record, "sRGB", isSrgb || site.IsNormalMap ? "true" : "false");
        if (site.Type == "multioutput" || width == 4)
            MaterialBuilder::Set(record, "Alpha", "true");
        binding.Tag = _builder.BindingName(file.Parameter.empty() ? site.Id : file.Parameter);
        MaterialBuilder::Set(record, "Name", GuiPropertyKind::String, binding.Tag);
        if (!binding.Values.empty())
            _builder.Bind(binding);
    }
    const std::string id = _builder.Add(std::move(record));
    if (same == _textures.end() && !key.empty())
        _textures[key] = id;
    InterchangeValue uv = _builder.Resize(Supply(coordinate, site), 2, id + "_uv", site.Line);
    if (!uv.IsConnected())
        uv = _builder.Constant(uv.Numbers, id + "_uv", site.Line);
    _builder.Connect(uv, id, "in_uv", site.Line);
    InterchangeValue value = OutputOf(id, width <= 2 ? "out_red" : "out_colour",
                                      width <= 2 ? 1 : width, width <= 2 ? 1 : width);
    if (site.IsNormalMap)
        value = OutputOf(id, "out_colour", 3, 3);
    value.IsUnpacked = site.IsNormalMap;
    if (width == 2) {
        DocumentNode merge = Record(StepOf(site, "xy"), "CoreSwizzle");
        MaterialBuilder::Set(merge, "Vector Type", "Uv");
        MaterialBuilder::Set(merge, "Component Count", "2");
        MaterialBuilder::Set(merge, "Reverse", "true");
        const std::string both = _builder.Add(std::move(merge));
        _builder.Connect(value, both, "in_x", site.Line);
        _builder.Connect(OutputOf(id, "out_green", 1, 1), both, "in_y", site.Line);
        value = OutputOf(both, "out_vec", 2, 2);
    }
    return value;
}

InterchangeGraph::Values InterchangeGraph::MakeStream(const InputValues& inputs, const Site& site)
{
    const auto text = [&](const char* input) {
        const auto found = inputs.find(input);
        return found == inputs.end() ? std::string() : found->second.Text;
    };
    const std::string property = text("geomprop") + text("varname");
    const bool isUv =
        site.Type.empty() || site.Type == "vector2" || (site.Type == "vector3" && property.empty());
    const std::string index = text("index").empty() ? "0" : text("index");
    const std::string name = !property.empty() ? property : Compose(isUv ? "uv" : "colour", index);
    const int width = isUv ? 2 : WidthOfType(site.Type);
    const char* kind = width == 4 ? "Vector" : width == 3 ? "Colour" : "Component";
    const std::string key = Compose(isUv ? "uv" : kind, "\n", name);
    if (!_streams.contains(key)) {
        DocumentNode record = Record(site, isUv ? "CoreUv" : "CoreVertexColour");
        if (site.IsStep || site.Type.empty())
            record.Id = name;
        MaterialBuilder::Set(record, "Name", GuiPropertyKind::String, _builder.BindingName(name));
        if (!isUv) {
            MaterialBuilder::Set(record, "Colour Type", GuiPropertyKind::Enum, kind);
            MaterialBuilder::Set(record, "Alpha", width == 4 ? "true" : "false");
        }
        _streams[key] = _builder.Add(std::move(record));
    }
    if (isUv)
        return {{"out", OutputOf(_streams[key], "read", 2, 2)}};
    return {{"out", OutputOf(_streams[key], width < 3 ? "out_red" : "out_colour",
                             width < 3 ? 1 : width, width < 3 ? 1 : width)}};
}

InterchangeGraph::Values InterchangeGraph::MakeConstant(const InputValues& inputs, const Site& site)
{
    const InterchangeValue& value = inputs.at("value");
    if (value.IsConnected() || value.Numbers.empty())
        return {{"out", value}};
    DocumentNode record = Record(site, "CoreConstant");
    if (!value.Parameter.empty()) {
        if (!value.Lowest.empty())
            MaterialBuilder::Set(record, "Min Scalar", GuiPropertyKind::Float, value.Lowest);
        if (!value.Highest.empty())
            MaterialBuilder::Set(record, "Max Scalar", GuiPropertyKind::Float, value.Highest);
        return {{"out", _builder.Parameter(value.Numbers, std::move(record), value.Parameter)}};
    }
    return {{"out", _builder.Locked(value.Numbers, std::move(record))}};
}

InterchangeValue InterchangeGraph::Component(const InterchangeValue& value, int index,
                                             const Site& site)
{
    if (value.Count == 1)
        return value;
    constexpr const char* ports[] = {"out_x", "out_y", "out_z", "out_w"};
    const Site step = StepOf(site, "split");
    DocumentNode record = Record(step, "CoreSwizzle");
    MaterialBuilder::Set(record, "Vector Type", "Vector");
    MaterialBuilder::Set(record, "Component Count", Compose(value.Count));
    const std::string id = AddNode(std::move(record), {{"in_vec", value}}, step);
    return OutputOf(id, ports[std::min(index, value.Count - 1)], 1, 1);
}

/// Adds a node with its edges. Steps of formulas that are the same are one node.
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
