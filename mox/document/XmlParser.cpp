#include "mox/document/XmlParser.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <libxml/SAX2.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <memory>
#include <new>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::string_view blanks = " \t\r\n";

std::string_view ViewOf(const xmlChar* text)
{
    return text ? reinterpret_cast<const char*>(text) : std::string_view();
}

int CountLines(std::string_view text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

/// Column of a place in a text, in characters; 0, not known, if the line is very long.
int ColumnOf(std::string_view text, std::size_t place)
{
    constexpr std::size_t longest = 10000;
    int column = 1;
    for (std::size_t i = place; i > 0 && text[i - 1] != '\n'; --i) {
        if (place - i >= longest)
            return 0;
        if ((static_cast<unsigned char>(text[i - 1]) & 0xC0) != 0x80)
            ++column;
    }
    return column;
}

/// Where an attribute begins in the start tag that begins at a place.
std::size_t FindInTag(std::string_view text, std::size_t begin, std::string_view attribute)
{
    std::size_t place = text.find_first_of(" \t\r\n/>", begin);
    while (true) {
        const std::size_t name = text.find_first_not_of(blanks, place);
        const std::size_t end = text.find_first_of(" \t\r\n=>", name);
        if (end == std::string_view::npos || text[end] == '>')
            return begin;
        if (text.substr(name, end - name) == attribute)
            return name;
        const std::size_t quote = text.find_first_of("\"'", end);
        place = quote == std::string_view::npos ? quote : text.find(text[quote], quote + 1);
        if (place == std::string_view::npos)
            return begin;
        ++place;
    }
}

/// Line of the first start tag that has too many attributes, or 0: libxml2 compares every two of
/// them.
int FindCrowdedTag(std::string_view text, int mostAttributes)
{
    std::size_t place = 0;
    while ((place = text.find('<', place)) != std::string_view::npos) {
        const std::string_view markup = text.substr(place, 9);
        if (markup.starts_with("<!--")) {
            place = text.find("-->", place + 4);
        } else if (markup == "<![CDATA[") {
            place = text.find("]]>", place);
        } else if (markup.starts_with("<?")) {
            place = text.find("?>", place);
        } else {
            const std::size_t begin = place;
            int count = 0;
            while ((place = text.find_first_of("\"'<>", place + 1)) != std::string_view::npos &&
                   text[place] != '<' && text[place] != '>') {
                if (++count > mostAttributes)
                    return 1 + CountLines(text.substr(0, begin));
                place = text.find(text[place], place + 1);
                if (place == std::string_view::npos)
                    return 0;
            }
        }
        if (place == std::string_view::npos)
            return 0;
    }
    return 0;
}

std::string NameOf(const xmlNs* space, const xmlChar* name)
{
    const std::string_view prefix = space ? ViewOf(space->prefix) : std::string_view();
    return prefix.empty() ? std::string(ViewOf(name)) : Compose(prefix, ":", ViewOf(name));
}

/// Whether libxml2 had the memory for an element with all its attributes, as the parser found them;
/// what it cannot keep it leaves out without a word.
bool IsWhole(const xmlNode* node, int attributeCount, const xmlChar** found)
{
    constexpr int fields = 5; // name, prefix, namespace, begin and end of the value
    if (!node)
        return false;
    const xmlAttr* attribute = node->properties;
    for (int i = 0; i < attributeCount; ++i) {
        const bool isEmpty = found[i * fields + 3] == found[i * fields + 4];
        if (!attribute || (!isEmpty && (!attribute->children || !attribute->children->content)))
            return false;
        attribute = attribute->next;
    }
    return true;
}

std::vector<DocumentValue> AttributesOf(xmlNodePtr node)
{
    std::vector<DocumentValue> attributes;
    for (const xmlNs* space = node->nsDef; space; space = space->next) {
        const std::string_view prefix = ViewOf(space->prefix);
        attributes.push_back({prefix.empty() ? "xmlns" : Compose("xmlns:", prefix),
                              std::string(ViewOf(space->href))});
    }
    for (xmlAttrPtr attribute = node->properties; attribute; attribute = attribute->next) {
        const std::unique_ptr<xmlChar, void (*)(xmlChar*)> value(
            xmlNodeListGetString(node->doc, attribute->children, 1),
            [](xmlChar* text) { xmlFree(text); });
        if (!value && attribute->children)
            throw std::bad_alloc();
        attributes.push_back(
            {NameOf(attribute->ns, attribute->name), std::string(ViewOf(value.get()))});
    }
    return attributes;
}

} // namespace

