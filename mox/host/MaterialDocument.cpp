#include "mox/host/MaterialDocument.h"

#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/host/PropertyText.h"

#include <libxml/xmlreader.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::int32_t documentVersion = 1;

/// Attributes of the element that the reader stands on; taken one after another, so that what is
/// left at the end is unknown.
class Attributes
{
public:
    Attributes(xmlTextReaderPtr reader, Place where) : _where(std::move(where))
    {
        while (xmlTextReaderMoveToNextAttribute(reader) == 1) {
            const auto text = [](const xmlChar* bytes) {
                return std::string(reinterpret_cast<const char*>(bytes));
            };
            _values.emplace(text(xmlTextReaderConstName(reader)),
                            text(xmlTextReaderConstValue(reader)));
        }
        xmlTextReaderMoveToElement(reader);
    }

    std::string Take(const std::string& name)
    {
        const auto entry = _values.find(name);
        if (entry == _values.end())
            throw HostError(_where, Compose("attribute \"", name, "\" is missing"));
        std::string value = std::move(entry->second);
        _values.erase(entry);
        return value;
    }

    std::string TakeNonEmpty(const std::string& name)
    {
        std::string value = Take(name);
        if (value.empty())
            throw HostError(_where, Compose("attribute \"", name, "\" is empty"));
        return value;
    }

    std::int32_t TakeInteger(const std::string& name)
    {
        const std::string text = Take(name);
        const auto value = ParseInteger(text);
        if (!value) {
            throw HostError(
                _where, Compose("attribute \"", name, "\": \"", text, "\" is not a whole number"));
        }
        return *value;
    }

    void ExpectNoMore() const
    {
        if (!_values.empty())
            throw HostError(_where, Compose("unknown attribute \"", _values.begin()->first, "\""));
    }

private:
    Place _where;
    std::map<std::string, std::string> _values;
};

/// Reads one document element by element; the children that an element may have are fixed, so the
/// depth is too.
class DocumentReader
{
public:
    DocumentReader(const std::string& file, const std::string& bytes)
        : _reader(xmlReaderForMemory(bytes.data(), static_cast<int>(bytes.size()), file.c_str(),
                                     nullptr, XML_PARSE_NONET | XML_PARSE_BIG_LINES),
                  xmlFreeTextReader)
    {
        _document.File = file;
        if (!_reader)
            throw std::bad_alloc();
        xmlTextReaderSetStructuredErrorHandler(_reader.get(), KeepFirstError, this);
    }

    MaterialDocument Read()
    {
        NextElement(0); // without a root element the document is not well-formed
        ReadMaterial();
        while (Advance()) {
        }
        return std::move(_document);
    }

private:
    void ReadMaterial()
    {
        Expect({"material"});
        Attributes attributes = TakeAttributes();
        const std::int32_t version = attributes.TakeInteger("version");
        if (version != documentVersion) {
            throw HostError(Here(), Compose("document version ", version,
                                            " is not supported; this program reads version ",
                                            documentVersion));
        }
        attributes.ExpectNoMore();
        ForEachChild({"nodes", "edges"}, [this](const std::string& name) {
            TakeAttributes().ExpectNoMore();
            if (name == "nodes")
                ForEachChild({"node"}, [this](const std::string&) { ReadNode(); });
            else
                ForEachChild({"edge"}, [this](const std::string&) { ReadEdge(); });
        });
    }

    void ReadNode()
    {
        DocumentNode node;
        node.Line = Line();
        Attributes attributes = TakeAttributes();
        node.Id = attributes.TakeNonEmpty("id");
        _place.Node = node.Id;
        node.Type = attributes.Take("type");
        node.Version = attributes.TakeInteger("version");
        attributes.ExpectNoMore();
        if (!_ids.insert(node.Id).second)
            throw HostError(Here(), "another node has this id already");
        ForEachChild({"property"},
                     [&](const std::string&) { node.Properties.push_back(ReadProperty()); });
        _document.Nodes.push_back(std::move(node));
        _place.Node.clear();
    }

    DocumentProperty ReadProperty()
    {
        DocumentProperty property;
        property.Line = Line();
        Attributes attributes = TakeAttributes();
        property.Name = attributes.Take("name");
        const std::string kind = attributes.Take("kind");
        const auto parsed = ParseKind(kind);
        if (!parsed)
            throw HostError(Here(), Compose("unknown property kind \"", kind, "\""));
        property.Kind = *parsed;
        property.Value = attributes.Take("value");
        attributes.ExpectNoMore();
        ForEachChild({}, [](const std::string&) {});
        return property;
    }

