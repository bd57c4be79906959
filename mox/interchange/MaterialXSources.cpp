// The members of MaterialXWriter that write constants, textures and streams.

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/interchange/MaterialXWriter.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

namespace {

/// Returns the index in a name such as "uv2", or nothing if the name has another form.
std::optional<int> IndexIn(const std::string& name, const std::string& prefix)
{
    if (!name.starts_with(prefix))
        return std::nullopt;
    const auto index = ParseInteger(name.substr(prefix.size()));
    return index && *index >= 0 && Compose(prefix, *index) == name ? index : std::nullopt;
}

} // namespace

MaterialXWriter::Ports MaterialXWriter::WriteConstant()
{
    const std::string kind = PropertyOf("Constant Type");
    const bool isLocked = PropertyOf("Lock") == "true";
    const bool isColour = kind == "Colour" || kind == "Component";
    const std::string name = PropertyOf("Name");
    std::vector<float> numbers =
        ParsePropertyNumbers(PropertyOf(isColour ? "Default Colour" : "Default Scalar"));
    if (numbers.empty()) {
        numbers.resize(isColour ? 3 : 1);
        Report(Carry::None, "MaterialX has no infinite numbers; the constant becomes 0");
    }
    if (kind == "Vector") {
        const auto count = ParseInteger(PropertyOf("Component Count")).value_or(1);
        numbers.resize(static_cast<std::size_t>(std::clamp(count, 1, 4)),
                       numbers.empty() ? 0.0f : numbers[0]);
    }
    const bool hasAlpha = isColour && PropertyOf("Alpha") == "true" && IsRead("alpha");
    WarnOfUnreadAlpha(isColour && PropertyOf("Alpha") == "true" && !hasAlpha);
    if (hasAlpha)
        numbers.push_back(ParseFloat(PropertyOf("Default Alpha")).value_or(1.0f));
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
            Report(Carry::Approximated, "the value of the binding becomes the value of the node");
    }
    const std::string type = TypeOfWidth(static_cast<int>(numbers.size()), isColour);
    MaterialXElement& element = _elements.Add("constant", _current.Name, type);
    MaterialXInput& value = element.Inputs.emplace_back();
    value.Name = "value";
    value.Type = type;
    value.Value = FormatNumbers(numbers);
    if (!isLocked) {
        MaterialXInput& input = _elements.GraphInputs.emplace_back();
        input.Name = _elements.UniqueName(name);
        input.Type = type;
        input.Value = value.Value;
        value.Interface = input.Name;
        if (input.Name != name)
            Report(Carry::Approximated,
                   Compose("the binding \"", name, "\" is renamed to \"", input.Name, "\""));
        if (type == "float" && (limits.first != "0" || numbers[0] < 0.0f))
            input.More.emplace_back("uimin", limits.first);
        if (type == "float" && (limits.second != "1" || numbers[0] > 1.0f))
            input.More.emplace_back("uimax", limits.second);
    }
    const MaterialXValue result = MakeOutput(element.Name, type);
    if (kind != "Component" && !hasAlpha)
        return {{"read", result}};
    Report(Carry::Composed, "a constant with separate components becomes several nodes");
    return Split(result,
                 kind == "Component" ? std::vector<std::string>{"red", "green", "blue", "alpha"}
                                     : std::vector<std::string>{"", "", "", "alpha"},
                 "read");
}

/// Creates outputs for the individual components of a value and one for its first three.
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
        outputs[components[i]] = MakeOutput(extract.Name, "float");
    }
    if (IsRead(whole))
        outputs[whole] = _elements.Convert(value, value.Type == "color4" ? "color3" : value.Type);
    if (outputs.empty())
        outputs[whole] = value;
    return outputs;
}

/// Returns the outputs of a texture or a colour stream.
MaterialXWriter::Ports MaterialXWriter::SplitColour(const MaterialXValue& value,
                                                    const std::string& kind, bool hasAlpha,
                                                    const char* what)
{
    if (kind != "Component" && !hasAlpha)
        return {{"out_colour", value}};
    Report(Carry::Composed, Compose("separate nodes extract the components of the ", what));
    return kind == "Component" ? Split(value, {"out_red", "out_green", "out_blue", "out_alpha"}, "")
                               : Split(value, {"", "", "", "out_alpha"}, "out_colour");
}

void MaterialXWriter::WarnOfUnreadAlpha(bool isUnread)
{
    if (isUnread)
        Report(Carry::None, "the alpha is left out, because nothing reads it");
}

MaterialXWriter::Ports MaterialXWriter::WriteTexture()
{
    const CompleteNode* root = _current.Node; // root of the chain of references
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
        Report(Carry::Approximated,
               "a one-dimensional texture is read along the middle of an image");
    if (kind == "DXT5 Normal")
        Report(Carry::Approximated, "the normal is not packed into two components");

    MaterialXValue uv = InputOf("in_uv");
    if (WidthOfType(uv.Type) == 1 && uv.IsConnected()) {
        MaterialXElement& combine =
            _elements.Add("combine2", _elements.UniqueName(_current.Name + "_uv"), "vector2");
        MaterialXElements::Feed(combine, "in1", uv);
        MaterialXElements::Feed(combine, "in2", MakeNumber(0.5f));
        uv = MakeOutput(combine.Name, "vector2");
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
            Report(Carry::Approximated, Compose("\"", value, "\" is the default in MaterialX"));
    }
    MaterialXValue result = MakeOutput(element.Name, type);
    result.IsPacked = isNormal;
    return isRedOnly ? Ports{{"out_red", result}} : SplitColour(result, kind, hasAlpha, "texture");
}

/// Returns the node graph input that holds the file name of a texture.
std::string MaterialXWriter::AddFile(const std::string& binding, bool isSrgb)
{
    const auto known = _files.find(binding);
    if (known != _files.end())
        return known->second;
    MaterialXInput& input = _elements.GraphInputs.emplace_back();
    input.Name = _elements.UniqueName(binding);
    input.Type = "filename";
    const auto values = BindingValues("texture", binding);
    const auto file = values.find("default");
    input.Value = file == values.end() ? std::string() : file->second;
    input.ColourSpace = isSrgb ? "srgb_texture" : "lin_rec709";
    if (input.Name != binding)
        Report(Carry::Approximated,
               Compose("the binding \"", binding, "\" is renamed to \"", input.Name, "\""));
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
    const MaterialXValue result = MakeOutput(element.Name, type);
    if (isUv)
        return {{"read", result}};
    return isRedOnly ? Ports{{"out_red", result}} : SplitColour(result, kind, hasAlpha, "colour");
}

const CompleteNode* MaterialXWriter::Referred(const CompleteNode& node) const
{
    const auto reference = node.Properties.find("Reference");
    if (reference == node.Properties.end())
        return nullptr;
    const auto target = _nodes.find(reference->second.Value);
    return target == _nodes.end() ? nullptr : target->second;
}

} // namespace Mox::Host
