#include "mox/interchange/MaterialXWriter.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/xml/XmlWriter.h"

#include <algorithm>
#include <cctype>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPropertyKind;

constexpr float unitOfPixels = 1.0f / 200.0f;
constexpr const char* graphName = "NG_material";

/// The numbers of a property, whose colours have spaces.
std::vector<float> NumbersOf(std::string text)
{
    std::replace(text.begin(), text.end(), ' ', ',');
    return ParseNumbers(text);
}

/// The type of a value in a condition of the table.
std::string TypeOfText(const std::string& text)
{
    if (text == "true" || text == "false")
        return "boolean";
    return ParseNumbers(text).empty() ? "string" : "float";
}

std::string Lower(std::string word)
{
    for (char& c : word)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return word;
}

MaterialXValue Number(float number)
{
    MaterialXValue value;
    value.Numbers = {number};
    return value;
}

MaterialXValue OutputOf(const std::string& node, const std::string& type,
                        const std::string& output = {})
{
    MaterialXValue value;
    value.Node = node;
    value.Type = type;
    value.Output = output;
    return value;
}

/// The index in a name such as "uv2"; nothing if it is another name.
std::optional<int> IndexIn(const std::string& name, const std::string& prefix)
{
    if (!name.starts_with(prefix))
        return std::nullopt;
    const auto index = ParseInteger(name.substr(prefix.size()));
    return index && *index >= 0 && Compose(prefix, *index) == name ? index : std::nullopt;
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
        _current = {&node, _elements.UniqueName(node.Id), {}};
        if (_current.Name != node.Id)
            Report(Carry::Approximated, Compose("the id becomes \"", _current.Name, "\""));
        WriteNode();
    }
    if (!surface)
        throw HostError(_material.Document.File, "the material has no surface");
    _current = {surface, _elements.UniqueName(surface->Id), {}};
    WriteSurface();
    WarnOfDocument();
    return Finish();
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
        writer.Attribute("name", graphName);
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
    if (_elements.Graph.size() > nodesBefore)
        Describe(*std::find_if(_elements.Graph.begin(), _elements.Graph.end(),
                               [&](const auto& element) { return element.Name == _current.Name; }));
    WarnOfLosses();
}

/// Gives an element the position and the description of the node.
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

