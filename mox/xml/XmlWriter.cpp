#include "mox/xml/XmlWriter.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

void AppendEscaped(std::string& text, std::string_view value)
{
    for (const char c : value) {
        switch (c) {
        case '&':
            text += "&amp;";
            break;
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        case '"':
            text += "&quot;";
            break;
        case '\t':
            text += "&#9;";
            break;
        case '\n':
            text += "&#10;";
            break;
        case '\r':
            text += "&#13;";
            break;
        default:
            text += c;
        }
    }
}

} // namespace

void XmlWriter::StartDocument()
{
    _text += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
}

void XmlWriter::StartElement(std::string_view name)
{
    CloseStartTag();
    Indent();
    _text += '<';
    _text += name;
    _open.emplace_back(name);
    _isInStartTag = true;
}

void XmlWriter::Attribute(std::string_view name, std::string_view value)
{
    if (!IsXmlText(value))
        Refuse(Compose("attribute \"", name, "\""));
    _text += ' ';
    _text += name;
    _text += "=\"";
    AppendEscaped(_text, value);
    _text += '"';
}

void XmlWriter::Comment(std::string_view text)
{
    if (!IsXmlText(text))
        Refuse("a comment");
    CloseStartTag();
    Indent();
    _text += "<!--";
    for (const char c : text) {
        // A parser would convert a carriage return to a line feed.
        if (c == '\r')
            continue;
        if (c == '-' && _text.back() == '-')
            _text += ' ';
        _text += c;
    }
    if (!text.empty() && _text.back() == '-')
        _text += ' ';
    _text += "-->\n";
}

void XmlWriter::EndElement()
{
    const std::string name = std::move(_open.back());
    _open.pop_back();
    if (std::exchange(_isInStartTag, false)) {
        _text += "/>\n";
        return;
    }
    Indent();
    _text += "</";
    _text += name;
    _text += ">\n";
}

std::string XmlWriter::Finish()
{
    return std::move(_text);
}

void XmlWriter::Refuse(const std::string& what) const
{
    throw HostError(Where, Compose("cannot be written: ", what,
                                   " contains a character that is not allowed in XML"));
}

void XmlWriter::CloseStartTag()
{
    if (std::exchange(_isInStartTag, false))
        _text += ">\n";
}

void XmlWriter::Indent()
{
    _text.append(2 * _open.size(), ' ');
}

} // namespace Mox::Host
