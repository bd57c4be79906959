#pragma once

#include "mox/document/ElementRule.h"
#include "mox/document/MaterialDocument.h"
#include "mox/xml/XmlWriter.h"

#include <string>

namespace Mox::Host {

/// Writes documents, or single nodes as they stand in one, in the canonical form.
/// All operations throw HostError if a text has a character that XML cannot hold.
class MaterialWriter
{
public:
    /// @param file as it is named in messages
    explicit MaterialWriter(const std::string& file);

    /// @throws HostError also for a value of the description, the render state or a binding that
    ///         the rules of documents do not know
    void WriteDocument(const MaterialDocument& document);
    void WriteNode(const DocumentNode& node);

    std::string Finish();

private:
    void WriteProperty(const DocumentProperty& property);
    void WriteEdge(const DocumentEdge& edge);
    void WriteBinding(const DocumentBinding& binding);
    void WriteAnnotation(const DocumentAnnotation& annotation);
    void WriteValues(const ElementRule& rule, const std::vector<DocumentValue>& values,
                     const DocumentComments& comments);
    void WriteAttributes(const ElementRule& rule, std::vector<DocumentValue> values);
    void WriteComments(const DocumentComments& comments);

    XmlWriter _writer;
};

} // namespace Mox::Host
