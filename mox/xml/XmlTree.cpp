#include "mox/xml/XmlTree.h"

#include "mox/host/File.h"
#include "mox/xml/XmlParser.h"

#include <libxml/xmlreader.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace Mox::Host {

namespace {

class TreeBuilder : public XmlHandler
{
public:
    explicit TreeBuilder(std::string file) : _file(std::move(file)) {}

    void StartElement(const XmlElement& element) override
    {
        XmlTree& tree = _open.emplace_back();
        tree.Name = element.Name;
        for (const XmlAttribute& attribute : element.Attributes)
            tree.Attributes.push_back({std::string(attribute.Name), std::string(attribute.Value)});
        tree.Where = {_file, element.Line};
        tree.WhereText = _file;
    }

    void EndElement() override
    {
        XmlTree tree = std::move(_open.back());
        _open.pop_back();
        _open.back().Children.push_back(std::move(tree));
    }

    void Text(std::string_view text, int line) override
    {
        XmlTree& tree = _open.back();
        tree.Text += text;
        if (tree.WhereText.Line == 0)
            tree.WhereText.Line = line;
    }

    void Comment(std::string_view) override {}
    void Instruction(int) override {}

    /// Must be called only once, after the end of the document.
    XmlTree TakeRoot() { return std::move(_open.front().Children.front()); }

private:
    std::string _file;
    std::vector<XmlTree> _open{1}; ///< from the document node to the innermost open element
};

} // namespace

const std::string* XmlTree::Find(std::string_view attribute) const
{
    const auto found = std::ranges::find(Attributes, attribute, &Attribute::Name);
    return found == Attributes.end() ? nullptr : &found->Value;
}

std::string XmlTree::Get(std::string_view attribute) const
{
    const std::string* value = Find(attribute);
    return value ? *value : std::string();
}

XmlTree ReadXmlTree(const std::filesystem::path& file)
{
    return ParseXmlTree(file.string(), ReadFile(file));
}

XmlTree ParseXmlTree(const std::string& file, std::string_view text)
{
    return *WithoutErrors(
        [&](ProblemList& problems) { return ParseXmlTree(file, text, problems); });
}

std::optional<XmlTree> ParseXmlTree(const std::string& file, std::string_view text,
                                    ProblemList& problems)
{
    TreeBuilder builder(file);
    ProblemList found;
    XmlParser(file, builder, found).Parse(text);
    problems.Append(found);
    if (found.HasErrors())
        return std::nullopt;
    return builder.TakeRoot();
}

bool MayHaveRoot(const std::string& file, std::string_view name) noexcept
{
    const QuietErrors quiet;
    const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
        xmlReaderForFile(file.c_str(), nullptr, XML_PARSE_NONET), xmlFreeTextReader);
    if (!reader)
        return true;
    while (xmlTextReaderRead(reader.get()) == 1) {
        if (xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT) {
            const xmlChar* root = xmlTextReaderConstName(reader.get());
            return std::string_view(reinterpret_cast<const char*>(root)) == name;
        }
    }
    return true;
}

} // namespace Mox::Host
