#include "mox/preview/PreviewBindings.h"

#include "mox/Text.h"
#include "mox/bindings/FloatBinding.h"
#include "mox/graph/BindingsDocument.h"

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
    std::vector<float> numbers;
    if (binding.streamType == StreamType::Float &&
        (!Materials::ParseFloatList(value, numbers) || numbers.size() > binding.GetCount())) {
        throw HostError({}, Compose("\"", value, "\" is no value for \"", binding.tag,
                                    "\", which takes numbers with commas between them, at most ",
                                    binding.GetCount()));
    }
    binding.SetDefaultText(value);
}

} // namespace

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
