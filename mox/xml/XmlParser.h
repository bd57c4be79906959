#pragma once

#include "mox/host/Problem.h"
#include "mox/xml/XmlElement.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <exception>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Receives the contents of a document from an XmlParser in document order.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    virtual void StartElement(const XmlElement& element) = 0;
    virtual void EndElement() = 0;

    /// Receives part of the character data in the innermost open element.
    /// @param line the line of the first character that is not a space; 0 if all are spaces
    virtual void Text(std::string_view text, int line) = 0;

    virtual void Comment(std::string_view text) = 0;

    /// Receives a processing instruction.
    /// @param line the line of its end
    virtual void Instruction(int line) = 0;
};

/// While it exists, suppresses libxml2 errors that do not belong to a parser, such as those from
/// encoding conversions. It must be used on a single thread, whose state it changes.
class QuietErrors
{
public:
    QuietErrors();
    ~QuietErrors();

    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    xmlStructuredErrorFunc _handler;
    void* _context;
};

/// Parses XML in UTF-8 from memory without storing it. It opens no file and no network connection,
/// and rejects document type declarations and therefore entities, elements that are nested too
/// deeply, and elements with too many attributes.
class XmlParser
{
public:
    /// @param file the file name for messages
    /// @param problems receives the errors; must outlive the parser, like handler
    XmlParser(std::string file, XmlHandler& handler, ProblemList& problems);

    /// Parses to the end, or to the first well-formedness error. Exceptions thrown by the
    /// handler are propagated.
    /// @returns whether the whole document was parsed
    bool Parse(std::string_view text);

    /// Stops parsing; may be called only by the handler.
    void Stop();

private:
    static void OnStartDocument(void* context);
    static void OnStartElement(void* context, const xmlChar* name, const xmlChar* prefix,
                               const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                               int attributeCount, int defaultedCount, const xmlChar** attributes);
    static void OnEndElement(void* context, const xmlChar* name, const xmlChar* prefix,
                             const xmlChar* uri);
    static void OnText(void* context, const xmlChar* text, int size);
    static void OnComment(void* context, const xmlChar* text);
    static void OnInstruction(void* context, const xmlChar* target, const xmlChar* data);
    static void OnDocumentType(void* context, const xmlChar* name, const xmlChar* externalId,
                               const xmlChar* systemId);
    static void OnError(void* context, xmlErrorPtr error);

    template <class Action>
    static void Guard(void* context, Action action);

    XmlElement DescribeElement(const xmlChar* name, const xmlChar* prefix);
    std::string_view QualifiedName(const xmlChar* prefix, const xmlChar* name);
    void AddDeclarations(int count, const xmlChar** namespaces);
    void AddAttributes(int count, const xmlChar** attributes);
    bool Fail(ProblemRule rule, int line, int column, const std::string& message);
    void FailEncoding(std::string_view encoding);
    void FailHere(ProblemRule rule, const std::string& message);

    std::string _file;
    XmlHandler& _handler;
    ProblemList& _problems;
    std::string_view _text;
    xmlParserCtxtPtr _context = nullptr;
    bool _isStopped = false;
    int _depth = 0;                                ///< number of open elements
    std::vector<XmlAttribute> _attributes;         ///< of the last start tag
    std::forward_list<std::string> _prefixedNames; ///< in the last start tag
    std::exception_ptr _failure;
};

} // namespace Mox::Host
