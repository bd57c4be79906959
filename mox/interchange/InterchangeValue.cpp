#include "mox/interchange/InterchangeValue.h"

#include "mox/document/PropertyText.h"

#include <algorithm>
#include <cmath>

namespace Mox::Host {

InterchangeValue MakePortValue(const std::string& node, const std::string& port, int count)
{
    InterchangeValue value;
    value.Node = node;
    value.Port = port;
    value.Count = count;
    value.Width = count;
    return value;
}

int WidthOfType(const std::string& type)
{
    if (type == "vector2")
        return 2;
    if (type == "vector3" || type == "color3")
        return 3;
    return type == "vector4" || type == "color4" ? 4 : 1;
}

std::vector<float> ParseNumbers(const std::string& text)
{
    if (text == "true")
        return {1.0f};
    if (text == "false")
        return {0.0f};
    std::vector<float> numbers;
    for (std::size_t begin = 0; begin <= text.size() && numbers.size() < 16;) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        std::string part = text.substr(begin, end - begin);
        part.erase(std::remove(part.begin(), part.end(), ' '), part.end());
        const auto number = ParseFloat(part);
        if (!number || !std::isfinite(*number))
            return {};
        numbers.push_back(*number);
        begin = end + 1;
    }
    return numbers;
}

std::vector<float> ParsePropertyNumbers(std::string text)
{
    std::replace(text.begin(), text.end(), ' ', ',');
    return ParseNumbers(text);
}

bool EqualsText(const InterchangeValue& value, const std::string& text)
{
    if (value.IsConnected() || value.Numbers.empty())
        return !value.IsConnected() && value.Text == text;
    std::vector<float> wanted = ParseNumbers(text);
    if (wanted.size() == 1)
        wanted.resize(value.Numbers.size(), wanted.front());
    if (value.Numbers.size() == 1 && !wanted.empty() && value.IsUniform())
        return std::all_of(wanted.begin(), wanted.end(),
                           [&](float number) { return number == value.Numbers.front(); });
    return wanted == value.Numbers;
}

std::string FormatNumbers(const std::vector<float>& numbers)
{
    std::string text;
    for (const float number : numbers)
        text += (text.empty() ? "" : ", ") + FormatNumber(number);
    return text;
}

} // namespace Mox::Host
