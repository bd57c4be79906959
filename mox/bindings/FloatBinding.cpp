#include "mox/bindings/FloatBinding.h"

#include "mox/Text.h"
#include "mox/bindings/ClassicLocale.h"

#include <algorithm>
#include <cstdio>

namespace Mox::Materials {

namespace {

using Column = float FloatRange::*;

float Get(const std::vector<FloatRange>& ranges, Column column, bool isSet, std::uint32_t index)
{
    return isSet && index < ranges.size() ? ranges[index].*column : 0.0f;
}

void Set(std::vector<FloatRange>& ranges, Column column, bool& isSet, std::uint32_t index,
         float value)
{
    if (index >= ranges.size())
        return;
    ranges[index].*column = value;
    isSet = true;
}

void SetText(std::vector<FloatRange>& ranges, Column column, bool& isSet, const std::string& text)
{
    std::vector<float> values;
    if (!ParseFloatList(text, values))
        return;
    float carried = 0.0f;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        if (i < values.size())
            carried = values[i];
        ranges[i].*column = carried;
    }
    isSet = true;
}

std::string GetText(const std::vector<FloatRange>& ranges, Column column, bool isSet)
{
    std::string text;
    if (!isSet)
        return text;
    for (const FloatRange& range : ranges)
        text += Compose(text.empty() ? "" : ", ", range.*column);
    return text;
}

} // namespace

FloatBinding::FloatBinding(StreamType newStreamType, const std::string& name,
                           std::uint32_t newCount)
    : Binding(newStreamType, name, newCount), ranges(newCount)
{}

FloatBinding::~FloatBinding() = default;

std::uint32_t FloatBinding::GetCount() const
{
    return static_cast<std::uint32_t>(ranges.size());
}

void FloatBinding::SetCount(std::uint32_t newCount)
{
    const FloatRange last = ranges.empty() ? FloatRange() : ranges.back();
    ranges.resize(newCount, last);
}

float FloatBinding::GetMin(std::uint32_t index) const
{
    return Get(ranges, &FloatRange::min, hasMin, index);
}

float FloatBinding::GetMax(std::uint32_t index) const
{
    return Get(ranges, &FloatRange::max, hasMax, index);
}

float FloatBinding::GetDefault(std::uint32_t index) const
{
    return Get(ranges, &FloatRange::default_, hasDefault, index);
}

void FloatBinding::SetMin(std::uint32_t index, float newValue)
{
    Set(ranges, &FloatRange::min, hasMin, index, newValue);
}

void FloatBinding::SetMax(std::uint32_t index, float newValue)
{
    Set(ranges, &FloatRange::max, hasMax, index, newValue);
}

void FloatBinding::SetDefault(std::uint32_t index, float newValue)
{
    Set(ranges, &FloatRange::default_, hasDefault, index, newValue);
}

void FloatBinding::SetMinText(const std::string& text)
{
    SetText(ranges, &FloatRange::min, hasMin, text);
}

void FloatBinding::SetMaxText(const std::string& text)
{
    SetText(ranges, &FloatRange::max, hasMax, text);
}

void FloatBinding::SetDefaultText(const std::string& text)
{
    SetText(ranges, &FloatRange::default_, hasDefault, text);
}

std::string FloatBinding::GetMinText() const
{
    return GetText(ranges, &FloatRange::min, hasMin);
}

std::string FloatBinding::GetMaxText() const
{
    return GetText(ranges, &FloatRange::max, hasMax);
}

std::string FloatBinding::GetDefaultText() const
{
    return GetText(ranges, &FloatRange::default_, hasDefault);
}

std::vector<std::string> SplitString(const std::string& text, char delimiter)
{
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find(delimiter, begin), text.size());
        if (end > begin)
            pieces.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return pieces;
}

bool ParseFloatList(const std::string& text, std::vector<float>& values)
{
    values.clear();
    const ClassicLocale scope;
    for (const std::string& piece : SplitString(text, ',')) {
        float value = 0.0f;
        if (std::sscanf(piece.c_str(), "%f", &value) != 1) {
            values.clear();
            return false;
        }
        values.push_back(value);
    }
    return true;
}

} // namespace Mox::Materials
