#include "mox/xml/XmlParser.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <libxml/SAX2.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

std::string_view ViewOf(const xmlChar* text)
{
    return text ? reinterpret_cast<const char*>(text) : std::string_view();
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

int CountLines(std::string_view text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

/// Returns whether a start tag has more than the given number of attributes.
bool IsCrowded(std::string_view tag, std::size_t mostAttributes)
{
    if (tag.size() < 2 * mostAttributes)
        return false; // too short for the quotes of so many attributes, like nearly all tags
    std::size_t count = 0;
    for (std::size_t place = tag.find_first_of("\"'>");
         place != std::string_view::npos && tag[place] != '>';
         place = tag.find_first_of("\"'>", place + 1)) {
        if (++count > mostAttributes)
            return true;
        place = tag.find(tag[place], place + 1);
        if (place == std::string_view::npos)
            return false;
    }
    return false;
}

/// Returns the line of the first start tag with too many attributes, or 0. libxml2 compares each
/// pair of attributes.
int FindCrowdedTag(std::string_view text, std::size_t mostAttributes)
{
    std::size_t place = text.find('<');
    while (place != std::string_view::npos) {
        const std::string_view markup = text.substr(place, 9);
        std::size_t end = place + 1;
        if (markup.starts_with("<!--"))
            end = text.find("-->", place + 4);
        else if (markup == "<![CDATA[")
            end = text.find("]]>", place);
        else if (markup.starts_with("<?"))
            end = text.find("?>", place);
        const std::size_t next = text.find('<', end);
        if (end == place + 1 && IsCrowded(text.substr(place, next - place), mostAttributes))
            return 1 + CountLines(text.substr(0, place));
        place = next;
    }
    return 0;
}

} // namespace

QuietErrors::QuietErrors() : _handler(xmlStructuredError), _context(xmlStructuredErrorContext)
{
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
}

QuietErrors::~QuietErrors()
{
    xmlSetStructuredErrorFunc(_context, _handler);
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
        return Fail("encoding", 0, 0,
                    "the document is not valid UTF-8, the only supported encoding");
    constexpr std::size_t mostAttributes = 256;
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
    _depth = 0;
    const QuietErrors quiet;
    // Only the predefined entities of XML are allowed, and they are replaced by their characters.
    constexpr int options = XML_PARSE_NONET | XML_PARSE_BIG_LINES | XML_PARSE_NOENT;
    const xmlDocPtr document = xmlCtxtReadMemory(
        context.get(), text.data(), static_cast<int>(text.size()), nullptr, nullptr, options);
    const bool isRead = document != nullptr;
    xmlFreeDoc(document);
    _context = nullptr;
    if (_failure)
        std::rethrow_exception(std::exchange(_failure, nullptr));
    // If libxml2 cannot allocate memory at the start, it fails without an error.
    if (!isRead && !_isStopped)
        throw std::bad_alloc();
    return !_isStopped;
}

void XmlParser::Stop()
{
    _isStopped = true;
    // libxml2 may report an error in the middle of a tag, and xmlStopParser would then free the
    // source that it is still reading.
    _context->disableSAX = 1;
    _context->instate = XML_PARSER_EOF;
}

/// Exceptions must not propagate through libxml2: they are stored until it has returned.
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
                               const xmlChar*, int namespaceCount, const xmlChar** namespaces,
                               int attributeCount, int, const xmlChar** attributes)
{
    Guard(context, [&](XmlParser& self) {
        const xmlChar* next = self._context->input->cur;
        if (next[0] != '>' && (next[0] != '/' || next[1] != '>'))
            return; // an incomplete tag, for which libxml2 reports an error next
        constexpr int deepest = 32;
        if (++self._depth > deepest) {
            return self.FailHere(
                "too-deep", Compose("elements are nested more than ", deepest, " levels deep"));
        }
        self._attributes.clear();
        self._prefixedNames.clear();
        self.AddDeclarations(namespaceCount, namespaces);
        self.AddAttributes(attributeCount, attributes);
        self._handler.StartElement(self.DescribeElement(name, prefix));
    });
}

void XmlParser::OnEndElement(void* context, const xmlChar*, const xmlChar*, const xmlChar*)
{
    Guard(context, [](XmlParser& self) {
        --self._depth;
        self._handler.EndElement();
    });
}

