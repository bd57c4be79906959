#pragma once

#include "mox/host/HostError.h"

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Writes XML in UTF-8 with one element or comment on a line, indented by two spaces. Attributes
/// are escaped so that reading yields the same characters, line ends included; characters outside
/// ASCII are written as they are.
class XmlWriter
{
public:
    void StartDocument();
    void StartElement(std::string_view name);

    /// @throws HostError if XML cannot hold the value
    void Attribute(std::string_view name, std::string_view value);

    /// Two hyphens in a row, which a comment may not have, get a space between them.
    /// @throws HostError as for an attribute
    void Comment(std::string_view text);
    void EndElement();

    /// Returns the document; to be called once, when all elements have ended.
    std::string Finish();

    Place Where; ///< of what is being written, for errors

private:
    [[noreturn]] void Refuse(const std::string& what) const;
    void CloseStartTag();
    void Indent();

    std::string _text;
    std::vector<std::string> _open;
    bool _isInStartTag = false;
};

} // namespace Mox::Host
