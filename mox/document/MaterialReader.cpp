#include "mox/document/MaterialReader.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/MaterialRules.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Excerpt.h"
#include "mox/host/File.h"

#include <iterator>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::size_t mostFailures = 1000;

void Append(DocumentComments& comments, DocumentComments more)
{
    comments.insert(comments.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
}

DocumentValue ValueOf(const XmlAttribute& attribute)
{
    return {std::string(attribute.Name), std::string(attribute.Value)};
}

std::vector<DocumentValue> ValuesOf(const XmlElement& element)
{
    std::vector<DocumentValue> values;
    values.reserve(element.Attributes.size());
    for (const XmlAttribute& attribute : element.Attributes)
        values.push_back(ValueOf(attribute));
    return values;
}

/// Moves the comments inside an element without children to the position before the element.
DocumentComments Flatten(SectionComments comments)
{
    Append(comments.Before, std::move(comments.Last));
    return std::move(comments.Before);
}

template <class Records, class Record>
void MoveInto(Records& records, std::optional<Record>& record, SectionComments comments)
{
    if (record) {
        record->Comments = Flatten(std::move(comments));
        records.push_back(std::move(*record));
    }
    record.reset();
}

} // namespace

MaterialReader::MaterialReader(const std::string& file, ProblemList& problems)
    : _problems(problems), _parser(file, *this, problems)
{
    _document.File = file;
}

MaterialDocument MaterialReader::Read(std::string_view text)
{
    if (!_parser.Parse(text)) {
        // The missing parts of an incomplete document cannot be determined.
        MaterialDocument nothing;
        nothing.File = _document.File;
        return nothing;
    }
    Append(_document.Comments.Document.Last, std::move(_comments));
    return std::move(_document);
}

void MaterialReader::StartElement(const XmlElement& element)
{
    const ElementRule* rule = FindRule(element);
    OpenElement& open = _open.emplace_back();
    open.Rule = rule;
    open.Comments = std::exchange(_comments, {});
    if (!rule)
        return;
    if (IsOtherVersion(*rule, element))
        return _parser.Stop();
    StartRecord(element);
    CheckAttributes(*rule, element);
    CheckVersionOf(element);
}

void MaterialReader::EndElement()
{
    OpenElement element = std::move(_open.back());
    _open.pop_back();
    DocumentComments last = std::exchange(_comments, {});
    if (element.Rule)
        EndRecord(element.Rule->Name, {std::move(element.Comments), std::move(last)});
}

void MaterialReader::Text(std::string_view, int line)
{
    if (line == 0 || _open.empty() || _open.back().HasText || !_open.back().Rule)
        return;
    OpenElement& parent = _open.back();
    parent.HasText = true;
    Fail("schema", {_document.File, line},
         Compose("unexpected text, expected ", parent.Rule->ExpectedChildren(parent.NextChild)));
}

void MaterialReader::Comment(std::string_view text)
{
    _comments.emplace_back(text);
}

void MaterialReader::Instruction(int line)
{
    _problems.Fail("processing-instruction", {_document.File, line},
                   "processing instructions are not allowed");
    _parser.Stop();
}

/// Returns the rule of an element that its parent may have, even if it is out of order.
const ElementRule* MaterialReader::FindRule(const XmlElement& element)
{
    const auto fail = [&](const std::string& place, const std::string& expected) {
        Fail("schema", element.PlaceIn(_document.File),
             Compose("unexpected element <", element.Name, ">", place, ", expected ", expected));
    };
    if (_open.empty()) {
        if (element.Name == MaterialRule.Name)
            return &MaterialRule;
        // A node of a material that was copied without the elements around it has an id.
        const bool isNodeFile = element.Name == "node" && !element.Find("id");
        fail({},
             Compose("<", MaterialRule.Name, ">",
                     isNodeFile
                         ? "; this is a node file, so give its folder as a folder with node files"
                         : ""));
        return nullptr;
    }
    OpenElement& parent = _open.back();
    if (!parent.Rule)
        return nullptr;
    const std::span<const ElementRule::Child> children = parent.Rule->Children;
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (children[i].Rule->Name != element.Name)
            continue;
        parent.Stranger.clear();
        if (i < parent.NextChild) {
            fail(Compose(" after <", parent.LastChild->Name, ">"),
                 parent.Rule->ExpectedChildren(parent.NextChild));
        } else {
            parent.NextChild = children[i].IsRepeated ? i : i + 1;
            parent.LastChild = children[i].Rule;
        }
        return children[i].Rule;
    }
    // If an end tag is missing, all elements that follow it are out of place. Consecutive elements
    // with the same name are reported only once.
    if (parent.Stranger != element.Name)
        fail({}, parent.Rule->ExpectedChildren(parent.NextChild));
    parent.Stranger = element.Name;
    return nullptr;
}