void XmlParser::OnText(void* context, const xmlChar* text, int size)
{
    const auto* begin = reinterpret_cast<const char*>(text);
    const char* end = begin + size;
    const char* first = std::find_if_not(begin, end, IsBlank);
    Guard(context, [&](XmlParser& self) {
        const int line = first == end ? 0 : self._context->input->line - CountLines({first, end});
        self._handler.Text({begin, end}, line);
    });
}

void XmlParser::OnComment(void* context, const xmlChar* text)
{
    Guard(context, [&](XmlParser& self) { self._handler.Comment(ViewOf(text)); });
}

void XmlParser::OnInstruction(void* context, const xmlChar*, const xmlChar*)
{
    Guard(context, [](XmlParser& self) { self._handler.Instruction(self._context->input->line); });
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
        // A clearer message: libxml2 limits how far ahead it searches for the end of a construct.
        if (error->code == XML_ERR_INTERNAL_ERROR)
            return self.FailHere("not-well-formed",
                                 "a name, a tag or another part of the document is too long");
        std::string_view message = ViewOf(reinterpret_cast<xmlChar*>(error->message));
        message = message.substr(0, message.find('\n'));
        const xmlParserInput& input = *self._context->input;
        int size = static_cast<int>(std::min<std::ptrdiff_t>(input.end - input.cur, 4));
        const bool isBadCharacter = message.starts_with("Input is not proper UTF-8") ||
                                    (size > 0 && xmlGetUTF8Char(input.cur, &size) < 0);
        self.Fail(isBadCharacter ? ProblemRule("encoding") : ProblemRule("not-well-formed"),
                  error->line, error->int2,
                  isBadCharacter ? "the document is not valid UTF-8, the only supported encoding"
                                 : Compose("not well-formed: ", message));
    });
}

XmlElement XmlParser::DescribeElement(const xmlChar* name, const xmlChar* prefix)
{
    const long end = xmlByteConsumed(_context);
    if (end < 0)
        throw std::bad_alloc();
    const std::string_view before = _text.substr(0, static_cast<std::size_t>(end));
    XmlElement element;
    element.Name = QualifiedName(prefix, name);
    element.Attributes = _attributes;
    element.Text = _text;
    // The value of an attribute cannot contain an unescaped "<".
    element.Begin = before.rfind('<');
    element.Line = _context->input->line - CountLines(before.substr(element.Begin));
    return element;
}

std::string_view XmlParser::QualifiedName(const xmlChar* prefix, const xmlChar* name)
{
    if (!prefix)
        return ViewOf(name);
    return _prefixedNames.emplace_front(Compose(ViewOf(prefix), ":", ViewOf(name)));
}

void XmlParser::AddDeclarations(int count, const xmlChar** namespaces)
{
    constexpr std::ptrdiff_t fields = 2; // prefix and URI
    for (const xmlChar** field = namespaces; field != namespaces + count * fields;
         field += fields) {
        const xmlChar* xmlns = BAD_CAST "xmlns";
        const std::string_view name = field[0] ? QualifiedName(xmlns, field[0]) : ViewOf(xmlns);
        _attributes.push_back({name, ViewOf(field[1])});
    }
}

void XmlParser::AddAttributes(int count, const xmlChar** attributes)
{
    constexpr std::ptrdiff_t fields = 5; // name, prefix, namespace, begin and end of the value
    for (const xmlChar** field = attributes; field != attributes + count * fields;
         field += fields) {
        const auto* begin = reinterpret_cast<const char*>(field[3]);
        const auto* end = reinterpret_cast<const char*>(field[4]);
        _attributes.push_back({QualifiedName(field[1], field[0]), {begin, end}});
    }
}

/// @returns false, for callers that return immediately
bool XmlParser::Fail(ProblemRule rule, int line, int column, const std::string& message)
{
    _problems.Fail(rule, {_file, line, column}, message);
    if (_context)
        Stop();
    return false;
}

void XmlParser::FailEncoding(std::string_view encoding)
{
    Fail("encoding", 1, 0, Compose("the encoding is ", Excerpt(encoding), ", expected \"UTF-8\""));
}

void XmlParser::FailHere(ProblemRule rule, const std::string& message)
{
    Fail(rule, _context->input->line, 0, message);
}

} // namespace Mox::Host
