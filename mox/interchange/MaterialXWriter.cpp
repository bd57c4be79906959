#include "mox/interchange/MaterialXWriter.h"

#include "mox/LetterCase.h"
#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/xml/XmlWriter.h"

#include <algorithm>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::ToLower;

constexpr float unitOfPixels = 1.0f / 200.0f;

/// Returns the type of a value in a condition of the table.
std::string TypeOfText(const std::string& text)
{
    if (text == "true" || text == "false")
        return "boolean";
    return ParseNumbers(text).empty() ? "string" : "float";
}

/// Returns whether a comma-separated list contains a word.
bool IsListed(const std::string& words, const std::string& word)
{
    return Compose(",", words, ",").find(Compose(",", word, ",")) != std::string::npos;
}

void WriteInput(XmlWriter& writer, const MaterialXInput& input, const char* kind)
{
    const auto write = [&](const char* attribute, const std::string& value) {
        if (!value.empty())
            writer.Attribute(attribute, value);
    };
    writer.StartElement(kind);
    writer.Attribute("name", input.Name);
    writer.Attribute("type", input.Type);
    const bool isFromGraph = !input.More.empty() && input.More.front().first == "nodegraph";
    if (input.Node.empty() && input.Interface.empty() && !isFromGraph)
        writer.Attribute("value", input.Value);
    write("nodename", input.Node);
    write("interfacename", input.Interface);
    write("output", input.Output);
    write("colorspace", input.ColourSpace);
    for (const auto& [attribute, value] : input.More)
        writer.Attribute(attribute, value);
    writer.EndElement();
}

void WriteElement(XmlWriter& writer, const MaterialXElement& element)
{
    writer.StartElement(element.Category);
    writer.Attribute("name", element.Name);
    writer.Attribute("type", element.Type);
    for (const auto& [attribute, value] : element.Attributes)
        writer.Attribute(attribute, value);
    for (const MaterialXInput& input : element.Inputs)
        WriteInput(writer, input, "input");
    writer.EndElement();
}

} // namespace

std::string WriteMaterialX(const CompleteMaterial& material, ProblemList& problems)
{
    return MaterialXWriter(material, problems).Write();
}

MaterialXWriter::MaterialXWriter(const CompleteMaterial& material, ProblemList& problems)
    : _material(material), _problems(problems)
{
    for (const DocumentEdge& edge : material.Document.Edges) {
        _feeds[{edge.Head, edge.HeadPort}] = {edge.Tail, edge.TailPort};
        _read.insert({edge.Tail, edge.TailPort});
    }
    for (const CompleteNode& node : material.Nodes)
        _nodes[node.Id] = &node;
}

std::string MaterialXWriter::Write()
{
    const CompleteNode* surface = nullptr;
    for (const CompleteNode& node : _material.Nodes) {
        const bool isSurface = node.Type == "Surface" || node.Type == "SurfacePbr";
        if (isSurface && !surface) {
            surface = &node;
            continue;
        }
        const std::string wanted = ElementName(node);
        _current = {&node, _elements.UniqueName(wanted), {}};
        if (_current.Name != wanted)
            Report(Carry::Approximated, Compose("the id is changed to \"", _current.Name, "\""));
        WriteNode();
    }
    if (!surface)
        throw HostError(_material.Document.File, "the material has no surface");
    _current = {surface, _elements.UniqueName(surface->Id), {}};
    WriteSurface();
    WarnOfDocument();
    return Finish();
}

/// Returns the element name of a node. Nodes and inputs of a node graph share a namespace, so if a
/// node has an input with the same name, a suffix is appended to the node's name, which readers
/// recognise.
std::string MaterialXWriter::ElementName(const CompleteNode& node) const
{
    const auto has = [&](const char* property, const std::string& value) {
        const auto found = node.Properties.find(property);
        return found != node.Properties.end() && found->second.Value == value;
    };
    const bool hasInput = (node.Type == "CoreConstant" && !has("Lock", "true")) ||
                          (node.Type == "CoreTexture" && !Referred(node));
    return hasInput && has("Name", node.Id) ? node.Id + std::string(InputReaderEnding) : node.Id;
}

