#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <libxml/parser.h>

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// An element at its start tag.
struct XmlElement
{
    std::string Name;
    std::vector<DocumentValue> Attributes; ///< namespace declarations too
    xmlNodePtr Node = nullptr;             ///< lives until the handler was told of the end
    int Line = 0;
    std::string_view Text; ///< the whole document
    std::size_t Begin = 0; ///< of the start tag in the text

    /// The place of the start tag in a file.
    Place PlaceIn(const std::string& file) const;

    /// The place of one of the attributes.
    Place PlaceOf(const std::string& attribute, const std::string& file) const;
};

/// What an XmlParser finds, in the order of the document.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    virtual void StartElement(const XmlElement& element) = 0;
    virtual void EndElement(xmlNodePtr node) = 0;

    /// Characters that are not all blank.
    /// @param line where the first of them stands that is not blank
    virtual void Text(int line) = 0;

    virtual void Comment(const std::string& text) = 0;
};

/// Parses XML in UTF-8 from memory and keeps no more of it than the open elements. It opens no file
/// and no network connection, and refuses document type declarations, and with them entities;
/// processing instructions; elements nested too deep; and elements with very many attributes.
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

    XmlElement DescribeElement(xmlNodePtr node, std::size_t end) const;
    bool Fail(const std::string& rule, int line, int column, const std::string& message);
    void FailEncoding(std::string_view encoding);
    void FailHere(const std::string& rule, const std::string& message);

    std::string _file;
    XmlHandler& _handler;
    ProblemList& _problems;
    std::string_view _text;
    xmlParserCtxtPtr _context = nullptr;
    bool _isStopped = false;
    std::exception_ptr _failure;
};

} // namespace Mox::Host