    void ReadEdge()
    {
        DocumentEdge edge;
        edge.Line = Line();
        Attributes attributes = TakeAttributes();
        edge.Tail = attributes.Take("tail");
        edge.TailPort = attributes.Take("tailPort");
        edge.Head = attributes.Take("head");
        edge.HeadPort = attributes.Take("headPort");
        attributes.ExpectNoMore();
        ForEachChild({}, [](const std::string&) {});
        _document.Edges.push_back(std::move(edge));
    }

    /// Calls visit on each child element; on return the reader stands at the end of the parent.
    template <class Visit>
    void ForEachChild(std::initializer_list<std::string_view> names, Visit visit)
    {
        if (xmlTextReaderIsEmptyElement(_reader.get()) == 1)
            return;
        const int depth = xmlTextReaderDepth(_reader.get()) + 1;
        while (NextElement(depth))
            visit(Expect(names));
    }

    /// Moves to the next element of a depth; false at the end of its parent.
    bool NextElement(int depth)
    {
        while (Advance()) {
            const int type = xmlTextReaderNodeType(_reader.get());
            if (type == XML_READER_TYPE_ELEMENT)
                return true;
            if (type == XML_READER_TYPE_END_ELEMENT && xmlTextReaderDepth(_reader.get()) < depth)
                return false;
            if (type == XML_READER_TYPE_TEXT || type == XML_READER_TYPE_CDATA)
                throw HostError({_document.File, LineOfText(), _place.Node, {}},
                                "text is not allowed here");
        }
        return false;
    }

    bool Advance()
    {
        const int status = xmlTextReaderRead(_reader.get());
        if (status < 0 || !_error.empty())
            throw HostError({_document.File, _errorLine, {}, {}}, _error);
        if (status == 1 && xmlTextReaderNodeType(_reader.get()) == XML_READER_TYPE_DOCUMENT_TYPE)
            throw HostError({_document.File, 0, {}, {}},
                            "document type declarations are not allowed");
        return status == 1;
    }

    std::string Expect(std::initializer_list<std::string_view> names) const
    {
        std::string name = reinterpret_cast<const char*>(xmlTextReaderConstName(_reader.get()));
        if (std::find(names.begin(), names.end(), name) != names.end())
            return name;
        std::string expected;
        for (const std::string_view one : names)
            expected += Compose(expected.empty() ? "" : " or ", "<", one, ">");
        throw HostError(Here(), Compose("unexpected element <", name, ">, expected ",
                                        expected.empty() ? "none here" : expected));
    }

    Attributes TakeAttributes() const { return Attributes(_reader.get(), Here()); }

    int Line() const
    {
        // The line of an element is kept in 16 bits; behind that the parser's own, which may be a
        // little further on, is the best that there is.
        constexpr long largestKept = 65535;
        xmlNodePtr node = xmlTextReaderCurrentNode(_reader.get());
        const long line = node ? xmlGetLineNo(node) : 0;
        if (line > 0 && line < largestKept)
            return static_cast<int>(line);
        return xmlTextReaderGetParserLineNumber(_reader.get());
    }

    /// A text keeps the line of its end.
    int LineOfText() const
    {
        const std::string_view text =
            reinterpret_cast<const char*>(xmlTextReaderConstValue(_reader.get()));
        const auto begin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
        return Line() - static_cast<int>(std::count(text.begin() + begin, text.end(), '\n'));
    }

    Place Here() const { return {_document.File, Line(), _place.Node, {}}; }

    static void KeepFirstError(void* self, xmlErrorPtr error)
    {
        auto& reader = *static_cast<DocumentReader*>(self);
        if (!reader._error.empty() || error->level < XML_ERR_ERROR)
            return;
        reader._error = error->message ? error->message : "not well-formed";
        while (!reader._error.empty() && reader._error.back() == '\n')
            reader._error.pop_back();
        reader._errorLine = error->line;
    }

    std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> _reader;
    MaterialDocument _document;
    std::unordered_set<std::string> _ids;
    Place _place;
    std::string _error;
    int _errorLine = 0;
};

} // namespace

MaterialDocument ReadMaterialDocument(const std::filesystem::path& file)
{
    const std::string bytes = ReadFile(file);
    if (bytes.empty())
        throw HostError({file.string(), 0, {}, {}}, "the document is empty");
    return DocumentReader(file.string(), bytes).Read();
}

} // namespace Mox::Host