/// The rules apply only to known versions, so documents of other versions are not checked.
bool MaterialReader::IsOtherVersion(const ElementRule& rule, const XmlElement& element)
{
    if (&rule != &MaterialRule)
        return false;
    constexpr const char* name = "version";
    const std::string_view* version = element.Find(name);
    _isPlain = version && *version == PlainVersion;
    if (!version || !ParseInteger(*version) || _isPlain || *version == AnnotatedVersion)
        return false;
    Fail("document-version", element.PlaceOf(name, _document.File),
         Compose("document version ", *version, " is not supported, expected \"", PlainVersion,
                 "\" or \"", AnnotatedVersion, "\""));
    return true;
}

/// Readers of plain documents would reject elements and attributes that only annotated documents
/// may have, so this reader rejects them too.
void MaterialReader::CheckVersionOf(const XmlElement& element)
{
    if (!_isPlain)
        return;
    const auto fail = [&](const Place& where, std::string_view what) {
        Fail("schema", where,
             Compose(what, " is not allowed in a document of version \"", PlainVersion,
                     "\", expected version \"", AnnotatedVersion, "\""));
    };
    constexpr const char* points = "points";
    if (element.Name == "annotations")
        fail(element.PlaceIn(_document.File), "<annotations>");
    else if (element.Name == "edge" && element.Find(points))
        fail(element.PlaceOf(points, _document.File), "attribute \"points\"");
}

void MaterialReader::CheckAttributes(const ElementRule& rule, const XmlElement& element)
{
    for (const AttributeProblem& problem : rule.Check(element.Attributes)) {
        if (_failureCount > mostFailures)
            return; // locating an attribute is expensive
        Fail("schema",
             problem.Attribute.empty() ? element.PlaceIn(_document.File)
                                       : element.PlaceOf(problem.Attribute, _document.File),
             _property ? Compose("property ", Excerpt(_property->Name), ": ", problem.Message)
                       : problem.Message);
        if (problem.Attribute == "value")
            _property.reset();
    }
}

void MaterialReader::StartRecord(const XmlElement& element)
{
    if (element.Name == "node")
        StartNode(element);
    else if (element.Name == "property")
        StartProperty(element);
    else if (element.Name == "edge")
        StartEdge(element);
    else if (element.Name == "binding")
        StartBinding(element);
    else if (element.Name == "annotation")
        StartAnnotation(element);
    else if (element.Name == "description")
        _document.Description = ValuesOf(element);
    else if (element.Name == "renderState")
        _document.RenderState = ValuesOf(element);
}

void MaterialReader::StartNode(const XmlElement& element)
{
    const std::string_view* id = element.Find("id");
    if (!id || id->empty())
        return;
    _node.emplace();
    _node->Id = *id;
    _node->Line = element.Line;
    if (const std::string_view* type = element.Find("type"))
        _node->Type = *type;
    if (const std::string_view* version = element.Find("version"))
        _node->Version = ParseInteger(*version).value_or(0);
    const auto [other, isNew] = _lineOfId.emplace(_node->Id, element.Line);
    _isDoubled = !isNew;
    if (_isDoubled) {
        Fail("doubled-id", element.PlaceOf("id", _document.File),
             Compose("the node on line ", other->second, " already has this id"));
    }
}

void MaterialReader::StartProperty(const XmlElement& element)
{
    const std::string_view* name = element.Find("name");
    const std::string_view* kind = element.Find("kind");
    const std::string_view* value = element.Find("value");
    const auto parsed = kind ? ParseKind(*kind) : std::nullopt;
    if (name && parsed && value)
        _property = {std::string(*name), *parsed, std::string(*value), element.Line, {}};
}

void MaterialReader::StartEdge(const XmlElement& element)
{
    const std::string_view* tail = element.Find("tail");
    const std::string_view* tailPort = element.Find("tailPort");
    const std::string_view* head = element.Find("head");
    const std::string_view* headPort = element.Find("headPort");
    if (!tail || !tailPort || !head || !headPort)
        return;
    _edge = {std::string(*tail),     std::string(*tailPort), std::string(*head),
             std::string(*headPort), element.Line,           {}};
    if (const std::string_view* points = element.Find("points"))
        _edge->Points = ParsePoints(*points).value_or(std::vector<DocumentPoint>());
}

