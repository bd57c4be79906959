#include "mox/host/XmlWriter.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <libxml/parserInternals.h>

#include <new>

namespace Mox::Host {

namespace {

const xmlChar* Bytes(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

void Require(int result)
{
    if (result < 0)
        throw std::bad_alloc();
}

/// Whether a document can hold the text: it is UTF-8 without control characters but tab and line
/// ends.
bool IsXmlText(const std::string& text)
{
    for (std::size_t i = 0; i < text.size();) {
        int length = static_cast<int>(text.size() - i);
        const int character = xmlGetUTF8Char(Bytes(text.data() + i), &length);
        if (character < 0 || !IS_CHAR(character))
            return false;
        i += static_cast<std::size_t>(length);
    }
    return true;
}

} // namespace

XmlWriter::XmlWriter()
    : _buffer(xmlBufferCreate(), xmlBufferFree),
      _writer(_buffer ? xmlNewTextWriterMemory(_buffer.get(), 0) : nullptr, xmlFreeTextWriter)
{
    if (!_writer)
        throw std::bad_alloc();
    Require(xmlTextWriterSetIndent(_writer.get(), 1));
    Require(xmlTextWriterSetIndentString(_writer.get(), Bytes("  ")));
}

void XmlWriter::StartDocument()
{
    Require(xmlTextWriterStartDocument(_writer.get(), nullptr, "UTF-8", nullptr));
}

void XmlWriter::StartElement(const char* name)
{
    Require(xmlTextWriterStartElement(_writer.get(), Bytes(name)));
}

void XmlWriter::Attribute(const char* name, const std::string& value)
{
    if (!IsXmlText(value)) {
        throw HostError(
            {}, Materials::Compose("the value of \"", name, "\" has bytes that XML cannot hold"));
    }
    Require(xmlTextWriterWriteAttribute(_writer.get(), Bytes(name), Bytes(value.c_str())));
}

void XmlWriter::EndElement()
{
    Require(xmlTextWriterEndElement(_writer.get()));
}

std::string XmlWriter::Finish()
{
    Require(xmlTextWriterEndDocument(_writer.get()));
    Require(xmlTextWriterFlush(_writer.get()));
    return reinterpret_cast<const char*>(xmlBufferContent(_buffer.get()));
}

} // namespace Mox::Host
