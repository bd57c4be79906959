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

/// Receives the contents of a document from an XmlParser, in their order.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    virtual void StartElement(const XmlElement& element) = 0;
    virtual void EndElement() = 0;

    /// A part of the characters in the innermost open element.
    /// @param line of the first character that is not a space, 0 if all are spaces
    virtual void Text(std::string_view text, int line) = 0;

    virtual void Comment(std::string_view text) = 0;

    /// A processing instruction.
    /// @param line of its end
    virtual void Instruction(int line) = 0;
};

/// As long as it lives, keeps libxml2 from printing what it reports to no parser, such as errors of
/// converting from another encoding. To be used on one thread, whose state it changes.
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

/// Parses XML in UTF-8 from memory and keeps nothing of it. It opens no file and no network
/// connection, and refuses document type declarations, and with them entities; elements nested too
/// deep; and elements with very many attributes.
class XmlParser
{
public:
    /// @param file as it is named in messages
    /// @param problems takes what is wrong; must outlive the parser, like handler
    XmlParser(std::string file, XmlHandler& handler, ProblemList& problems);

    /// Parses to the end or to the first error in the form of the text. What the handler throws
    /// passes through.
    /// @returns whether it came to the end
    bool Parse(std::string_view text);

    /// Ends parsing; to be called by the handler.
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
    int _depth = 0;                                ///< of open elements
    std::vector<XmlAttribute> _attributes;         ///< of the last start tag
    std::forward_list<std::string> _prefixedNames; ///< in the last start tag
    std::exception_ptr _failure;
};

} // namespace Mox::Host
