#include "mox/interchange/MaterialXElements.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/interchange/InterchangeValue.h"

#include <algorithm>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Test = InterchangeCondition::Test;

bool HasWord(const std::string& words, const std::string& word)
{
    return Compose(" ", words, " ").find(Compose(" ", word, " ")) != std::string::npos;
}

/// Returns the component count of the port connected to an input; 0 if it is not fixed or the node
/// has no ports.
int CountOf(const InterchangeAlternative& alternative, const std::string& input)
{
    for (const InterchangePort& port : alternative.Inputs) {
        if (port.Input == input)
            return port.Count;
    }
    return 0;
}

std::string RequiredType(const InterchangeAlternative& alternative, Test test,
                         const std::string& input)
{
    for (const InterchangeCondition& condition : alternative.When) {
        if (condition.What == test && condition.Input == input)
            return condition.Text;
    }
    return {};
}

/// Returns the common type of the inputs whose component count is not fixed.
std::string CommonType(const InterchangeNode& node, const InterchangeAlternative& alternative,
                       const MaterialXElements::Values& inputs)
{
    int width = 1;
    bool isColour = false;
    bool isVector = false;
    for (const auto& [name, value] : inputs) {
        if (CountOf(alternative, name) != 0 || HasWord(node.SingleInputs, name) ||
            HasWord(node.IntegerInputs, name))
            continue;
        const bool isUniform = std::adjacent_find(value.Numbers.begin(), value.Numbers.end(),
                                                  std::not_equal_to<>()) == value.Numbers.end();
        const int own = value.IsConnected() ? WidthOfType(value.Type)
                        : isUniform         ? 1
                                            : static_cast<int>(value.Numbers.size());
        if (own <= 1)
            continue;
        width = std::max(width, own);
        isColour |= value.IsConnected() && value.Type.starts_with("color");
        isVector |= value.IsConnected() && value.Type.starts_with("vector");
    }
    const bool mayBeColour = node.Kinds.empty() || HasWord(node.Kinds, "color");
    const bool mayBeVector = node.Kinds.empty() || HasWord(node.Kinds, "vector");
    return TypeOfWidth(width, mayBeColour && (isColour || !isVector || !mayBeVector));
}

/// Returns the type of an input, given the type of the inputs whose component count is not fixed.
std::string TypeOfInput(const InterchangeNode& node, const InterchangeAlternative& alternative,
                        const std::string& input, const std::string& type)
{
    if (HasWord(node.SingleInputs, input))
        return "float";
    if (HasWord(node.IntegerInputs, input))
        return "integer";
    const std::string required = RequiredType(alternative, Test::InputType, input);
    if (!required.empty())
        return required;
    const int count = CountOf(alternative, input);
    return count == 0 ? type : TypeOfWidth(count, !HasWord(node.Kinds, "vector"));
}

/// Returns whether the node accepts single numbers for some inputs together with a vector for
/// others.
bool KeepsFloats(const InterchangeNode& node, const MaterialXElements::Values& inputs)
{
    bool hasConnection = false;
    for (const auto& [name, value] : inputs) {
        if (!HasWord(node.FloatInputs, name))
            continue;
        if (value.IsConnected() ? WidthOfType(value.Type) > 1 : value.Numbers.size() > 1)
            return false;
        hasConnection |= value.IsConnected();
    }
    return hasConnection;
}

std::string MakeName(std::unordered_map<std::string, int>& taken, const std::string& wanted)
{
    std::string name = wanted;
    for (char& c : name) {
        if (!IsIdentifierPart(c))
            c = '_';
    }
    if (!IsIdentifier(name))
        name = "_" + name;
    return MakeUnique(taken, name);
}

} // namespace

MaterialXValue MakeOutput(const std::string& node, const std::string& type,
                          const std::string& output)
{
    MaterialXValue value;
    value.Node = node;
    value.Type = type;
    value.Output = output;
    return value;
}

MaterialXValue MakeNumber(float number)
{
    MaterialXValue value;
    value.Numbers = {number};
    return value;
}

std::string TypeOfWidth(int width, bool isColour)
{
    if (width <= 1)
        return "float";
    return Compose(isColour && width > 2 ? "color" : "vector", width);
}

std::string MaterialXElements::UniqueName(const std::string& wanted)
{
    return MakeName(_names, wanted);
}

MaterialXElement& MaterialXElements::Add(const std::string& category, const std::string& name,
                                         const std::string& type)
{
    MaterialXElement& element = Graph.emplace_back();
    element.Category = category;
    element.Name = name;
    element.Type = type;
    return element;
}

