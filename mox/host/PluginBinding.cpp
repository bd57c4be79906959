#include "mox/host/PluginBinding.h"

#include "mox/Text.h"
#include "mox/bindings/TextureBinding.h"
#include "mox/host/HostError.h"

#include <utility>

namespace Mox::Host {

using Materials::Binding;
using Materials::Compose;
using Materials::StreamType;

namespace {

/// Releases a binding before the node that keeps its code loaded.
struct BindingRelease
{
    boost::shared_ptr<const void> Maker;
    boost::shared_ptr<Binding> Held;

    void operator()(Binding*) { Held.reset(); }
};

} // namespace

PluginBinding::PluginBinding(boost::shared_ptr<Binding> binding, Place where,
                             boost::shared_ptr<const void> maker)
    : _where(std::move(where))
{
    if (!binding)
        throw HostError(_where, "the node added a null binding");
    Binding* address = binding.get();
    _binding.reset(address, BindingRelease{std::move(maker), std::move(binding)});
}

PluginBinding PluginBinding::Create(StreamType stream, std::uint32_t count, Place where)
{
    return PluginBinding(Materials::CreateBinding(stream, "", count), std::move(where));
}

template <class Operation>
void PluginBinding::Call(const Place& where, const char* name, Operation operation) const
{
    try {
        operation();
    } catch (...) {
        ThrowAsHostError(where, Compose(name, " of the binding \"", _binding->tag, "\""));
    }
}

std::uint32_t PluginBinding::GetCount() const
{
    std::uint32_t count = 0;
    Call(_where, "GetCount", [&] { count = _binding->GetCount(); });
    return count;
}

float PluginBinding::GetDefault(std::uint32_t index) const
{
    float value = 0;
    Call(_where, "GetDefault", [&] { value = _binding->GetDefault(index); });
    return value;
}

std::string PluginBinding::GetDefaultText() const
{
    std::string text;
    Call(_where, "GetDefaultText", [&] { text = _binding->GetDefaultText(); });
    return text;
}

void PluginBinding::SetDefaultText(const std::string& text) const
{
    Call(_where, "SetDefaultText", [&] { _binding->SetDefaultText(text); });
}

void PluginBinding::WriteXml(xmlNodePtr element) const
{
    Call(_where, "WriteXml", [&] { _binding->WriteXml(element); });
}

void PluginBinding::ReadXml(const Place& where, xmlNodePtr element) const
{
    Call(where, "ReadXml", [&] { _binding->ReadXml(element); });
}

StreamType PluginBinding::Stream() const
{
    return _binding->streamType;
}

std::string PluginBinding::StreamName() const
{
    return _binding->GetStreamTypeName();
}

const std::string& PluginBinding::Tag() const
{
    return _binding->tag;
}

const std::string& PluginBinding::Group() const
{
    return _binding->group;
}

void PluginBinding::SetGroup(const std::string& group) const
{
    _binding->group = group;
}

const std::string& PluginBinding::DatasetModifiers() const
{
    return _binding->datasetModifiers;
}

bool PluginBinding::IsBasicColour() const
{
    return _binding->basicColour;
}

std::optional<TextureSettings> PluginBinding::Texture() const
{
    const auto* texture = dynamic_cast<const Materials::TextureBinding*>(_binding.get());
    if (!texture)
        return std::nullopt;
    return TextureSettings{texture->value, texture->srgb, texture->usageHint};
}

std::optional<StreamType> ParseStreamType(const std::string& word)
{
    for (std::uint32_t value = 1;; ++value) {
        const auto stream = static_cast<StreamType>(value);
        const auto binding = Materials::CreateBinding(stream, "", 1);
        if (!binding)
            return std::nullopt;
        if (binding->GetStreamTypeName() == word)
            return stream;
    }
}

} // namespace Mox::Host
