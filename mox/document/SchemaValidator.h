#pragma once

#include "mox/document/MaterialSchema.h"

#include <memory>
#include <string>

namespace Mox::Host {

/// Lets libxml2 decide whether a document follows the schema, while it is being parsed.
class SchemaValidator
{
public:
    /// @param schema must outlive the validator
    explicit SchemaValidator(const MaterialSchema& schema);

    /// Both are to be called for every element, in the order of the document. Behind the first
    /// error they do nothing: libxml2 only knows what follows from it.
    void Start(xmlNodePtr element);
    void End(xmlNodePtr element);

    bool IsValid() const { return _isValid; }

    /// What libxml2 says of the first error.
    const std::string& Message() const { return _message; }

private:
    static void KeepFirst(void* self, xmlErrorPtr error);

    std::unique_ptr<xmlRelaxNGValidCtxt, decltype(&xmlRelaxNGFreeValidCtxt)> _context;
    xmlNodePtr _whole = nullptr; ///< an element that can only be judged at its end
    bool _isValid = true;
    std::string _message;
};

} // namespace Mox::Host