Place XmlElement::PlaceIn(const std::string& file) const
{
    return {file, Line, {}, {}, ColumnOf(Text, Begin)};
}

Place XmlElement::PlaceOf(const std::string& attribute, const std::string& file) const
{
    const std::size_t place = FindInTag(Text, Begin, attribute);
    return {
        file, Line + CountLines(Text.substr(Begin, place - Begin)), {}, {}, ColumnOf(Text, place)};
}

XmlParser::XmlParser(std::string file, XmlHandler& handler, ProblemList& problems)
    : _file(std::move(file)), _handler(handler), _problems(problems)
{}

bool XmlParser::Parse(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark)
        text.remove_prefix(byteOrderMark.size());
    if (text.empty())
        return Fail("not-well-formed", 0, 0, "the document is empty");
    if (text.substr(0, 100).find('\0') != std::string_view::npos)
        return Fail("encoding", 0, 0, "the text is no UTF-8, the one encoding that is read");
    constexpr int mostAttributes = 256;
    if (const int line = FindCrowdedTag(text, mostAttributes)) {
        return Fail("too-many-attributes", line, 0,
                    Compose("an element has more than ", mostAttributes, " attributes"));
    }

    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                               xmlFreeParserCtxt);
    if (!context)
        throw std::bad_alloc();
    xmlSAXHandler& events = *context->sax;
    events.startDocument = OnStartDocument;
    events.startElementNs = OnStartElement;
    events.endElementNs = OnEndElement;
    events.characters = OnText;
    events.ignorableWhitespace = OnText;
    events.cdataBlock = OnText;
    events.comment = OnComment;
    events.processingInstruction = OnInstruction;
    events.internalSubset = OnDocumentType;
    events.serror = OnError;
    context->_private = this;
    _context = context.get();
    _text = text;
    _isStopped = false;
    const xmlDocPtr document =
        xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()), nullptr,
                          nullptr, XML_PARSE_NONET | XML_PARSE_BIG_LINES);
    const bool isRead = document != nullptr;
    xmlFreeDoc(document);
    _context = nullptr;
    if (_failure)
        std::rethrow_exception(std::exchange(_failure, nullptr));
    // Without memory to begin with, libxml2 gives up without a word.
    if (!isRead && !_isStopped)
        throw std::bad_alloc();
    return !_isStopped;
}

void XmlParser::Stop()
{
    _isStopped = true;
    // xmlStopParser would free the text, from which libxml2 still reads when it tells of an error.
    _context->disableSAX = 1;
    _context->instate = XML_PARSER_EOF;
}

/// Exceptions cannot pass through libxml2: they wait until it has returned.
template <class Action>
void XmlParser::Guard(void* context, Action action)
{
    auto& self = *static_cast<XmlParser*>(static_cast<xmlParserCtxtPtr>(context)->_private);
    if (self._isStopped)
        return;
    try {
        action(self);
    } catch (...) {
        self._failure = std::current_exception();
        self.Stop();
    }
}

void XmlParser::OnStartDocument(void* context)
{
    xmlSAX2StartDocument(context);
    Guard(context, [&](XmlParser& self) {
        const xmlChar* encoding =
            self._context->encoding ? self._context->encoding : self._context->input->encoding;
        if (encoding && xmlStrcasecmp(encoding, BAD_CAST "UTF-8") != 0) {
            self.FailEncoding(ViewOf(encoding));
        }
    });
}

void XmlParser::OnStartElement(void* context, const xmlChar* name, const xmlChar* prefix,
                               const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                               int attributeCount, int defaultedCount, const xmlChar** attributes)
{
    xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                          defaultedCount, attributes);
    Guard(context, [&](XmlParser& self) {
        const xmlChar* next = self._context->input->cur;
        if (next[0] != '>' && (next[0] != '/' || next[1] != '>'))
            return; // a part of a tag, of which libxml2 is about to complain
        constexpr int deepest = 32;
        if (self._context->nodeNr > deepest) {
            return self.FailHere("too-deep",
                                 Compose("elements are nested more than ", deepest, " deep"));
        }
        const long end = xmlByteConsumed(self._context);
        if (end < 0 || !IsWhole(self._context->node, attributeCount, attributes))
            throw std::bad_alloc();
        self._handler.StartElement(
            self.DescribeElement(self._context->node, static_cast<std::size_t>(end)));
    });
}