std::string MaterialXWriter::Finish()
{
    XmlWriter writer;
    writer.Where = _material.Document.File;
    writer.StartDocument();
    writer.StartElement("materialx");
    writer.Attribute("version", "1.39");
    writer.Attribute("colorspace", "lin_rec709");
    if (!_elements.Graph.empty()) {
        writer.StartElement("nodegraph");
        writer.Attribute("name", GraphName);
        for (const MaterialXInput& input : _elements.GraphInputs)
            WriteInput(writer, input, "input");
        for (const MaterialXElement& element : _elements.Graph)
            WriteElement(writer, element);
        for (const MaterialXInput& output : _elements.GraphOutputs)
            WriteInput(writer, output, "output");
        writer.EndElement();
    }
    WriteElement(writer, _shader);
    WriteElement(writer, _surfaceMaterial);
    writer.EndElement();
    return writer.Finish();
}

void MaterialXWriter::WriteNode()
{
    const std::string& type = _current.Node->Type;
    const std::size_t nodesBefore = _elements.Graph.size();
    for (const char* property : {"PositionX", "PositionY", "Description"})
        _current.Used.insert(property);
    Ports outputs;
    if (type == "CoreConstant")
        outputs = WriteConstant();
    else if (type == "CoreTexture")
        outputs = WriteTexture();
    else if (type == "CoreUv" || type == "CoreVertexColour")
        outputs = WriteStream();
    else
        outputs = WriteByTable();
    if (outputs.empty())
        outputs = WriteByFormula();
    if (outputs.empty())
        Report(Carry::None, Compose(type, " has no counterpart in MaterialX"));
    for (auto& [port, value] : outputs)
        _outputs[{_current.Node->Id, port}] = value;
    const auto first = _elements.Graph.begin() + static_cast<std::ptrdiff_t>(nodesBefore);
    const auto element =
        std::ranges::find(first, _elements.Graph.end(), _current.Name, &MaterialXElement::Name);
    if (element != _elements.Graph.end())
        Describe(*element);
    WarnOfLosses();
}

/// Sets the position and description of the node on an element.
void MaterialXWriter::Describe(MaterialXElement& element)
{
    for (const auto& [property, attribute] :
         {std::pair("PositionX", "xpos"), std::pair("PositionY", "ypos")}) {
        const auto position = ParseFloat(PropertyOf(property));
        if (position && *position != 0.0f)
            element.Attributes.emplace_back(attribute, FormatNumber(*position * unitOfPixels));
    }
    if (!PropertyOf("Description").empty())
        element.Attributes.emplace_back("doc", PropertyOf("Description"));
}

/// Writes a node by its direct mapping in the table; returns nothing if there is none.
MaterialXWriter::Ports MaterialXWriter::WriteByTable()
{
    for (const InterchangeNode& node : GetStandardNodes().Nodes) {
        for (const InterchangeAlternative& alternative : node.Alternatives) {
            if (node.IsHelper || alternative.Kind != Carry::Direct || !alternative.Code.empty() ||
                alternative.Type != _current.Node->Type || !Allows(alternative) ||
                !Matches(alternative.Settings))
                continue;
            return WriteDirect(node, alternative);
        }
    }
    return {};
}

