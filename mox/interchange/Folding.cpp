#include "mox/interchange/Folding.h"

#include <algorithm>
#include <cmath>

namespace Mox::Host {

namespace {

using InputValues = InterchangeGraph::Values;

float At(const InterchangeValue& value, std::size_t index)
{
    return value.Numbers.size() == 1 ? value.Numbers.front() : value.Numbers[index];
}

bool AreNumbers(const InterchangeNode& node, const InputValues& inputs)
{
    std::size_t size = 1;
    for (const auto& [name, text] : node.Inputs) {
        const InterchangeValue& value = inputs.at(name);
        if (value.IsConnected() || value.Numbers.empty())
            return false;
        if (value.Numbers.size() > 1 && size > 1 && value.Numbers.size() != size)
            return false;
        size = std::max(size, value.Numbers.size());
    }
    return true;
}

/// Converts a texture value from sRGB to linear light.
float DecodeSrgb(float number)
{
    return number <= 0.04045f ? number / 12.92f : std::pow((number + 0.055f) / 1.055f, 2.4f);
}

/// Combines single numbers into one value.
InterchangeValue Combine(const InterchangeNode& node, const InputValues& inputs)
{
    InterchangeValue result;
    for (const auto& [name, text] : node.Inputs)
        result.Numbers.push_back(At(inputs.at(name), 0));
    result.Width = static_cast<int>(result.Numbers.size());
    return result;
}

std::optional<InterchangeValue> FoldNumbers(const InterchangeNode& node, const InputValues& inputs)
{
    const InterchangeValue& first = inputs.at(node.Inputs.front().first);
    const InterchangeValue& second = inputs.at(node.Inputs.back().first);
    InterchangeValue result;
    if (node.Name == "extract") {
        const auto index = static_cast<std::size_t>(std::max(0.0f, second.Numbers.front()));
        result.Numbers = {At(first, std::min(index, first.Numbers.size() - 1))};
        return result;
    }
    const auto size = std::max(first.Numbers.size(), second.Numbers.size());
    if (node.Name == "dotproduct") {
        float sum = 0.0f;
        for (std::size_t i = 0; i < size; ++i)
            sum += At(first, i) * At(second, i);
        result.Numbers = {sum};
        return result;
    }
    for (std::size_t i = 0; i < size; ++i) {
        const float a = At(first, i);
        const float b = At(second, i);
        if (node.Name == "add")
            result.Numbers.push_back(a + b);
        else if (node.Name == "subtract")
            result.Numbers.push_back(a - b);
        else if (node.Name == "multiply")
            result.Numbers.push_back(a * b);
        else if (node.Name == "divide")
            result.Numbers.push_back(a / b);
        else if (node.Name == "mox_gamma")
            result.Numbers.push_back(std::pow(std::max(a, 0.0f), b));
        else if (node.Name == "mox_srgb")
            result.Numbers.push_back(DecodeSrgb(a));
        else
            return std::nullopt;
    }
    if (!std::all_of(result.Numbers.begin(), result.Numbers.end(),
                     [](float number) { return std::isfinite(number); }))
        return std::nullopt;
    result.Width = static_cast<int>(size);
    return result;
}

} // namespace

std::optional<InterchangeValue> FoldCall(const InterchangeNode& node, const InputValues& inputs)
{
    for (const auto& [input, value] : node.Neutral) {
        if (EqualsText(inputs.at(input), value)) {
            const bool isFirst = input == node.Inputs.front().first;
            return inputs.at(isFirst ? node.Inputs.back().first : node.Inputs.front().first);
        }
    }
    if (node.Name == "mix") {
        if (EqualsText(inputs.at("mix"), "0"))
            return inputs.at("bg");
        if (EqualsText(inputs.at("mix"), "1"))
            return inputs.at("fg");
    }
    if (node.Inputs.empty() || !AreNumbers(node, inputs))
        return std::nullopt;
    if (node.Name == "combine3")
        return Combine(node, inputs);
    return node.Inputs.size() <= 2 ? FoldNumbers(node, inputs) : std::nullopt;
}

} // namespace Mox::Host
