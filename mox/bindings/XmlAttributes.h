#pragma once

#include "mox/Export.h"

#include <libxml/tree.h>

#include <string>

namespace Mox::Materials {

/// Attributes of an XML element as strings and booleans. Texts are UTF-8.

MOX_API bool HasXmlAttribute(xmlNodePtr element, const std::string& name);

/// Sets an attribute, replacing one of that name.
/// @throws std::bad_alloc if libxml2 has no memory, as SetXmlBool does; the element has no such
///         attribute then
MOX_API void SetXmlAttribute(xmlNodePtr element, const std::string& name, const std::string& value);

/// Sets an attribute to "Yes" or "No".
MOX_API void SetXmlBool(xmlNodePtr element, const std::string& name, bool value);

/// @throws ShaderError if libxml2 returns no value, because the element has no such attribute or
///         because memory has run out
MOX_API std::string GetXmlAttribute(xmlNodePtr element, const std::string& name);

/// Exactly "Yes" is true and exactly "No" is false.
/// @throws ShaderError for any other text, and where GetXmlAttribute does
MOX_API bool GetXmlBool(xmlNodePtr element, const std::string& name);

} // namespace Mox::Materials
