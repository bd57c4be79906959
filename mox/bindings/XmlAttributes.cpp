#include "mox/bindings/XmlAttributes.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <memory>
#include <new>

namespace Mox::Materials {

namespace {

const xmlChar* Bytes(const std::string& text)
{
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string ToString(const xmlChar* text)
{
    return text ? reinterpret_cast<const char*>(text) : std::string();
}

struct XmlFree
{
    void operator()(xmlChar* text) const { xmlFree(text); }
};

/// Whether an attribute is complete. When memory runs out, libxml2 reports it only for the
/// attribute record, not for its name and value.
bool Holds(const xmlAttr& attribute, const std::string& value)
{
    const xmlNode* text = attribute.children;
    return attribute.name && text && xmlStrEqual(text->content, Bytes(value));
}

} // namespace

bool HasXmlAttribute(xmlNodePtr element, const std::string& name)
{
    return xmlHasProp(element, Bytes(name)) != nullptr;
}

void SetXmlAttribute(xmlNodePtr element, const std::string& name, const std::string& value)
{
    const xmlAttrPtr attribute = xmlSetProp(element, Bytes(name), Bytes(value));
    if (attribute && Holds(*attribute, value))
        return;
    if (attribute)
        xmlRemoveProp(attribute);
    throw std::bad_alloc();
}

void SetXmlBool(xmlNodePtr element, const std::string& name, bool value)
{
    SetXmlAttribute(element, name, value ? "Yes" : "No");
}

std::string GetXmlAttribute(xmlNodePtr element, const std::string& name)
{
    const std::unique_ptr<xmlChar, XmlFree> value(xmlGetProp(element, Bytes(name)));
    if (!value) {
        throw ShaderError(Compose("failed to find \"", name, "\" attribute on \"",
                                  ToString(element->name), "\" element"));
    }
    return ToString(value.get());
}

bool GetXmlBool(xmlNodePtr element, const std::string& name)
{
    const std::string value = GetXmlAttribute(element, name);
    if (value != "Yes" && value != "No") {
        throw ShaderError(
            Compose("attribute \"", name, "\" contains invalid boolean data \"", value, "\""));
    }
    return value == "Yes";
}

} // namespace Mox::Materials
