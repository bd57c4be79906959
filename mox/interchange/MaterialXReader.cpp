#include "mox/interchange/MaterialXReader.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/NearestName.h"
#include "mox/interchange/MaterialXIncludes.h"

#include <algorithm>
#include <cmath>

namespace Mox::Host {

namespace {

using Materials::Compose;
using InputValues = InterchangeGraph::Values;

constexpr float pixelsOfUnit = 200.0f; ///< a position unit is the size of a node with its gap

std::optional<float> ReadPosition(const XmlTree& element, std::string_view attribute)
{
    const auto position = ParseFloat(element.Get(attribute));
    if (!position || !(std::abs(*position) <= 5000.0f)) // also rejects NaN
        return std::nullopt;
    return std::round(*position * pixelsOfUnit * 64.0f) / 64.0f;
}

bool IsNumericType(const std::string& type)
{
    return type == "float" || type == "integer" || type == "boolean" || WidthOfType(type) > 1;
}

/// Returns the reason why a port cannot carry values of a type.
const char* RefuseType(const std::string& type)
{
    if (type.starts_with("matrix"))
        return "ports cannot have matrix types";
    if (type == "BSDF" || type == "EDF" || type == "VDF")
        return "only complete shaders are supported, not closures";
    return nullptr;
}

} // namespace

MaterialXReader::MaterialXReader(const std::string& file, const MaterialXOptions& options,
                                 ProblemList& problems)
    : _file(file), _options(options), _problems(problems), _builder(file), _graph(_builder)
{}

MaterialDocument MaterialXReader::Read(std::string_view text)
{
    try {
        if (text.size() > MaterialXIncludes::MostBytes)
            throw HostError(_file, "is larger than 64 MiB, the limit for MaterialX");
        auto root = ParseXmlTree(_file, text, _problems);
        if (root && _options.ReadsIncludes)
            _builder.Document().Includes = MaterialXIncludes(_problems).Resolve(*root, text.size());
        if (root)
            ReadRoot(*root);
    } catch (const HostError& error) {
        _problems.Fail("interchange-file", error);
    }
    return std::move(_builder.Document());
}

void MaterialXReader::ReadRoot(const XmlTree& root)
{
    if (root.Name != "materialx")
        throw HostError(root.Where,
                        Compose("the root element is \"", root.Name, "\", expected \"materialx\""));
    const std::string version = root.Get("version");
    if (!version.starts_with("1.38") && !version.starts_with("1.39")) {
        _problems.Warn("interchange-approximated", root.Where,
                       Compose("version \"", version, "\" is read as 1.39"));
    }
    MaterialXScopes scopes(root, _problems);
    _scopes = &scopes;
    for (const XmlTree& child : root.Children) {
        if (child.Name == "xi:include") {
            Report(Carry::None, child,
                   Compose("the file \"", child.Get("href"),
                           "\" is ignored, because only documents in files can include others"));
        }
    }
    if (!IsPlainColourSpace(root.Get("colorspace"))) {
        Report(Carry::Approximated, root,
               Compose(
                   "colours are computed in linear light with the primaries of Rec. 709, not in \"",
                   root.Get("colorspace"), "\""));
    }
    const MaterialXSource shader = FindShader(root);
    if (shader.Element)
        ReadShader(shader);
    WarnOfUnread();
    _builder.Prune("VectorTransform");
}
/// Reports nodes in the used node graphs that do not contribute to the shader.
void MaterialXReader::WarnOfUnread()
{
    std::set<std::size_t> scopes;
    std::set<const XmlTree*> read;
    for (const auto& [key, node] : _evaluated) {
        if (key.first != MaterialXScopes::Root)
            scopes.insert(key.first);
        read.insert(key.second);
    }
    std::set<const XmlTree*> reported;
    for (const std::size_t scope : scopes) {
        for (const XmlTree& child : _scopes->GraphOf(scope).Children) {
            if (child.Name != "input" && child.Name != "output" && child.Name != "backdrop" &&
                !read.contains(&child) && !_fixed.contains(&child) &&
                reported.insert(&child).second)
                Report(Carry::None, child, "this node does not contribute to the material");
        }
    }
}

/// Converts the node at the end of a source, after all its dependencies.
void MaterialXReader::Evaluate(const MaterialXSource& source)
{
    if (source.What != MaterialXSource::Kind::Output)
        return;
    std::vector<Key> waiting = {{source.Scope, source.Element}};
    while (!waiting.empty()) {
        const Key key = waiting.back();
        const auto [entry, isNew] = _evaluated.try_emplace(key);
        if (entry->second.IsDone) {
            waiting.pop_back();
            continue;
        }
        if (!isNew) {
            waiting.pop_back();
            EvaluateNode(key);
            continue;
        }
        for (const XmlTree& child : key.second->Children) {
            if (child.Name != "input" ||
                GetStandardNodes().HasFixedInput(key.second->Name, child.Get("name")))
                continue;
            const MaterialXSource input = _scopes->Follow(key.first, child);
            if (input.What != MaterialXSource::Kind::Output)
                continue;
            const bool isNormalMap = key.second->Name == "normalmap" && child.Get("name") == "in";
            const auto [reader, isFirst] =
                _readByNormalMapsOnly.emplace(input.Element, isNormalMap);
            if (!isFirst)
                reader->second = reader->second && isNormalMap;
            const auto known = _evaluated.find({input.Scope, input.Element});
            if (known == _evaluated.end())
                waiting.emplace_back(input.Scope, input.Element);
            else if (!known->second.IsDone)
                _problems.Fail("interchange-file", PlaceOf(child), "the nodes form a cycle");
        }
    }
}

void MaterialXReader::EvaluateNode(const Key& key)
{
    const XmlTree& element = *key.second;
    const std::string type = element.Get("type");
    Evaluated& evaluated = _evaluated[key];
    evaluated.IsDone = true;
    const InterchangeNode* node = GetStandardNodes().Find(element.Name);
    if (!node || node->IsHelper) {
        Report(Carry::None, element,
               Compose("\"", element.Name, "\" is not a standard node of MaterialX",
                       SuggestNode(element.Name)));
        return;
    }
    if (const char* reason = RefuseType(type)) {
        Report(Carry::None, element, Compose(element.Name, ": ", reason));
        return;
    }
    const InputValues inputs = ReadInputs(key, node->Inputs, element.Name);
    const InterchangeAlternative* alternative = InterchangeGraph::Choose(*node, inputs, type);
    try {
        if (!alternative)
            throw NoCounterpart("its inputs have no counterpart");
        evaluated.Outputs = _graph.Make(*node, *alternative, inputs, SiteOf(key));
    } catch (const NoCounterpart& error) {
        Report(Carry::None, element, Compose(element.Name, ": ", error.what()));
        return;
    }
    const auto file = inputs.find("file");
    if (file != inputs.end() && (type == "multioutput" || type.starts_with("color")))
        WarnOfColourSpace(file->second.ColourSpace, element);
    for (auto& [name, value] : evaluated.Outputs) {
        if (value.Count == 1 && type != "multioutput" && name == "out")
            value.Width = std::max(value.Width, WidthOfType(type));
        value.Type = type;
    }
    if (alternative->Kind != Carry::Direct) {
        const bool isSame = alternative->Kind == Carry::Composed;
        Report(alternative->Kind, element,
               isSame ? Compose(element.Name, " is composed of other nodes")
                      : Compose(element.Name, " is approximated: ", alternative->Note));
    }
}

/// Returns a suggestion to append to the message that MaterialX has no standard node with this
/// name. Comparing names takes time, so there are no suggestions after many problems.
std::string MaterialXReader::SuggestNode(const std::string& name) const
{
    constexpr std::size_t mostProblems = 100;
    if (_problems.Problems().size() >= mostProblems)
        return {};
    std::vector<RightName> names;
    for (const InterchangeNode& node : GetStandardNodes().Nodes) {
        if (!node.IsHelper)
            names.push_back({node.Name});
    }
    return SuggestName(name, names);
}

InputValues MaterialXReader::ReadInputs(const Key& key, const NamedTexts& inputs,
                                        const std::string& category)
{
    InputValues values;
    for (const auto& [name, text] : inputs) {
        const XmlTree* input = MaterialXScopes::FindInput(*key.second, name);
        if (!input) {
            values[name] = InterchangeGraph::Default(text);
            continue;
        }
        InterchangeValue value =
            GetStandardNodes().HasFixedInput(category, name)
                ? ReadFixedInput(key, *input)
                : ReadInput(_scopes->Follow(key.first, *input), *input, category);
        // A constant normal of 0, 0, 1 in a file means the unmodified surface normal.
        const bool isPlainNormal = text == "Nworld" && EqualsText(value, "0,0,1");
        const bool isNothing = !value.IsConnected() && value.Numbers.empty() &&
                               value.Text.empty() && value.Parameter.empty();
        if (isPlainNormal || isNothing)
            value = InterchangeGraph::Default(text);
        values[name] = value;
    }
    return values;
}

InterchangeValue MaterialXReader::ReadInput(const MaterialXSource& source, const XmlTree& input,
                                            const std::string& category)
{
    using Kind = MaterialXSource::Kind;
    if (source.What == Kind::Output) {
        const Key key(source.Scope, source.Element);
        const auto node = _evaluated.find(key);
        if (node == _evaluated.end() || node->second.Outputs.empty())
            return {};
        InterchangeValue value = _graph.FindOutput(
            node->second.Outputs, source.Output.empty() ? "out" : source.Output, SiteOf(key));
        if (value.Type.empty() || value.Type == "multioutput")
            value.Type = input.Get("type");
        if (value.IsUnpacked && category != "normalmap") {
            value = _graph.Evaluate(ParseFormula("add( multiply( normal, 0.5 ), 0.5 )"),
                                    {{"normal", value}}, SiteOf(key));
        }
        return value;
    }
    if (source.What == Kind::Nothing)
        return {};
    const bool isKept = category == "constant" || !IsNumericType(source.Element->Get("type"));
    if (source.What == Kind::Literal)
        return ReadLiteral(source, false);
    const auto known = _parameters.find(source.Element);
    if (known != _parameters.end())
        return known->second;
    InterchangeValue value = ReadLiteral(source, true);
    if (isKept || value.Numbers.empty())
        return value;
    InterchangeGraph::Site site;
    site.Id = source.Element->Get("name");
    site.Line = LineOf(*source.Element);
    site.Description = source.Element->Get("doc");
    const InterchangeNode& constant = *GetStandardNodes().Find("constant");
    value = _graph.Make(constant, constant.Alternatives.front(), {{"value", value}}, site)["out"];
    value.Type = source.Element->Get("type");
    return _parameters[source.Element] = value;
}

/// Reads an input that must be a value. The value may come through inputs of node graphs, constants
/// and dots.
/// @returns nothing if other nodes compute the value, which is reported
InterchangeValue MaterialXReader::ReadFixedInput(const Key& key, const XmlTree& input)
{
    using Kind = MaterialXSource::Kind;
    MaterialXSource source = _scopes->Follow(key.first, input);
    std::set<Key> passed;
    while (source.What == Kind::Output && passed.emplace(source.Scope, source.Element).second) {
        const XmlTree& node = *source.Element;
        const XmlTree* next = node.Name == "constant" ? MaterialXScopes::FindInput(node, "value")
                              : node.Name == "dot"    ? MaterialXScopes::FindInput(node, "in")
                                                      : nullptr;
        if (next)
            source = _scopes->Follow(source.Scope, *next);
    }
    if (source.What == Kind::Output) {
        Report(Carry::None, input,
               "the input must be a value; its default replaces the computed one");
        return {};
    }
    for (const auto& [scope, node] : passed)
        _fixed.insert(node);
    if (source.What == Kind::Nothing)
        return {};
    if (source.What == Kind::Parameter && _fixed.insert(source.Element).second)
        Report(Carry::Approximated, *source.Element,
               "this value becomes fixed, because a node cannot read it through a port");
    return ReadLiteral(source, false);
}

/// @param isParameter whether the value belongs to a node graph input, whose name it keeps
InterchangeValue MaterialXReader::ReadLiteral(const MaterialXSource& source, bool isParameter)
{
    const XmlTree& element = *source.Element;
    InterchangeValue value;
    value.Type = element.Get("type");
    value.Text = element.Get("value");
    value.Width = WidthOfType(value.Type);
    if (isParameter) {
        value.Parameter = element.Get("name");
        value.Lowest = element.Get("uimin");
        value.Highest = element.Get("uimax");
        for (std::string* limit : {&value.Lowest, &value.Highest}) {
            if (!ParseFloat(*limit))
                limit->clear();
        }
    }
    if (value.Type == "filename") {
        const std::string* prefix = _scopes->FindInherited(source.Scope, element, "fileprefix");
        if (prefix && !value.Text.empty())
            value.Text = *prefix + value.Text;
        const std::string* space = _scopes->FindInherited(source.Scope, element, "colorspace");
        value.ColourSpace = space ? *space : std::string();
        return value;
    }
    if (!IsNumericType(value.Type))
        return value;
    value.Numbers = ParseNumbers(value.Text);
    const auto width = static_cast<std::size_t>(value.Width);
    if (value.Numbers.empty() || (value.Numbers.size() != 1 && value.Numbers.size() != width)) {
        _scopes->Fail(element,
                      Compose("\"", value.Text, "\" is not a value of type \"", value.Type, "\""));
        value.Numbers.clear();
        value.Text.clear();
        return value;
    }
    value.Numbers.resize(width, value.Numbers.front());
    if (value.Type.starts_with("color"))
        MakeLinear(value, source);
    return value;
}

/// Converts the numbers of a colour from the colour space specified in the file.
void MaterialXReader::MakeLinear(InterchangeValue& colour, const MaterialXSource& source)
{
    const std::string* space = _scopes->FindInherited(source.Scope, *source.Element, "colorspace");
    if (!space || IsPlainColourSpace(*space))
        return;
    const InterchangeNode* conversion = FindColourConversion(*space);
    if (!conversion) {
        WarnOfColourSpace(*space, *source.Element);
        return;
    }
    InterchangeValue light;
    light.Numbers.assign(colour.Numbers.begin(), colour.Numbers.begin() + 3);
    light.Width = 3;
    light = _graph.Evaluate(ParseFormula(Compose(conversion->Name, "( in )")), {{"in", light}}, {});
    if (light.Numbers.size() != 3)
        throw HostError(PlaceOf(*source.Element), "the colour is too large to convert");
    std::copy(light.Numbers.begin(), light.Numbers.end(), colour.Numbers.begin());
    colour.Text.clear();
}

/// Reports how the colour space of a file or value is converted.
void MaterialXReader::WarnOfColourSpace(const std::string& space, const XmlTree& element)
{
    if (IsPlainColourSpace(space) || space == "srgb_texture")
        return;
    if (!FindColourConversion(space))
        Report(Carry::Approximated, element,
               Compose("the colour space \"", space,
                       "\" is unknown; its colours are treated as linear"));
    else
        Report(FindColourConversion(space)->Alternatives.front().Kind, element,
               Compose("additional nodes convert the colours from \"", space, "\""));
}

InterchangeGraph::Site MaterialXReader::SiteOf(const Key& key)
{
    const XmlTree& element = *key.second;
    InterchangeGraph::Site site;
    site.Id = element.Get("name");
    if (site.Id.empty())
        site.Id = element.Name;
    if (site.Id.ends_with(InputReaderEnding)) {
        const std::string input = site.Id.substr(0, site.Id.size() - InputReaderEnding.size());
        if (std::any_of(element.Children.begin(), element.Children.end(),
                        [&](const auto& child) { return child.Get("interfacename") == input; }))
            site.Id = input;
    }
    site.Type = element.Get("type");
    site.Line = LineOf(element);
    site.Description = element.Get("doc");
    site.PositionX = ReadPosition(element, "xpos");
    site.PositionY = ReadPosition(element, "ypos");
    const auto reader = _readByNormalMapsOnly.find(&element);
    const bool isPlainImage = site.Type == "vector3" && element.Name.ends_with("image") &&
                              !element.Name.starts_with("gltf");
    site.IsNormalMap = element.Name.ends_with("normalmap") ||
                       (isPlainImage && reader != _readByNormalMapsOnly.end() && reader->second);
    return site;
}

void MaterialXReader::Report(Carry kind, const XmlTree& element, const std::string& message)
{
    _problems.Warn(RuleOf(kind), PlaceOf(element), message);
}

/// Returns the line in the document; 0 for elements of included files.
int MaterialXReader::LineOf(const XmlTree& element) const
{
    return element.Where.File == _file ? element.Where.Line : 0;
}

} // namespace Mox::Host
