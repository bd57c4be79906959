#include "mox/bindings/TextureBinding.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
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
        SetXmlBool(element, "srgb", true);
    if (signedExpanded)
        SetXmlBool(element, "signed_expanded", true);
    if (!normalised)
        SetXmlBool(element, "normalised", false);
    if (!usageHint.empty())
        SetXmlAttribute(element, "usage_hint", usageHint);
    if (usingAlpha)
        SetXmlBool(element, "using_alpha", true);
}

void TextureBinding::ReadXml(xmlNodePtr element)
{
    srgb = false;
    signedExpanded = false;
    normalised = true;
    usageHint.clear();
    usingAlpha = false;
    Binding::ReadXml(element);
    if (HasXmlAttribute(element, "srgb"))
        srgb = GetXmlBool(element, "srgb");
    if (HasXmlAttribute(element, "signed_expanded"))
        signedExpanded = GetXmlBool(element, "signed_expanded");
    if (HasXmlAttribute(element, "normalised"))
        normalised = GetXmlBool(element, "normalised");
    if (HasXmlAttribute(element, "usage_hint"))
        usageHint = GetXmlAttribute(element, "usage_hint");
    if (HasXmlAttribute(element, "using_alpha"))
        usingAlpha = GetXmlBool(element, "using_alpha");
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
