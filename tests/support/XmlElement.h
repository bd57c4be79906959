#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <string>
#include <vector>

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

    /// The attributes in the order in which they were set, such as `gui="slider"`.
    std::vector<std::string> AttributeList() const
    {
        std::vector<std::string> list;
        for (const xmlAttr* attribute = Get()->properties; attribute; attribute = attribute->next) {
            std::string& text = list.emplace_back(reinterpret_cast<const char*>(attribute->name));
            text += "=\"";
            if (attribute->children)
                text += reinterpret_cast<const char*>(attribute->children->content);
            text += "\"";
        }
        return list;
    }

    /// The same as one string, separated by spaces.
    std::string Attributes() const
    {
        std::string text;
        for (const std::string& attribute : AttributeList())
            text += (text.empty() ? "" : " ") + attribute;
        return text;
    }

private:
    struct Free
    {
        void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    };
    std::unique_ptr<xmlDoc, Free> _document;
};