MaterialXWriter::Ports MaterialXWriter::WriteDirect(const InterchangeNode& node,
                                                    const InterchangeAlternative& alternative)
{
    MaterialXElements::Values inputs;
    for (const InterchangePort& port : alternative.Inputs)
        inputs[port.Input] = InputOf(port.Port);
    const bool hasOneOutput = alternative.Outputs.size() == 1;
    const MaterialXValue result = _elements.Call(node, alternative, inputs, _current.Name);
    MaterialXElement& element = _elements.Graph.back();
    for (const InterchangeCondition& condition : alternative.When) {
        if (condition.What != InterchangeCondition::Test::Equals)
            continue;
        const auto usual =
            std::ranges::find(node.Inputs, condition.Input, &NamedTexts::value_type::first);
        if (usual == node.Inputs.end() || usual->second != condition.Text)
            element.Inputs.push_back(
                {condition.Input, TypeOfText(condition.Text), condition.Text, {}, {}, {}, {}, {}});
    }
    for (const auto& [property, text] : alternative.Settings) {
        if (text.front() == '^')
            element.Inputs.push_back(
                {text.substr(1), "string", ToLower(PropertyOf(property)), {}, {}, {}, {}, {}});
    }
    Ports outputs;
    for (const InterchangePort& port : alternative.Outputs) {
        outputs[port.Port] = result;
        if (!hasOneOutput)
            outputs[port.Port] = MakeOutput(result.Node, "float", port.Input);
    }
    return outputs;
}

/// Writes a node as a formula of MaterialX nodes; returns nothing if the table has none.
MaterialXWriter::Ports MaterialXWriter::WriteByFormula()
{
    for (const InterchangeBack& back : GetStandardNodes().Back) {
        if (back.Type != _current.Node->Type || !Matches(back.Settings))
            continue;
        MaterialXElements::Values known;
        for (const auto& [name, property] : _current.Node->Properties) {
            std::string word = name;
            std::replace(word.begin(), word.end(), ' ', '_');
            known[word].Numbers = ParsePropertyNumbers(property.Value);
            _current.Used.insert(name);
        }
        for (const std::string& port : _current.Node->Inputs)
            known[port] = InputOf(port);
        for (const auto& [port, text] : back.Inputs) {
            if (!IsConnected(port))
                known[port].Numbers = ParseNumbers(text);
        }
        const MaterialXValue result = _elements.Evaluate(back.Is, known, _current.Name);
        Report(back.Note.empty() ? Carry::Composed : Carry::Approximated,
               back.Note.empty() ? Compose(back.Type, " is composed of other nodes")
                                 : Compose(back.Type, " is approximated: ", back.Note));
        return {{_current.Node->Outputs.front(), result}};
    }
    return {};
}
/// Returns whether MaterialX supports the property values that an alternative transfers.
bool MaterialXWriter::Allows(const InterchangeAlternative& alternative) const
{
    for (const auto& [name, text] : alternative.Settings) {
        const auto property = _current.Node->Properties.find(name);
        for (const InterchangeCondition& condition : alternative.When) {
            const bool isAbout = condition.What == InterchangeCondition::Test::OneOf &&
                                 text == Compose("^", condition.Input);
            if (isAbout && property != _current.Node->Properties.end() &&
                !IsListed(condition.Text, ToLower(property->second.Value)))
                return false;
        }
    }
    return true;
}

/// Returns whether the node has these properties. Properties that are transferred in other ways
/// match any value.
bool MaterialXWriter::Matches(const NamedTexts& settings)
{
    for (const auto& [name, text] : settings) {
        const auto property = _current.Node->Properties.find(name);
        if (property == _current.Node->Properties.end())
            return false;
        const bool isAny = text.front() == '^';
        const std::vector<float> numbers = ParseNumbers(text);
        const bool isEqual = property->second.Value == text ||
                             (!numbers.empty() && ParseNumbers(property->second.Value) == numbers);
        if (!isAny && !isEqual)
            return false;
    }
    for (const auto& [name, text] : settings)
        _current.Used.insert(name);
    return true;
}

const std::string& MaterialXWriter::PropertyOf(const std::string& name)
{
    static const std::string none;
    _current.Used.insert(name);
    const auto property = _current.Node->Properties.find(name);
    return property == _current.Node->Properties.end() ? none : property->second.Value;
}

