#pragma once

#include "mox/Export.h"

#include <libxml/tree.h>

#include <string>

namespace Mox::Materials {

/// Attributes of an XML element as UTF-8 strings and booleans.

MOX_API bool HasXmlAttribute(xmlNodePtr element, const std::string& name);

/// Sets an attribute, replacing an existing one.
/// @throws std::bad_alloc if libxml2 runs out of memory, as does SetXmlBool; the element then lacks
///         the attribute
MOX_API void SetXmlAttribute(xmlNodePtr element, const std::string& name, const std::string& value);

/// Sets an attribute to "Yes" or "No".
MOX_API void SetXmlBool(xmlNodePtr element, const std::string& name, bool value);

/// @throws ShaderError if libxml2 returns no value, because the attribute does not exist or because
///         memory has run out
MOX_API std::string GetXmlAttribute(xmlNodePtr element, const std::string& name);

/// Reads "Yes" as true and "No" as false, case-sensitively.
/// @throws ShaderError for any other value, and where GetXmlAttribute does
MOX_API bool GetXmlBool(xmlNodePtr element, const std::string& name);

} // namespace Mox::Materials