void MaterialReader::StartBinding(const XmlElement& element)
{
    const std::string_view* stream = element.Find("stream");
    const std::string_view* tag = element.Find("tag");
    if (!stream || !tag)
        return;
    _binding = {std::string(*stream), std::string(*tag), {}, element.Line, {}};
    for (const XmlAttribute& attribute : element.Attributes) {
        if (&attribute.Value != stream && &attribute.Value != tag)
            _binding->Values.push_back(ValueOf(attribute));
    }
    const auto [other, isNew] =
        _lineOfBinding.emplace(std::pair(_binding->Stream, _binding->Tag), element.Line);
    if (!isNew) {
        Fail("doubled-binding", element.PlaceOf("tag", _document.File),
             Compose("the binding on line ", other->second, " already has this stream and tag"));
    }
}

void MaterialReader::StartAnnotation(const XmlElement& element)
{
    const std::string_view* id = element.Find("id");
    if (!id || id->empty())
        return;
    const auto textOf = [&](std::string_view attribute) {
        const std::string_view* value = element.Find(attribute);
        return value ? *value : std::string_view();
    };
    const auto numberOf = [&](std::string_view attribute) {
        return ParseInteger(textOf(attribute)).value_or(0);
    };
    _annotation = {
        ParseAnnotationKind(textOf("kind")), std::string(*id),  std::string(textOf("text")),
        {numberOf("x"), numberOf("y")},      numberOf("width"), numberOf("height"),
        std::string(textOf("colour")),       element.Line,      {}};
    const auto [other, isNew] = _lineOfAnnotation.emplace(_annotation->Id, element.Line);
    if (!isNew) {
        Fail("doubled-id", element.PlaceOf("id", _document.File),
             Compose("the annotation on line ", other->second, " already has this id"));
    }
}

void MaterialReader::EndRecord(std::string_view name, SectionComments comments)
{
    if (name == "property") {
        if (_node)
            MoveInto(_node->Properties, _property, std::move(comments));
        _property.reset();
    } else if (name == "node") {
        if (_node && !_isDoubled) {
            _node->Comments = std::move(comments.Before);
            _node->LastComments = std::move(comments.Last);
            _document.Nodes.push_back(std::move(*_node));
        }
        _node.reset();
    } else if (name == "edge") {
        MoveInto(_document.Edges, _edge, std::move(comments));
    } else if (name == "binding") {
        MoveInto(_document.Bindings, _binding, std::move(comments));
    } else if (name == "annotation") {
        MoveInto(_document.Annotations, _annotation, std::move(comments));
    } else if (name == "description") {
        _document.Comments.Description = Flatten(std::move(comments));
    } else if (name == "renderState") {
        _document.Comments.RenderState = Flatten(std::move(comments));
    } else if (name == "nodes") {
        _document.Comments.Nodes = std::move(comments);
    } else if (name == "edges") {
        _document.Comments.Edges = std::move(comments);
    } else if (name == "bindings") {
        _document.Comments.Bindings = std::move(comments);
    } else if (name == "annotations") {
        _document.Comments.Annotations = std::move(comments);
    } else {
        _document.Comments.Document = std::move(comments);
    }
}

void MaterialReader::Fail(ProblemRule rule, Place where, const std::string& message)
{
    if (_failureCount > mostFailures)
        return;
    if (_failureCount++ == mostFailures) {
        _problems.Fail("too-many-problems", where,
                       Compose("more than ", mostFailures,
                               " problems; the rest of the document was not checked"));
        return _parser.Stop();
    }
    if (_node)
        where.Node = _node->Id;
    _problems.Fail(rule, where, message);
}

MaterialDocument ReadDocumentText(const std::string& file, const std::function<std::string()>& read,
                                  const DocumentParser& parse, ProblemList& problems)
{
    std::string text;
    try {
        text = read();
    } catch (const HostError& error) {
        problems.Fail("unreadable", error);
        MaterialDocument document;
        document.File = file;
        return document;
    }
    return parse(file, text, problems);
}

MaterialDocument ReadMaterialDocument(const std::filesystem::path& file)
{
    return WithoutErrors(
        [&](ProblemList& problems) { return ReadMaterialDocument(file, problems); });
}

MaterialDocument ReadMaterialDocument(const std::filesystem::path& file, ProblemList& problems)
{
    const auto parse = [](const std::string& name, std::string_view text, ProblemList& found) {
        return ParseMaterialDocument(name, text, found);
    };
    return ReadDocumentText(
        file.string(), [&] { return ReadFile(file); }, parse, problems);
}

MaterialDocument ParseMaterialDocument(const std::string& file, std::string_view text)
{
    return WithoutErrors(
        [&](ProblemList& problems) { return ParseMaterialDocument(file, text, problems); });
}

MaterialDocument ParseMaterialDocument(const std::string& file, std::string_view text,
                                       ProblemList& problems)
{
    return MaterialReader(file, problems).Read(text);
}

} // namespace Mox::Host
