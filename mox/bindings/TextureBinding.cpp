#include "mox/bindings/TextureBinding.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/bindings/DocumentKeys.h"
#include "mox/bindings/XmlAttributes.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace Mox::Materials {

TextureBinding::TextureBinding(StreamType newStreamType, const std::string& name,
                               std::uint32_t newCount)
    : StringBinding(newStreamType, name, newCount)
{}

TextureBinding::~TextureBinding() = default;

void TextureBinding::WriteXml(xmlNodePtr element) const
{
    Binding::WriteXml(element);
    if (srgb)
        SetXmlBool(element, BindingKeys::Srgb, true);
    if (signedExpanded)
        SetXmlBool(element, BindingKeys::SignedExpanded, true);
    if (!normalised)
        SetXmlBool(element, BindingKeys::Normalised, false);
    if (!usageHint.empty())
        SetXmlAttribute(element, BindingKeys::UsageHint, usageHint);
    if (usingAlpha)
        SetXmlBool(element, BindingKeys::UsingAlpha, true);
}

void TextureBinding::ReadXml(xmlNodePtr element)
{
    srgb = false;
    signedExpanded = false;
    normalised = true;
    usageHint.clear();
    usingAlpha = false;
    Binding::ReadXml(element);
    if (HasXmlAttribute(element, BindingKeys::Srgb))
        srgb = GetXmlBool(element, BindingKeys::Srgb);
    if (HasXmlAttribute(element, BindingKeys::SignedExpanded))
        signedExpanded = GetXmlBool(element, BindingKeys::SignedExpanded);
    if (HasXmlAttribute(element, BindingKeys::Normalised))
        normalised = GetXmlBool(element, BindingKeys::Normalised);
    if (HasXmlAttribute(element, BindingKeys::UsageHint))
        usageHint = GetXmlAttribute(element, BindingKeys::UsageHint);
    if (HasXmlAttribute(element, BindingKeys::UsingAlpha))
        usingAlpha = GetXmlBool(element, BindingKeys::UsingAlpha);
}

boost::shared_ptr<TextureBinding> AsTextureBinding(const boost::shared_ptr<Binding>& binding)
{
    if (binding->streamType != StreamType::Texture) {
        throw ShaderError(
            Compose("Cannot cast \"", binding->GetStreamTypeName(), "\" into a TextureBinding"));
    }
    return boost::static_pointer_cast<TextureBinding>(binding);
}

} // namespace Mox::Materials
