#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Whether XML can hold a text: it is UTF-8 and has no control characters but tabs and line ends.
bool IsXmlText(std::string_view text);

/// Writes XML in UTF-8 with one element or comment on a line, indented by two blanks. Attributes
/// are escaped so that reading gives the same characters, line ends included; other characters than
/// ASCII stand for themselves. All values must be texts that XML can hold.
class XmlWriter
{
public:
    void StartDocument();
    void StartElement(std::string_view name);
    void Attribute(std::string_view name, std::string_view value);

    /// Two hyphens in a row, which a comment may not have, get a blank between them.
    void Comment(std::string_view text);
    void EndElement();

    /// Gives the text, to be called when all elements have ended.
    std::string Finish();

private:
    void CloseStartTag();
    void Indent();

    std::string _text;
    std::vector<std::string> _open;
    bool _isInStartTag = false;
};

} // namespace Mox::Host
