#pragma once

#include "mox/document/ElementRule.h"
#include "mox/document/MaterialDocument.h"
#include "mox/xml/XmlParser.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Reads one material document. Each violation of the document rules becomes a problem that states
/// what was expected, and reading continues.
class MaterialReader : private XmlHandler
{
public:
    /// @param file the file name for messages
    /// @param problems must outlive the reader
    MaterialReader(const std::string& file, ProblemList& problems);

    /// Must be called only once.
    MaterialDocument Read(std::string_view text);

private:
    /// An element whose end tag has not been read yet.
    struct OpenElement
    {
        const ElementRule* Rule = nullptr; ///< null inside elements that the schema does not define
        std::size_t NextChild = 0;         ///< the first child of the rule that is still allowed
        const ElementRule* LastChild = nullptr; ///< the last child in the correct order
        std::string Stranger; ///< the last child that the rule does not allow, already reported
        bool HasText = false; ///< whether text was found and reported
        DocumentComments Comments; ///< before the element
    };

    void StartElement(const XmlElement& element) override;
    void EndElement() override;
    void Text(std::string_view text, int line) override;
    void Comment(std::string_view text) override;
    void Instruction(int line) override;

    const ElementRule* FindRule(const XmlElement& element);
    bool IsOtherVersion(const ElementRule& rule, const XmlElement& element);
    void CheckVersionOf(const XmlElement& element);
    void CheckAttributes(const ElementRule& rule, const XmlElement& element);

    void StartRecord(const XmlElement& element);
    void StartNode(const XmlElement& element);
    void StartProperty(const XmlElement& element);
    void StartEdge(const XmlElement& element);
    void StartBinding(const XmlElement& element);
    void StartAnnotation(const XmlElement& element);
    void EndRecord(std::string_view name, SectionComments comments);

    void Fail(ProblemRule rule, Place where, const std::string& message);

    ProblemList& _problems;
    XmlParser _parser;
    MaterialDocument _document;

    std::vector<OpenElement> _open;
    DocumentComments _comments; ///< since the last tag
    std::optional<DocumentNode> _node;
    bool _isDoubled = false; ///< the node has the id of an earlier node and is skipped
    std::optional<DocumentProperty> _property;
    std::optional<DocumentEdge> _edge;
    std::optional<DocumentBinding> _binding;
    std::optional<DocumentAnnotation> _annotation;
    bool _isPlain = false; ///< the document has the version without annotations

    std::unordered_map<std::string, int> _lineOfId;
    std::map<std::pair<std::string, std::string>, int> _lineOfBinding; ///< by stream and tag
    std::unordered_map<std::string, int> _lineOfAnnotation;            ///< by id
    std::size_t _failureCount = 0;
};

} // namespace Mox::Host
