#include "mox/nodefile/NodeFileReader.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/AttributeText.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"
#include "mox/nodefile/NodeRules.h"
#include "mox/nodefile/NodeText.h"
#include "mox/xml/XmlTree.h"

#include <algorithm>
#include <initializer_list>
#include <system_error>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPropertyKind;

constexpr std::uintmax_t largestFile = 1 << 20;

/// An element whose attributes are read one by one.
class NodeElement
{
public:
    /// @throws HostError if the element has an attribute that is not allowed
    NodeElement(const XmlTree& tree, std::initializer_list<std::string_view> allowed) : _tree(tree)
    {
        for (const XmlTree::Attribute& attribute : tree.Attributes) {
            if (std::find(allowed.begin(), allowed.end(), attribute.Name) == allowed.end())
                Fail(Compose("unexpected attribute ", Excerpt(attribute.Name), " in <", tree.Name,
                             ">"));
        }
    }

    [[noreturn]] void Fail(const std::string& message) const
    {
        throw HostError(_tree.Where, message);
    }

    int Line() const { return _tree.Where.Line; }

    bool Has(std::string_view name) const { return _tree.Find(name) != nullptr; }

    /// Returns an empty string if the attribute is missing.
    std::string Optional(std::string_view name) const { return _tree.Get(name); }

    std::string Required(std::string_view name) const
    {
        std::string value = Optional(name);
        if (value.empty())
            Fail(Compose("attribute \"", name, "\" is missing"));
        return value;
    }

    /// Returns a name with the prefix that all names of its kind have, so that none is reserved in
    /// Cg.
    std::string Name(std::string_view prefix) const
    {
        std::string name = Required("name");
        if (!ShaderNode::IsValidCgName(name))
            Fail(Compose(Excerpt(name), " is not a valid Cg name"));
        if (!name.starts_with(prefix))
            Fail(Compose("the name \"", name, "\" does not start with \"", prefix, "\""));
        return name;
    }

    bool Flag(std::string_view name) const
    {
        const std::string value = Optional(name);
        if (!value.empty() && value != "true" && value != "false")
            Fail(Compose("attribute \"", name, "\" is neither \"true\" nor \"false\""));
        return value == "true";
    }

    std::optional<std::int32_t> Count() const
    {
        const std::string text = Optional("count");
        if (text.empty())
            return std::nullopt;
        const auto count = ParseInteger(text);
        if (!count || *count < 1 || *count > 4)
            Fail("attribute \"count\" is not a number from 1 to 4");
        return count;
    }

    std::optional<ComponentType> Precision() const
    {
        const std::string text = Optional("precision");
        if (text.empty())
            return std::nullopt;
        if (text != "float" && text != "half")
            Fail("attribute \"precision\" is neither \"float\" nor \"half\"");
        return text == "float" ? ComponentType::Float : ComponentType::Half;
    }

    std::optional<ShaderLevel> Level() const
    {
        const std::string text = Optional("level");
        if (text.empty())
            return std::nullopt;
        if (text != "vertex" && text != "fragment")
            Fail("attribute \"level\" is neither \"vertex\" nor \"fragment\"");
        return text == "vertex" ? ShaderLevel::Vertex : ShaderLevel::Fragment;
    }

    NodeConditions Conditions(std::string_view name) const
    {
        return ParseNodeConditions(Optional(name), _tree.Where);
    }

    /// Returns conditions, which are empty for "true"; nothing if the attribute is missing.
    std::optional<NodeConditions> OptionalConditions(std::string_view name) const
    {
        if (!Has(name))
            return std::nullopt;
        return Optional(name) == "true" ? NodeConditions() : Conditions(name);
    }

    /// Returns the type of a value or sampler.
    ShaderType Type() const
    {
        const std::string text = Required("type");
        const auto type = ParseShaderType(text);
        if (!type)
            Fail(Compose(Excerpt(text), " is not a Cg type"));
        return *type;
    }

    /// Returns the child elements; text between them is not allowed.
    const std::vector<XmlTree>& Children() const
    {
        if (_tree.WhereText.Line > 0)
            throw HostError(_tree.WhereText, "text is not allowed here");
        return _tree.Children;
    }

