#pragma once

#include <libxml/xmlwriter.h>

#include <memory>
#include <string>

namespace Mox::Host {

/// Writes XML text with one element on a line, indented by two blanks; attributes are escaped so
/// that reading gives the same characters, line ends included.
class XmlWriter
{
public:
    /// @throws std::bad_alloc, as all operations do, if libxml2 has no memory
    XmlWriter();

    void StartDocument();
    void StartElement(const char* name);

    /// @throws HostError if the value is no UTF-8 or has control characters but tab and line ends
    void Attribute(const char* name, const std::string& value);
    void EndElement();

    /// Ends what is open and gives the text.
    std::string Finish();

private:
    std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> _buffer;
    std::unique_ptr<xmlTextWriter, decltype(&xmlFreeTextWriter)> _writer;
};

} // namespace Mox::Host
