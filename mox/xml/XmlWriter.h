#pragma once

#include "mox/host/HostError.h"

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Writes XML in UTF-8 with one element or comment per line, indented by two spaces. Attributes are
/// escaped so that reading them restores the same characters, including line breaks; non-ASCII
/// characters are written unescaped.
class XmlWriter
{
public:
    void StartDocument();
    void StartElement(std::string_view name);

    /// @throws HostError if XML cannot represent the value
    void Attribute(std::string_view name, std::string_view value);

    /// Writes a comment and inserts a space between two consecutive hyphens, which XML does not
    /// allow.
    /// @throws HostError if XML cannot represent the comment
    void Comment(std::string_view text);
    void EndElement();

    /// Returns the document; must be called only once, after all elements have ended.
    std::string Finish();

    Place Where; ///< location of the data being written, for errors

private:
    [[noreturn]] void Refuse(const std::string& what) const;
    void CloseStartTag();
    void Indent();

    std::string _text;
    std::vector<std::string> _open;
    bool _isInStartTag = false;
};

} // namespace Mox::Host
