#include "mox/xml/RootElement.h"

#include <libxml/xmlreader.h>

#include <memory>
#include <unistd.h>

namespace Mox::Host {

bool MayHaveRoot(const std::string& file, std::string_view name) noexcept
{
    if (access(file.c_str(), R_OK) != 0)
        return true; // libxml2 would print the reason
    const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
        xmlReaderForFile(file.c_str(), nullptr,
                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeTextReader);
    if (!reader)
        return true;
    while (xmlTextReaderRead(reader.get()) == 1) {
        if (xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT) {
            const xmlChar* root = xmlTextReaderConstName(reader.get());
            return std::string_view(reinterpret_cast<const char*>(root)) == name;
        }
    }
    return true;
}

} // namespace Mox::Host
