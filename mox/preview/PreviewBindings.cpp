#include "mox/preview/PreviewBindings.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::StreamType;

ParameterKind KindOf(StreamType type)
{
    switch (type) {
    case StreamType::Texture:
        return ParameterKind::Sampler;
    case StreamType::Float:
        return ParameterKind::Uniform;
    default:
        return ParameterKind::VertexStream;
    }
}

void SetValue(const PluginBinding& binding, const std::string& value)
{
    if (binding.Stream() == StreamType::Float) {
        const auto numbers = ParseNumbers(value);
        if (!numbers || numbers->size() > binding.GetCount()) {
            throw HostError({}, Compose("\"", value, "\" is not a valid value for \"",
                                        binding.Tag(), "\"; expected at most ", binding.GetCount(),
                                        " numbers separated by commas"));
        }
    }
    binding.SetDefaultText(value);
}

} // namespace

std::optional<std::vector<float>> ParseNumbers(std::string_view text)
{
    std::vector<float> numbers;
    for (bool isLast = false; !isLast;) {
        const std::size_t comma = text.find(',');
        isLast = comma == std::string_view::npos;
        std::string_view part = text.substr(0, comma);
        part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
        part = part.substr(0, part.find_last_not_of(' ') + 1);
        const auto number = ParseFloat(part);
        if (!number || !std::isfinite(*number))
            return std::nullopt;
        numbers.push_back(*number);
        text.remove_prefix(isLast ? text.size() : comma + 1);
    }
    return numbers;
}

PreviewBindings::PreviewBindings(const MaterialGraph& graph) : _bindings(CreateBindings(graph))
{
    for (std::size_t i = 0; i < _bindings.size(); ++i)
        _byName.emplace(std::pair(KindOf(_bindings[i].Stream()), _bindings[i].Tag()), i);
}

bool PreviewBindings::Set(const std::string& name, const std::string& value)
{
    bool isKnown = false;
    for (const PluginBinding& binding : _bindings) {
        if (binding.Tag() != name)
            continue;
        SetValue(binding, value);
        isKnown = true;
    }
    return isKnown;
}

const PluginBinding* PreviewBindings::Find(const ProgramParameter& parameter) const
{
    const auto binding = _byName.find({parameter.Kind, parameter.Name});
    return parameter.IsBinding && binding != _byName.end() ? &_bindings[binding->second] : nullptr;
}

std::string PreviewBindings::ListNames() const
{
    std::set<std::string> names;
    for (const PluginBinding& binding : _bindings)
        names.insert(binding.Tag());
    std::string text;
    for (const std::string& name : names)
        text += Compose(text.empty() ? "\"" : ", \"", name, "\"");
    return text;
}

} // namespace Mox::Host