    void RequireEmpty() const
    {
        if (!Children().empty())
            throw HostError(_tree.Children.front().Where, "child elements are not allowed here");
    }

    /// Returns the text of the element; child elements are not allowed.
    const std::string& Text() const
    {
        if (!_tree.Children.empty())
            throw HostError(_tree.Children.front().Where, "only text is allowed here");
        if (_tree.WhereText.Line == 0)
            Fail(Compose("<", _tree.Name, "> is empty"));
        return _tree.Text;
    }

    int TextLine() const { return _tree.WhereText.Line; }

private:
    const XmlTree& _tree;
};

class NodeFileReader
{
public:
    explicit NodeFileReader(const std::string& file) { _file.File = file; }

    NodeFile Read(const XmlTree& root)
    {
        if (root.Name != "node")
            throw HostError(root.Where, "the root element is not <node>");
        const NodeElement element(root, {"version", "type", "label", "library", "compiled",
                                         "propertiesVersion", "title", "colour"});
        ReadHead(element);
        for (const XmlTree& child : element.Children())
            ReadPart(child);
        CheckNodeRules(_file, root.Where);
        return std::move(_file);
    }

private:
    void ReadHead(const NodeElement& element)
    {
        if (element.Required("version") != "1")
            element.Fail("only version 1 of the node file format is supported");
        _file.TypeName = element.Required("type");
        if (!ShaderNode::IsValidCgName(_file.TypeName))
            element.Fail(Compose(Excerpt(_file.TypeName), " is not a valid Cg name"));
        _file.IsCompiled = element.Flag("compiled");
        if (_file.IsCompiled)
            return;
        _file.Label = element.Required("label");
        _file.Library = element.Required("library");
        _file.Title = element.Optional("title");
        if (element.Has("propertiesVersion")) {
            const auto version = ParseInteger(element.Required("propertiesVersion"));
            if (!version || *version < 0)
                element.Fail("attribute \"propertiesVersion\" is not a non-negative integer");
            _file.PropertiesVersion = *version;
        }
        if (element.Has("colour")) {
            const auto colour = Materials::GuiProperty::Create("colour");
            if (!SetFromText(*colour, GuiPropertyKind::Colour, element.Required("colour")))
                element.Fail("attribute \"colour\" must contain three numbers separated by spaces");
            colour->GetColour(_file.Colour[0], _file.Colour[1], _file.Colour[2]);
        }
    }

    void ReadPart(const XmlTree& part)
    {
        if (part.Name == "help")
            ReadHelp(part);
        else if (part.Name == "property")
            ReadProperty(part);
        else if (_file.IsCompiled)
            throw HostError(part.Where, "only <help> and <property> are allowed here");
        else if (part.Name == "in")
            ReadInput(part);
        else if (part.Name == "out")
            ReadOutput(part);
        else if (part.Name == "sampler")
            ReadSampler(part);
        else if (part.Name == "function")
            ReadFunction(part);
        else if (part.Name == "body")
            ReadBody(part);
        else if (part.Name == "icon")
            ReadIcon(part);
        else
            throw HostError(part.Where, "only <help>, <property>, <in>, <out>, <sampler>, "
                                        "<function>, <body> and <icon> are allowed here");
    }

    void ReadHelp(const XmlTree& part)
    {
        const NodeElement element(part, {});
        if (!_file.Help.empty())
            element.Fail("a node can have only one <help>");
        _file.Help = TakeWords(element.Text());
    }

    void ReadProperty(const XmlTree& part)
    {
        const NodeElement element(part, {"name", "kind", "value", "range", "help"});
        NodeProperty property;
        property.Line = element.Line();
        property.Name = element.Required("name");
        if (_file.FindProperty(property.Name))
            element.Fail(Compose("the property ", Excerpt(property.Name), " is defined twice"));
        if (const std::string help = TakeWords(element.Optional("help")); !help.empty())
            property.Help = Compose(property.Name, ": ", help);
        const std::string kind = element.Required("kind");
        const auto known = ParseKind(kind);
        if (!known || *known == GuiPropertyKind::String || *known == GuiPropertyKind::Node)
            element.Fail("attribute \"kind\" is not one of \"bool\", \"integer\", \"float\", "
                         "\"colour\" or \"enum\"");
        property.Kind = *known;
        for (const XmlTree& child : element.Children())
            property.Choices.push_back(ReadChoice(child, property));
        property.Value = element.Optional("value");
        if (!_file.IsCompiled)
            CheckDefault(property, element);
        if (element.Has("range"))
            property.Range = ReadRange(property, element);
        _file.Properties.push_back(std::move(property));
    }

