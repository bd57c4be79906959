#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <string>

/// An XML element with its document.
class XmlElement
{
public:
    /// Creates an element <binding> with these attributes, such as `gui="slider" uv="a"`.
    explicit XmlElement(const std::string& attributes = "")
    {
        const std::string text = "<binding " + attributes + "/>";
        _document.reset(xmlReadMemory(text.data(), static_cast<int>(text.size()), "test", nullptr,
                                      XML_PARSE_NONET | XML_PARSE_HUGE));
    }

    xmlNodePtr Get() const { return xmlDocGetRootElement(_document.get()); }

    /// The attributes in the order in which they were set, such as `gui="slider" uv="a"`.
    std::string Attributes() const
    {
        std::string text;
        for (const xmlAttr* attribute = Get()->properties; attribute; attribute = attribute->next) {
            text += text.empty() ? "" : " ";
            text += reinterpret_cast<const char*>(attribute->name);
            text += "=\"";
            if (attribute->children)
                text += reinterpret_cast<const char*>(attribute->children->content);
            text += "\"";
        }
        return text;
    }

private:
    struct Free
    {
        void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    };
    std::unique_ptr<xmlDoc, Free> _document;
};