/// Returns the value that an input port of the node reads.
MaterialXValue MaterialXWriter::InputOf(const std::string& port)
{
    const std::string* property = GetStandardNodes().FindProperty(_current.Node->Type, port);
    if (property)
        _current.Used.insert(*property);
    if (!IsConnected(port)) {
        MaterialXValue value = MakeNumber(0.0f);
        if (property)
            value.Numbers = ParsePropertyNumbers(PropertyOf(*property));
        if (value.Numbers.size() == 3)
            value.Type = "color3";
        return value;
    }
    const auto feed = _feeds.find({_current.Node->Id, port});
    const auto output = _outputs.find(feed->second);
    if (!output->second.IsPacked)
        return output->second;
    const auto [unpacked, isNew] = _unpacked.try_emplace(feed->second);
    if (isNew) {
        unpacked->second = _elements.Evaluate(
            ParseFormula("subtract( multiply( normal, 2 ), 1 )"), {{"normal", output->second}},
            _elements.UniqueName(output->second.Node + "_unpacked"));
        Report(Carry::Composed, "additional nodes unpack the normal of the texture", port);
    }
    return unpacked->second;
}

/// Returns whether an edge supplies a value; false for edges from nodes that could not be
/// converted.
bool MaterialXWriter::IsConnected(const std::string& port) const
{
    const auto feed = _feeds.find({_current.Node->Id, port});
    return feed != _feeds.end() && _outputs.contains(feed->second);
}

bool MaterialXWriter::IsRead(const std::string& port) const
{
    return _read.contains({_current.Node->Id, port});
}
std::map<std::string, std::string> MaterialXWriter::BindingValues(const std::string& stream,
                                                                  const std::string& tag) const
{
    std::map<std::string, std::string> values;
    for (const DocumentBinding& binding : _material.Document.Bindings) {
        if (binding.Stream != stream || binding.Tag != tag)
            continue;
        for (const DocumentValue& value : binding.Values)
            values[value.Name] = value.Value;
    }
    return values;
}

/// Reports edges and properties that affect the result but were not converted.
void MaterialXWriter::WarnOfLosses()
{
    for (const std::string& port : _current.Node->Inputs) {
        if (_feeds.contains({_current.Node->Id, port}) && !IsConnected(port))
            Report(Carry::None, "the node that feeds this input has no counterpart", port);
    }
    for (const auto& [name, property] : _current.Node->Properties) {
        if (property.IsDefault || !property.IsVisible || _current.Used.contains(name))
            continue;
        Report(Carry::None, Compose("the property \"", name, "\" has no counterpart"));
    }
}

void MaterialXWriter::WarnOfDocument()
{
    for (const DocumentValue& value : _material.Document.Description) {
        if (value.Name != "name" && value.Name != "desc")
            ReportDocument(Carry::None,
                           Compose("\"", value.Name, "\" of the description has no counterpart"));
    }
    for (const DocumentAnnotation& annotation : _material.Document.Annotations) {
        _problems.Warn("interchange-dropped", {_material.Document.File, annotation.Line},
                       Compose("the frame or note \"", annotation.Text, "\" is left out"));
    }
    for (const DocumentEdge& edge : _material.Document.Edges) {
        if (!edge.Points.empty())
            _problems.Warn("interchange-dropped", {_material.Document.File, edge.Line},
                           "the points of the edge are left out");
    }
    const bool isPhysical = _shader.Category == "gltf_pbr";
    for (const DocumentValue& value : _material.Document.RenderState) {
        if (!isPhysical || !value.Name.starts_with("alpha"))
            ReportDocument(Carry::None,
                           Compose("\"", value.Name, "\" of the render state has no counterpart"));
    }
}

void MaterialXWriter::Report(Carry kind, const std::string& message, const std::string& port)
{
    Place where = _current.Node->Where;
    where.Port = port;
    _problems.Warn(RuleOf(kind), where, message);
}

void MaterialXWriter::ReportDocument(Carry kind, const std::string& message)
{
    _problems.Warn(RuleOf(kind), _material.Document.File, message);
}

} // namespace Mox::Host