    static NodeChoice ReadChoice(const XmlTree& child, const NodeProperty& property)
    {
        if (child.Name != "choice" || property.Kind != GuiPropertyKind::Enum)
            throw HostError(child.Where,
                            "only <choice> elements of an enum property are allowed here");
        const NodeElement element(child, {"name", "level"});
        element.RequireEmpty();
        NodeChoice choice{element.Required("name"), element.Level()};
        if (choice.Name.find_first_of(",;=") != std::string::npos)
            element.Fail(
                "the name of a choice cannot contain a comma, a semicolon or an equals sign");
        for (const NodeChoice& other : property.Choices) {
            if (other.Name == choice.Name)
                element.Fail(Compose("the choice ", Excerpt(choice.Name), " is defined twice"));
        }
        return choice;
    }

    static void CheckDefault(const NodeProperty& property, const NodeElement& element)
    {
        if (property.Kind == GuiPropertyKind::Enum) {
            if (property.Choices.empty())
                element.Fail("an enum property needs at least one <choice>");
            if (!property.Value.empty() &&
                std::ranges::count(property.Choices, property.Value, &NodeChoice::Name) == 0)
                element.Fail(Compose(Excerpt(property.Value), " is not one of the choices"));
            return;
        }
        if (!property.Value.empty() && !SetFromText(*Materials::GuiProperty::Create(property.Name),
                                                    property.Kind, property.Value)) {
            element.Fail(Compose(Excerpt(property.Value), " is not a valid ",
                                 FormatKind(property.Kind), " value"));
        }
    }

    static std::pair<float, float> ReadRange(const NodeProperty& property,
                                             const NodeElement& element)
    {
        if (property.Kind != GuiPropertyKind::Integer && property.Kind != GuiPropertyKind::Float)
            element.Fail("only integer and float properties can have a range");
        const std::string text = element.Required("range");
        const std::size_t space = text.find(' ');
        const auto low = ParseFloat(std::string_view(text).substr(0, space));
        const auto high = space == std::string::npos
                              ? std::nullopt
                              : ParseFloat(std::string_view(text).substr(space + 1));
        if (!low || !high || !(*low <= *high))
            element.Fail("attribute \"range\" must contain two numbers, the lower one first");
        return {*low, *high};
    }

    void ReadInput(const XmlTree& part)
    {
        const NodeElement element(part, {"name", "label", "count", "precision", "type", "property",
                                         "value", "default", "required", "when"});
        element.RequireEmpty();
        NodeInput input;
        input.Line = element.Line();
        input.Name = element.Name("in_");
        input.Label = element.Optional("label");
        input.Count = element.Count();
        input.Precision = element.Precision();
        input.When = element.Conditions("when");
        ReadSource(element, input);
        if (input.IsPort()) {
            if (element.Has("type"))
                element.Fail(
                    "a port cannot have a \"type\"; use \"count\" and \"precision\" instead");
            if (input.Source == NodeSource::Value) {
                if (!input.Count || !input.Precision)
                    element.Fail("a port that reads a value needs a \"count\" and a \"precision\"");
                input.Type = ShaderType(*input.Precision, *input.Count, 1, 1);
            }
        } else {
            if (input.Count || input.Precision)
                element.Fail("only an input with a \"label\" can have \"count\" and \"precision\"");
            if (input.Source != NodeSource::Property && input.Source != NodeSource::Value)
                element.Fail("an input without a \"label\" needs a \"property\" or a \"value\"");
            if ((input.Source == NodeSource::Value) != element.Has("type"))
                element.Fail("\"type\" is required for an input with a \"value\" and not allowed "
                             "for any other");
            if (input.Source == NodeSource::Value)
                input.Type = element.Type();
        }
        _file.Inputs.push_back(std::move(input));
    }