MaterialXValue MaterialXElements::Call(const InterchangeNode& node,
                                       const InterchangeAlternative& alternative,
                                       const Values& inputs, const std::string& name,
                                       std::string type)
{
    std::string common = CommonType(node, alternative, inputs);
    if (node.Kinds == "vector" && common == "float")
        common = "vector3"; // MaterialX has no scalar variant of the node
    const bool keepsFloats = common != "float" && KeepsFloats(node, inputs);
    std::vector<std::pair<std::string, MaterialXValue>> converted;
    for (const auto& [input, text] : node.Inputs) {
        const auto value = inputs.find(input);
        if (value == inputs.end())
            continue;
        const bool isFloat = keepsFloats && HasWord(node.FloatInputs, input);
        converted.emplace_back(
            input, Convert(value->second,
                           isFloat ? "float" : TypeOfInput(node, alternative, input, common)));
    }
    MaterialXValue result;
    if (type.empty())
        type = RequiredType(alternative, Test::NodeType, {});
    if (type.empty() && !node.Gives.empty())
        type = node.Gives;
    if (type.empty() && alternative.Outputs.size() == 1 && alternative.Outputs[0].Count != 0) {
        const bool isColour =
            node.Kinds.empty() ? !node.Inputs.empty() : HasWord(node.Kinds, "color");
        type = TypeOfWidth(alternative.Outputs[0].Count, isColour);
    }
    result.Type = type.empty() ? common : type;
    MaterialXElement& element =
        Add(node.Name, name, alternative.Outputs.size() > 1 ? "multioutput" : result.Type);
    for (const auto& [input, value] : converted)
        Feed(element, input, value);
    result.Node = element.Name;
    return result;
}

MaterialXValue MaterialXElements::Evaluate(const Formula& formula, Values known,
                                           const std::string& name)
{
    for (const Formula::Step& step : formula.Steps) {
        if (step.Name.empty())
            return EvaluateExpression(step.Value, known, name);
        known[step.Name] =
            EvaluateExpression(step.Value, known, UniqueName(Compose(name, "_", step.Name)));
    }
    return {};
}

MaterialXValue MaterialXElements::EvaluateExpression(const Expression& expression,
                                                     const Values& known, const std::string& name)
{
    if (!expression.IsCall && !expression.Name.empty()) {
        const auto value = known.find(expression.Name);
        if (value == known.end())
            throw HostError({}, Compose("unknown value ", expression.Name, " in a formula"));
        return value->second;
    }
    MaterialXValue value;
    value.Numbers = expression.Numbers;
    value.Type = TypeOfWidth(static_cast<int>(value.Numbers.size()), true);
    if (!expression.IsCall)
        return value;
    const InterchangeNode* node = GetStandardNodes().Find(expression.Name);
    if (!node || expression.Arguments.size() > node->Inputs.size())
        throw HostError({}, Compose("a formula calls the unknown node ", expression.Name));
    Values inputs;
    for (std::size_t i = 0; i < expression.Arguments.size(); ++i) {
        const Expression& argument = expression.Arguments[i];
        inputs[node->Inputs[i].first] = EvaluateExpression(
            argument, known,
            argument.IsCall ? UniqueName(Compose(name, "_", argument.Name)) : name);
    }
    // In MaterialX, alternatives differ only in their types, so the ports of the first alternative
    // that has any determine the outputs.
    const InterchangeAlternative* alternative = &node->Alternatives.front();
    for (const InterchangeAlternative& candidate : node->Alternatives) {
        if (candidate.Kind == Carry::Direct && candidate.Code.empty() && !candidate.Type.empty()) {
            alternative = &candidate;
            break;
        }
    }
    if (node->Name == "extract") { // its alternatives differ only in the type of the input
        MaterialXElement& extract = Add("extract", name, "float");
        Feed(extract, "in", inputs["in"]);
        Feed(extract, "index", Convert(inputs["index"], "integer"));
        value = {};
        value.Node = name;
        return value;
    }
    return Call(*node, *alternative, inputs, name);
}

MaterialXValue MaterialXElements::Convert(const MaterialXValue& value, const std::string& type)
{
    if (value.Type == type && (value.IsConnected() || !value.Numbers.empty()))
        return value;
    const int width = WidthOfType(type);
    MaterialXValue result;
    result.Type = type;
    if (!value.IsConnected()) {
        const float first = value.Numbers.empty() ? 0.0f : value.Numbers.front();
        result.Numbers = value.Numbers;
        result.Numbers.resize(static_cast<std::size_t>(width),
                              value.Numbers.size() == 1 ? first : 0.0f);
        return result;
    }
    const std::string key = Compose(value.Node, ".", value.Output, ">", type);
    const auto known = _converted.find(key);
    if (known != _converted.end())
        return known->second;
    if (width == 1) {
        MaterialXElement& extract = Add("extract", UniqueName(value.Node + "_first"), "float");
        Feed(extract, "in", value);
        extract.Inputs.push_back({"index", "integer", "0", {}, {}, {}, {}, {}});
        result.Node = extract.Name;
    } else {
        MaterialXElement& convert =
            Add("convert", UniqueName(Compose(value.Node, "_", type)), type);
        Feed(convert, "in", value);
        result.Node = convert.Name;
    }
    return _converted[key] = result;
}

void MaterialXElements::Feed(MaterialXElement& element, const std::string& input,
                             const MaterialXValue& value)
{
    MaterialXInput& added = element.Inputs.emplace_back();
    added.Name = input;
    added.Type = value.Type;
    if (value.IsConnected()) {
        added.Node = value.Node;
        added.Output = value.Output;
    } else {
        added.Value = FormatNumbers(value.Numbers);
    }
}

} // namespace Mox::Host