void XmlParser::OnEndElement(void* context, const xmlChar* name, const xmlChar* prefix,
                             const xmlChar* uri)
{
    xmlNodePtr node = static_cast<xmlParserCtxtPtr>(context)->node;
    Guard(context, [&](XmlParser& self) { self._handler.EndElement(node); });
    xmlSAX2EndElementNs(context, name, prefix, uri);
    xmlUnlinkNode(node);
    xmlFreeNode(node);
}

void XmlParser::OnText(void* context, const xmlChar* text, int size)
{
    Guard(context, [&](XmlParser& self) {
        std::string_view characters(reinterpret_cast<const char*>(text),
                                    static_cast<std::size_t>(size));
        const std::size_t begin = characters.find_first_not_of(blanks);
        if (begin == std::string_view::npos)
            return;
        characters.remove_prefix(begin);
        self._handler.Text(self._context->input->line - CountLines(characters));
    });
}

void XmlParser::OnComment(void* context, const xmlChar* text)
{
    Guard(context, [&](XmlParser& self) { self._handler.Comment(std::string(ViewOf(text))); });
}

void XmlParser::OnInstruction(void* context, const xmlChar*, const xmlChar*)
{
    Guard(context, [](XmlParser& self) {
        self.FailHere("processing-instruction", "processing instructions are not allowed");
    });
}

void XmlParser::OnDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*)
{
    Guard(context, [](XmlParser& self) {
        self.FailHere("document-type", "document type declarations are not allowed");
    });
}

void XmlParser::OnError(void* context, xmlErrorPtr error)
{
    Guard(context, [&](XmlParser& self) {
        if (error->level < XML_ERR_ERROR)
            return;
        if (error->code == XML_ERR_NO_MEMORY)
            throw std::bad_alloc();
        if (error->code == XML_ERR_UNSUPPORTED_ENCODING)
            return self.FailEncoding(ViewOf(reinterpret_cast<xmlChar*>(error->str1)));
        // Its own error in words: it looks no further ahead for the end of something.
        if (error->code == XML_ERR_INTERNAL_ERROR)
            return self.FailHere("not-well-formed",
                                 "something is too long, such as a name or a tag");
        std::string_view message = ViewOf(reinterpret_cast<xmlChar*>(error->message));
        message = message.substr(0, message.find('\n'));
        const xmlParserInput& input = *self._context->input;
        int size = static_cast<int>(std::min<std::ptrdiff_t>(input.end - input.cur, 4));
        const bool isBadCharacter = message.starts_with("Input is not proper UTF-8") ||
                                    (size > 0 && xmlGetUTF8Char(input.cur, &size) < 0);
        self.Fail(isBadCharacter ? "encoding" : "not-well-formed", error->line, error->int2,
                  isBadCharacter ? "the text is no UTF-8, the one encoding that is read"
                                 : Compose("not well-formed: ", message));
    });
}

/// @param end a place behind the element's last attribute and not behind the next tag
XmlElement XmlParser::DescribeElement(xmlNodePtr node, std::size_t end) const
{
    XmlElement element;
    element.Name = NameOf(node->ns, node->name);
    element.Attributes = AttributesOf(node);
    element.Node = node;
    element.Text = _text;
    // No attribute may hold this character itself.
    element.Begin = _text.rfind('<', end - 1);
    element.Line =
        _context->input->line - CountLines(_text.substr(element.Begin, end - element.Begin));
    return element;
}

/// @returns false, for callers that give up
bool XmlParser::Fail(const std::string& rule, int line, int column, const std::string& message)
{
    _problems.Fail(rule, {_file, line, {}, {}, column}, message);
    if (_context)
        Stop();
    return false;
}

void XmlParser::FailEncoding(std::string_view encoding)
{
    Fail("encoding", 1, 0, Compose("the encoding is ", Excerpt(encoding), ", expected \"UTF-8\""));
}

void XmlParser::FailHere(const std::string& rule, const std::string& message)
{
    Fail(rule, _context->input->line, 0, message);
}

} // namespace Mox::Host