    void ReadSource(const NodeElement& element, NodeInput& input) const
    {
        int sources = 0;
        const auto take = [&](std::string_view attribute, NodeSource source) {
            if (!element.Has(attribute))
                return;
            ++sources;
            input.Source = source;
            input.SourceText = element.Required(attribute);
        };
        take("property", NodeSource::Property);
        take("value", NodeSource::Value);
        take("default", NodeSource::Expression);
        if (element.Flag("required"))
            take("required", NodeSource::Edge);
        if (sources > 1) {
            element.Fail("an input can have at most one of \"property\", \"value\", \"default\" "
                         "and \"required\"");
        }
        if (input.Source == NodeSource::Expression)
            RequireClosedCode(input.SourceText, element.Line(), true);
        if (input.Source == NodeSource::Value && !ShaderNode::IsValidCgName(input.SourceText))
            element.Fail(Compose(Excerpt(input.SourceText), " is not a valid Cg name"));
    }

    void ReadOutput(const XmlTree& part)
    {
        const NodeElement element(part, {"name", "label", "count", "precision", "when"});
        element.RequireEmpty();
        _file.Outputs.push_back({element.Name("out_"), element.Required("label"), element.Count(),
                                 element.Precision(), element.Conditions("when"), element.Line()});
    }

    void ReadSampler(const XmlTree& part)
    {
        const NodeElement element(part,
                                  {"name", "type", "suffix", "usage", "srgb", "alpha", "when"});
        element.RequireEmpty();
        NodeSampler sampler;
        sampler.Line = element.Line();
        sampler.Name = element.Name("in_");
        sampler.Type = element.Type();
        if (sampler.Type.Component < ComponentType::Sampler1D ||
            sampler.Type.Component > ComponentType::SamplerCube || sampler.Type.ArrayLength != 1)
            element.Fail("attribute \"type\" is not one of \"sampler1D\", \"sampler2D\", "
                         "\"sampler3D\" or \"samplerCUBE\"");
        sampler.Suffix = element.Optional("suffix");
        sampler.Usage = element.Optional("usage");
        sampler.Srgb = element.OptionalConditions("srgb");
        sampler.Alpha = element.OptionalConditions("alpha");
        sampler.When = element.Conditions("when");
        _file.Samplers.push_back(std::move(sampler));
    }

    void ReadFunction(const XmlTree& part)
    {
        const NodeElement element(part, {"name"});
        NodeFunction function{element.Name(""), TakeLines(element.Text(), ""), element.TextLine()};
        if (!function.Name.starts_with(_file.Library)) {
            element.Fail(Compose("the name \"", function.Name,
                                 "\" does not start with the name of the library, \"",
                                 _file.Library, "\""));
        }
        RequireClosedCode(function.Text, function.Line, false);
        _file.Functions.push_back(std::move(function));
    }

    void ReadBody(const XmlTree& part)
    {
        const NodeElement element(part, {"when", "level"});
        NodeBody body{TakeLines(element.Text(), "\t"), element.Level(), element.Conditions("when"),
                      element.TextLine()};
        RequireClosedCode(body.Text, body.Line, false);
        _file.Bodies.push_back(std::move(body));
    }

    void ReadIcon(const XmlTree& part)
    {
        const NodeElement element(part, {});
        if (!_file.Icon.empty())
            element.Fail("a node can have only one <icon>");
        const std::string& source = element.Text();
        try {
            _file.Icon = ParseXpm(source);
        } catch (const HostError& error) {
            element.Fail(error.Message);
        }
    }

    /// Rejects code that does not end where its element ends.
    void RequireClosedCode(const std::string& code, int line, bool isExpression) const
    {
        if (const auto fault = FindOpenCode(code, isExpression))
            throw HostError(Place(_file.File, line + fault->Line), fault->Message);
    }

    NodeFile _file;
};

} // namespace

NodeFile ReadNodeFile(const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        // Reading a pipe could block forever.
        throw HostError(Place(file.string()), "is not a regular file");
    }
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (!error && size > largestFile)
        throw HostError(Place(file.string()), "is larger than the limit of 1 MiB");
    return NodeFileReader(file.string()).Read(ReadXmlTree(file));
}

NodeFile ParseNodeFile(const std::string& file, std::string_view text)
{
    return NodeFileReader(file).Read(ParseXmlTree(file, text));
}

} // namespace Mox::Host
