#include "tests/support/SchemaVerdict.h"

#include <libxml/parser.h>
#include <libxml/relaxng.h>

#include <memory>
#include <stdexcept>

namespace {

using Schema = std::unique_ptr<xmlRelaxNG, decltype(&xmlRelaxNGFree)>;

xmlRelaxNGPtr TheSchema()
{
    static const Schema schema = [] {
        const std::unique_ptr<xmlRelaxNGParserCtxt, decltype(&xmlRelaxNGFreeParserCtxt)> parser(
            xmlRelaxNGNewParserCtxt(MOX_SCHEMA), xmlRelaxNGFreeParserCtxt);
        return Schema(xmlRelaxNGParse(parser.get()), xmlRelaxNGFree);
    }();
    if (!schema)
        throw std::logic_error("the schema of material documents is none");
    return schema.get();
}

} // namespace

bool FollowsSchema(const std::string& text)
{
    const auto ignore = [](void*, xmlErrorPtr) {};
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET),
        xmlFreeDoc);
    if (!document)
        return false;
    const std::unique_ptr<xmlRelaxNGValidCtxt, decltype(&xmlRelaxNGFreeValidCtxt)> context(
        xmlRelaxNGNewValidCtxt(TheSchema()), xmlRelaxNGFreeValidCtxt);
    xmlRelaxNGSetValidStructuredErrors(context.get(), ignore, nullptr);
    return xmlRelaxNGValidateDoc(context.get(), document.get()) == 0;
}
