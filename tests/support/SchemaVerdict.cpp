#include "tests/support/SchemaVerdict.h"

#include <libxml/parser.h>
#include <libxml/relaxng.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

using Schema = std::unique_ptr<xmlRelaxNG, decltype(&xmlRelaxNGFree)>;

xmlRelaxNGPtr GetSchema(const std::string& file)
{
    static std::map<std::string, Schema> schemas;
    const auto known = schemas.find(file);
    if (known != schemas.end())
        return known->second.get();
    const std::unique_ptr<xmlRelaxNGParserCtxt, decltype(&xmlRelaxNGFreeParserCtxt)> parser(
        xmlRelaxNGNewParserCtxt(file.c_str()), xmlRelaxNGFreeParserCtxt);
    Schema schema(xmlRelaxNGParse(parser.get()), xmlRelaxNGFree);
    if (!schema)
        throw std::logic_error(file + " is not a schema");
    return schemas.emplace(file, std::move(schema)).first->second.get();
}

} // namespace

bool FollowsSchema(const std::string& text, const std::string& schema)
{
    const auto ignore = [](void*, xmlErrorPtr) {};
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET),
        xmlFreeDoc);
    if (!document)
        return false;
    const std::unique_ptr<xmlRelaxNGValidCtxt, decltype(&xmlRelaxNGFreeValidCtxt)> context(
        xmlRelaxNGNewValidCtxt(GetSchema(schema)), xmlRelaxNGFreeValidCtxt);
    xmlRelaxNGSetValidStructuredErrors(context.get(), ignore, nullptr);
    return xmlRelaxNGValidateDoc(context.get(), document.get()) == 0;
}
