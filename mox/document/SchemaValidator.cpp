#include "mox/document/SchemaValidator.h"

#include <new>

namespace Mox::Host {

SchemaValidator::SchemaValidator(const MaterialSchema& schema)
    : _context(xmlRelaxNGNewValidCtxt(schema.Grammar()), xmlRelaxNGFreeValidCtxt)
{
    if (!_context)
        throw std::bad_alloc();
    xmlRelaxNGSetValidStructuredErrors(_context.get(), KeepFirst, this);
}

void SchemaValidator::Start(xmlNodePtr element)
{
    if (!_isValid || _whole)
        return;
    const int result = xmlRelaxNGValidatePushElement(_context.get(), element->doc, element);
    if (result == 0)
        _whole = element;
    else
        _isValid = result == 1;
}

void SchemaValidator::End(xmlNodePtr element)
{
    if (!_isValid || (_whole && element != _whole))
        return;
    const int result = _whole ? xmlRelaxNGValidateFullElement(_context.get(), element->doc, element)
                              : xmlRelaxNGValidatePopElement(_context.get(), element->doc, element);
    _whole = nullptr;
    _isValid = result == 1;
}

void SchemaValidator::KeepFirst(void* self, xmlErrorPtr error)
{
    std::string& message = static_cast<SchemaValidator*>(self)->_message;
    if (!message.empty() || !error->message)
        return;
    message = error->message;
    message.resize(std::min(message.find('\n'), message.size()));
}

} // namespace Mox::Host
