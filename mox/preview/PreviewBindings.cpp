#include "mox/preview/PreviewBindings.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Binding;
using Materials::Compose;
using Materials::StreamType;

template <class Matches>
const Binding* Find(const Materials::Material& material, const std::string& name, Matches matches)
{
    for (const auto& binding : material.Bindings) {
        if (binding->tag == name && matches(binding->streamType))
            return binding.get();
    }
    return nullptr;
}

void SetValue(Binding& binding, const std::string& value)
{
    if (binding.streamType == StreamType::Float) {
        const auto numbers = ParseNumbers(value);
        if (!numbers || numbers->size() > binding.GetCount()) {
            throw HostError({},
                            Compose("\"", value, "\" is no value for \"", binding.tag,
                                    "\", which takes numbers with commas between them, at most ",
                                    binding.GetCount()));
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

PreviewBindings::PreviewBindings(const MaterialGraph& graph) : _material(CreateBindings(graph))
{}

bool PreviewBindings::Set(const std::string& name, const std::string& value)
{
    bool isKnown = false;
    for (const auto& binding : _material->Bindings) {
        if (binding->tag != name)
            continue;
        SetValue(*binding, value);
        isKnown = true;
    }
    return isKnown;
}

const Binding* PreviewBindings::FindStream(const std::string& name) const
{
    return Find(*_material, name, [](StreamType type) {
        return type != StreamType::Texture && type != StreamType::Float;
    });
}

const Binding* PreviewBindings::FindTexture(const std::string& name) const
{
    return Find(*_material, name, [](StreamType type) { return type == StreamType::Texture; });
}

const Binding* PreviewBindings::FindFloat(const std::string& name) const
{
    return Find(*_material, name, [](StreamType type) { return type == StreamType::Float; });
}

std::string PreviewBindings::ListNames() const
{
    std::set<std::string> names;
    for (const auto& binding : _material->Bindings)
        names.insert(binding->tag);
    std::string text;
    for (const std::string& name : names)
        text += Compose(text.empty() ? "\"" : ", \"", name, "\"");
    return text;
}

} // namespace Mox::Host