/// A node that the table carries over directly; nothing if it does not.
MaterialXWriter::Ports MaterialXWriter::WriteByTable()
{
    for (const InterchangeNode& node : GetStandardNodes().Nodes) {
        for (const InterchangeAlternative& alternative : node.Alternatives) {
            if (node.IsHelper || alternative.Kind != Carry::Direct || !alternative.Code.empty() ||
                alternative.Type != _current.Node->Type || !Matches(alternative.Settings))
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
            std::find_if(node.Inputs.begin(), node.Inputs.end(),
                         [&](const auto& input) { return input.first == condition.Input; });
        if (usual == node.Inputs.end() || usual->second != condition.Text)
            element.Inputs.push_back(
                {condition.Input, TypeOfText(condition.Text), condition.Text, {}, {}, {}, {}, {}});
    }
    for (const auto& [property, text] : alternative.Settings) {
        if (text.front() == '^')
            element.Inputs.push_back(
                {text.substr(1), "string", Lower(PropertyOf(property)), {}, {}, {}, {}, {}});
    }
    Ports outputs;
    for (const InterchangePort& port : alternative.Outputs) {
        outputs[port.Port] = result;
        if (!hasOneOutput)
            outputs[port.Port] = OutputOf(result.Node, "float", port.Input);
    }
    return outputs;
}

/// A node as a formula of MaterialX nodes; nothing if the table has none.
MaterialXWriter::Ports MaterialXWriter::WriteByFormula()
{
    for (const InterchangeBack& back : GetStandardNodes().Back) {
        if (back.Type != _current.Node->Type || !Matches(back.Settings))
            continue;
        MaterialXElements::Values known;
        for (const auto& [name, property] : _current.Node->Properties) {
            std::string word = name;
            std::replace(word.begin(), word.end(), ' ', '_');
            known[word].Numbers = NumbersOf(property.Value);
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

MaterialXWriter::Ports MaterialXWriter::WriteConstant()
{
    const std::string kind = PropertyOf("Constant Type");
    const bool isLocked = PropertyOf("Lock") == "true";
    const bool isColour = kind == "Colour" || kind == "Component";
    const std::string name = PropertyOf("Name");
    std::vector<float> numbers =
        NumbersOf(PropertyOf(isColour ? "Default Colour" : "Default Scalar"));
    if (kind == "Vector") {
        const auto count = ParseInteger(PropertyOf("Component Count")).value_or(1);
        numbers.resize(static_cast<std::size_t>(std::clamp(count, 1, 4)),
                       numbers.empty() ? 0.0f : numbers[0]);
    }
    const bool hasAlpha = isColour && PropertyOf("Alpha") == "true" && IsRead("alpha");
    WarnOfUnreadAlpha(isColour && PropertyOf("Alpha") == "true" && !hasAlpha);
    if (hasAlpha)
        numbers.push_back(NumbersOf(PropertyOf("Default Alpha")).front());
    const std::pair limits(PropertyOf("Min Scalar"), PropertyOf("Max Scalar"));
    const auto host = BindingValues("float", name);
    const auto given = host.find("default");
    if (!isLocked && given != host.end()) {
        const std::vector<float> own = ParseNumbers(given->second);
        for (std::size_t i = 0; i < numbers.size() && !own.empty(); ++i)
            numbers[i] = own[std::min(i, own.size() - 1)];
        const bool isUniform =
            std::all_of(numbers.begin(), numbers.end(), [&](float n) { return n == numbers[0]; });
        if (isColour || isUniform)
            Report(Carry::Approximated, "the value of the binding becomes that of the node");
    }
    const std::string type = TypeOfWidth(static_cast<int>(numbers.size()), isColour);
    MaterialXElement& element = _elements.Add("constant", _current.Name, type);
    MaterialXInput& value = element.Inputs.emplace_back();
    value.Name = "value";
    value.Type = type;
    value.Value = FormatNumbers(numbers);
    if (!isLocked) {
        MaterialXInput& input = _elements.GraphInputs.emplace_back();
        input.Name = _elements.UniqueInput(name);
        input.Type = type;
        input.Value = value.Value;
        value.Interface = input.Name;
        if (input.Name != name)
            Report(Carry::Approximated,
                   Compose("the binding \"", name, "\" becomes \"", input.Name, "\""));
        if (type == "float" && (limits.first != "0" || numbers[0] < 0.0f))
            input.More.emplace_back("uimin", limits.first);
        if (type == "float" && (limits.second != "1" || numbers[0] > 1.0f))
            input.More.emplace_back("uimax", limits.second);
    }
    const MaterialXValue result = OutputOf(element.Name, type);
    if (kind != "Component" && !hasAlpha)
        return {{"read", result}};
    Report(Carry::Composed, "a constant with components of its own is composed of other nodes");
    return Split(result,
                 kind == "Component" ? std::vector<std::string>{"red", "green", "blue", "alpha"}
                                     : std::vector<std::string>{"", "", "", "alpha"},
                 "read");
}

void MaterialXWriter::WarnOfUnreadAlpha(bool isUnread)
{
    if (isUnread)
        Report(Carry::None, "the alpha, which nothing reads, is left out");
}

/// Outputs for single components of a value, and one for the first three.
MaterialXWriter::Ports MaterialXWriter::Split(const MaterialXValue& value,
                                              const std::vector<std::string>& components,
                                              const std::string& whole)
{
    Ports outputs;
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (components[i].empty() || !IsRead(components[i]))
            continue;
        MaterialXElement& extract = _elements.Add(
            "extract", _elements.UniqueName(Compose(_current.Name, "_", components[i])), "float");
        MaterialXElements::Feed(extract, "in", value);
        extract.Inputs.push_back({"index", "integer", Compose(i), {}, {}, {}, {}, {}});
        outputs[components[i]] = OutputOf(extract.Name, "float");
    }
    if (IsRead(whole))
        outputs[whole] = _elements.Convert(value, value.Type == "color4" ? "color3" : value.Type);
    if (outputs.empty())
        outputs[whole] = value;
    return outputs;
}

MaterialXWriter::Ports MaterialXWriter::WriteTexture()
{
    const CompleteNode* root = _current.Node; // of the chain of references
    while (const CompleteNode* next = Referred(*root))
        root = next;
    _current.Used.insert("Reference");
    const auto property = [&](const char* name) {
        _current.Used.insert(name);
        return root->Properties.at(name).Value;
    };
    const std::string name = property("Name");
    const std::string kind = property("Colour Type");
    const bool isNormal = kind == "Normal" || kind == "DXT5 Normal";
    const bool isSrgb = property("sRGB") == "true" && !isNormal;
    const bool hasAlpha = property("Alpha") == "true" && IsRead("out_alpha");
    WarnOfUnreadAlpha(property("Alpha") == "true" && !hasAlpha && kind != "Vector" &&
                      kind != "DXT5 Normal");
    const bool isRedOnly =
        kind == "Component" && !isSrgb && !hasAlpha && !IsRead("out_green") && !IsRead("out_blue");
    const std::string type = isNormal           ? "vector3"
                             : isRedOnly        ? "float"
                             : hasAlpha         ? "color4"
                             : kind == "Vector" ? (isSrgb ? "color4" : "vector4")
                                                : "color3";
    if (property("Texture Type") == "1D")
        Report(Carry::Approximated, "a texture of one dimension is read in the middle of an image");
    if (kind == "DXT5 Normal")
        Report(Carry::Approximated, "the normal is not packed in two components");

    MaterialXValue uv = InputOf("in_uv");
    if (WidthOfType(uv.Type) == 1 && uv.IsConnected()) {
        MaterialXElement& combine =
            _elements.Add("combine2", _elements.UniqueName(_current.Name + "_uv"), "vector2");
        MaterialXElements::Feed(combine, "in1", uv);
        MaterialXElements::Feed(combine, "in2", Number(0.5f));
        uv = OutputOf(combine.Name, "vector2");
    }
    MaterialXElement& element = _elements.Add("image", _current.Name, type);
    MaterialXInput& file = element.Inputs.emplace_back();
    file.Name = "file";
    file.Type = "filename";
    file.Interface = AddFile(name, isSrgb);
    if (uv.IsConnected())
        MaterialXElements::Feed(element, "texcoord", uv);
    for (const auto& [value, text] : BindingValues("texture", name)) {
        const auto add = [&](const char* input, const std::string& word) {
            element.Inputs.push_back({input, "string", word, {}, {}, {}, {}, {}});
        };
        const std::string wrap = text == "repeat" ? "periodic" : text;
        if (value == "wrap_u")
            add("uaddressmode", wrap);
        else if (value == "wrap_v")
            add("vaddressmode", wrap);
        else if (value == "filter" && text == "nearest")
            add("filtertype", "closest");
        else if (value != "default" && root == _current.Node)
            Report(Carry::None,
                   Compose("the value \"", value, "\" of the binding has no counterpart"));
        if (value.starts_with("wrap") && text == "repeat")
            Report(Carry::Approximated, Compose("\"", value, "\" is what MaterialX does anyway"));
    }
    MaterialXValue result = OutputOf(element.Name, type);
    result.IsPacked = isNormal;
    if (isRedOnly)
        return {{"out_red", result}};
    if (kind != "Component" && !hasAlpha)
        return {{"out_colour", result}};
    Report(Carry::Composed, "components of the texture are taken out by nodes of their own");
    return kind == "Component"
               ? Split(result, {"out_red", "out_green", "out_blue", "out_alpha"}, "")
               : Split(result, {"", "", "", "out_alpha"}, "out_colour");
}

/// The input of the node graph that holds the file of a texture.
std::string MaterialXWriter::AddFile(const std::string& binding, bool isSrgb)
{
    const auto known = _files.find(binding);
    if (known != _files.end())
        return known->second;
    MaterialXInput& input = _elements.GraphInputs.emplace_back();
    input.Name = _elements.UniqueInput(binding);
    input.Type = "filename";
    const auto values = BindingValues("texture", binding);
    const auto file = values.find("default");
    input.Value = file == values.end() ? std::string() : file->second;
    input.ColourSpace = isSrgb ? "srgb_texture" : "lin_rec709";
    if (input.Name != binding)
        Report(Carry::Approximated,
               Compose("the binding \"", binding, "\" becomes \"", input.Name, "\""));
    return _files[binding] = input.Name;
}

MaterialXWriter::Ports MaterialXWriter::WriteStream()
{
    const bool isUv = _current.Node->Type == "CoreUv";
    const std::string name = PropertyOf("Name");
    const std::string kind = isUv ? "" : PropertyOf("Colour Type");
    const bool hasAlpha = !isUv && PropertyOf("Alpha") == "true" && IsRead("out_alpha");
    WarnOfUnreadAlpha(!isUv && PropertyOf("Alpha") == "true" && !hasAlpha && kind != "Vector");
    const bool isRedOnly =
        kind == "Component" && !hasAlpha && !IsRead("out_green") && !IsRead("out_blue");
    const std::string type = isUv                           ? "vector2"
                             : isRedOnly                    ? "float"
                             : hasAlpha || kind == "Vector" ? "color4"
                                                            : "color3";
    for (const auto& [value, text] : BindingValues(isUv ? "uv" : "colour", name))
        Report(Carry::None, Compose("the value \"", value, "\" of the binding has no counterpart"));
    const auto index = IndexIn(name, isUv ? "uv" : "colour");
    MaterialXElement& element = _elements.Add(
        index ? (isUv ? "texcoord" : "geomcolor") : "geompropvalue", _current.Name, type);
    if (!index)
        element.Inputs.push_back({"geomprop", "string", name, {}, {}, {}, {}, {}});
    else if (*index != 0)
        element.Inputs.push_back({"index", "integer", Compose(*index), {}, {}, {}, {}, {}});
    const MaterialXValue result = OutputOf(element.Name, type);
    if (isUv)
        return {{"read", result}};
    if (isRedOnly)
        return {{"out_red", result}};
    if (kind != "Component" && !hasAlpha)
        return {{"out_colour", result}};
    Report(Carry::Composed, "components of the colour are taken out by nodes of their own");
    return kind == "Component"
               ? Split(result, {"out_red", "out_green", "out_blue", "out_alpha"}, "")
               : Split(result, {"", "", "", "out_alpha"}, "out_colour");
}

void MaterialXWriter::WriteSurface()
{
    const bool isUnlit = _current.Node->Type == "Surface";
    const InterchangeSurface& surface =
        *GetStandardNodes().FindSurface(isUnlit ? "surface_unlit" : "gltf_pbr");
    _shader = {surface.Name, _current.Name, "surfaceshader", {}, {}};
    Describe(_shader);
    if (isUnlit)
        FeedUnlit();
    else
        FeedPhysical(surface);
    if (IsConnected("in_offset"))
        Report(Carry::None, "an offset of vertices has no counterpart", "in_offset");
    WarnOfLosses();
    _surfaceMaterial = {"surfacematerial", {}, "material", {}, {}};
    for (const DocumentValue& value : _material.Document.Description) {
        if (value.Name == "name")
            _surfaceMaterial.Name = _elements.UniqueName(value.Value);
        else if (value.Name == "desc")
            _surfaceMaterial.Attributes.emplace_back("doc", value.Value);
        if (value.Name == "name" && value.Value != _surfaceMaterial.Name)
            ReportDocument(Carry::Approximated, Compose("the name of the material becomes \"",
                                                        _surfaceMaterial.Name, "\""));
    }
    if (_surfaceMaterial.Name.empty()) {
        _surfaceMaterial.Name = _elements.UniqueName("Material");
        ReportDocument(Carry::Approximated, Compose("the material has no name; it is called \"",
                                                    _surfaceMaterial.Name, "\""));
    }
    _surfaceMaterial.Inputs.push_back(
        {"surfaceshader", "surfaceshader", {}, _shader.Name, {}, {}, {}, {}});
}

/// Gives an input of the shader a value, through an output of the node graph if it is connected.
void MaterialXWriter::FeedShader(const std::string& input, const MaterialXValue& value,
                                 const std::string& type)
{
    const MaterialXValue converted = _elements.Convert(value, type);
    if (!converted.IsConnected()) {
        MaterialXElements::Feed(_shader, input, converted);
        return;
    }
    MaterialXInput& output = _elements.GraphOutputs.emplace_back();
    output.Name = input + "_out";
    output.Type = type;
    output.Node = converted.Node;
    output.Output = converted.Output;
    MaterialXInput& connection = _shader.Inputs.emplace_back();
    connection.Name = input;
    connection.Type = type;
    connection.More = {{"nodegraph", graphName}, {"output", output.Name}};
}

/// The surface without metalness is lit by rules of the environment; MaterialX has only light of
/// its own for it.
void MaterialXWriter::FeedUnlit()
{
    Report(Carry::Approximated,
           IsConnected("in_colour")
               ? "the colour becomes light of its own, as MaterialX has no such surface"
               : "the surface becomes one without a colour that is lit",
           "in_colour");
    if (IsConnected("in_colour")) {
        MaterialXValue light = InputOf("in_colour");
        if (IsConnected("in_emission"))
            light = _elements.Evaluate(
                ParseFormula("add( colour, emission )"),
                {{"colour", _elements.Convert(light, "color3")},
                 {"emission", _elements.Convert(InputOf("in_emission"), "color3")}},
                _elements.UniqueName(_current.Name + "_emission"));
        FeedShader("emission_color", light, "color3");
    } else if (IsConnected("in_emission")) {
        FeedShader("emission_color", InputOf("in_emission"), "color3");
    } else {
        FeedShader("emission", Number(0.0f), "float");
    }
    if (IsConnected("in_alpha"))
        FeedShader("opacity", InputOf("in_alpha"), "float");
    if (IsConnected("in_normal"))
        Report(Carry::None, "a surface without light has no normal", "in_normal");
}

void MaterialXWriter::FeedPhysical(const InterchangeSurface& surface)
{
    for (const InterchangeSurface::Port& port : surface.Ports) {
        const Expression& result = port.Is.Steps.back().Value;
        std::string input = result.Name; // of a formula that is only an input
        std::string type =
            port.Name == "in_colour" || port.Name == "in_emission" ? "color3" : "float";
        if (port.Name == "in_normal") {
            if (IsConnected(port.Name))
                FeedShader("normal", MakeNormal(port.Name), "vector3");
            continue;
        }
        MaterialXValue value = InputOf(port.Name);
        if (port.Name == "in_emission")
            input = "emissive";
        if (port.Name == "in_specular") {
            input = "specular";
            if (IsConnected(port.Name)) {
                value = _elements.Evaluate(ParseFormula("multiply( specular, 2 )"),
                                           {{"specular", value}},
                                           _elements.UniqueName(_current.Name + "_specular"));
                Report(Carry::Composed, "the reflectance is twice that of MaterialX", port.Name);
            }
        }
        const auto usual = std::find_if(surface.Inputs.begin(), surface.Inputs.end(),
                                        [&](const auto& entry) { return entry.first == input; });
        if (IsConnected(port.Name))
            FeedShader(input, value, type);
        else if (input != "specular" && input != "alpha" &&
                 ParseNumbers(usual->second).front() != ParseNumbers(port.Unfed).front() &&
                 (port.Name != "in_clearcoatRoughness" || IsConnected("in_clearcoat")))
            FeedShader(input, Number(ParseNumbers(port.Unfed).front()), type);
    }
    WriteRenderState();
}

/// A normal in tangent space as MaterialX has it, in world space.
MaterialXValue MaterialXWriter::MakeNormal(const std::string& port)
{
    const auto tail = _feeds.at({_current.Node->Id, port});
    MaterialXValue packed = _outputs[tail];
    if (!packed.IsPacked) {
        packed = _elements.Evaluate(ParseFormula("add( multiply( normal, 0.5 ), 0.5 )"),
                                    {{"normal", _elements.Convert(packed, "vector3")}},
                                    _elements.UniqueName(_current.Name + "_packed"));
        Report(Carry::Composed, "the normal is packed for MaterialX", port);
    }
    MaterialXElement& map =
        _elements.Add("normalmap", _elements.UniqueName(_current.Name + "_normalmap"), "vector3");
    MaterialXElements::Feed(map, "in", packed);
    return OutputOf(map.Name, "vector3");
}

void MaterialXWriter::WriteRenderState()
{
    std::map<std::string, std::string> state;
    for (const DocumentValue& value : _material.Document.RenderState)
        state[value.Name] = value.Value;
    const bool isMask = state["alphaTest"] == "Yes" &&
                        (state["alphaFunc"] == "greaterOrEqual" || state["alphaFunc"] == "greater");
    const bool isBlend = state["alphaBlend"] == "Yes";
    if (isMask || isBlend || IsConnected("in_opacity"))
        _shader.Inputs.push_back({"alpha_mode", "integer", isMask ? "1" : "2", {}, {}, {}, {}, {}});
    if (isMask && !state["alphaRef"].empty())
        _shader.Inputs.push_back({"alpha_cutoff", "float", state["alphaRef"], {}, {}, {}, {}, {}});
    if (!isMask && !isBlend && IsConnected("in_opacity"))
        Report(Carry::Approximated, "the opacity blends the surface with what is behind",
               "in_opacity");
}

/// Whether the node has these properties. Those that are carried over in another way count as such.
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

/// What an input port of the node reads.
MaterialXValue MaterialXWriter::InputOf(const std::string& port)
{
    const std::string* property = GetStandardNodes().FindProperty(_current.Node->Type, port);
    if (property)
        _current.Used.insert(*property);
    if (!IsConnected(port)) {
        MaterialXValue value = Number(0.0f);
        if (property)
            value.Numbers = NumbersOf(PropertyOf(*property));
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
        Report(Carry::Composed, "the normal of the texture is unpacked by nodes", port);
    }
    return unpacked->second;
}

/// Whether an edge brings a value; one from a node without counterpart does not.
bool MaterialXWriter::IsConnected(const std::string& port) const
{
    const auto feed = _feeds.find({_current.Node->Id, port});
    return feed != _feeds.end() && _outputs.contains(feed->second);
}

bool MaterialXWriter::IsRead(const std::string& port) const
{
    return _read.contains({_current.Node->Id, port});
}

const CompleteNode* MaterialXWriter::Referred(const CompleteNode& node) const
{
    const auto reference = node.Properties.find("Reference");
    if (reference == node.Properties.end())
        return nullptr;
    const auto target = _nodes.find(reference->second.Value);
    return target == _nodes.end() ? nullptr : target->second;
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

/// Reports what has an influence and was not carried over: edges and properties.
void MaterialXWriter::WarnOfLosses()
{
    for (const std::string& port : _current.Node->Inputs) {
        if (_feeds.contains({_current.Node->Id, port}) && !IsConnected(port))
            Report(Carry::None, "what feeds it has no counterpart", port);
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
    if (kind == Carry::Composed)
        _problems.Warn("interchange-composed", where, message);
    else if (kind == Carry::Approximated)
        _problems.Warn("interchange-approximated", where, message);
    else
        _problems.Warn("interchange-dropped", where, message);
}

void MaterialXWriter::ReportDocument(Carry kind, const std::string& message)
{
    if (kind == Carry::Approximated)
        _problems.Warn("interchange-approximated", _material.Document.File, message);
    else
        _problems.Warn("interchange-dropped", _material.Document.File, message);
}

} // namespace Mox::Host
