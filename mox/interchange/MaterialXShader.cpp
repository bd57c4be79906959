// The members of MaterialXWriter that write the surface.

#include "mox/Text.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/interchange/MaterialXWriter.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

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
        Report(Carry::None, "vertex offsets have no counterpart", "in_offset");
    WarnOfLosses();
    _surfaceMaterial = {"surfacematerial", {}, "material", {}, {}};
    for (const DocumentValue& value : _material.Document.Description) {
        if (value.Name == "name")
            _surfaceMaterial.Name = _elements.UniqueName(value.Value);
        else if (value.Name == "desc")
            _surfaceMaterial.Attributes.emplace_back("doc", value.Value);
        if (value.Name == "name" && value.Value != _surfaceMaterial.Name)
            ReportDocument(Carry::Approximated,
                           Compose("the material is renamed to \"", _surfaceMaterial.Name, "\""));
    }
    if (_surfaceMaterial.Name.empty()) {
        _surfaceMaterial.Name = _elements.UniqueName("Material");
        ReportDocument(Carry::Approximated, Compose("the material has no name, so it is named \"",
                                                    _surfaceMaterial.Name, "\""));
    }
    _surfaceMaterial.Inputs.push_back(
        {"surfaceshader", "surfaceshader", {}, _shader.Name, {}, {}, {}, {}});
}

/// Sets an input of the shader, through an output of the node graph if the value is connected.
void MaterialXWriter::FeedShader(const std::string& input, const MaterialXValue& value,
                                 const std::string& type)
{
    const MaterialXValue converted = _elements.Convert(value, type);
    if (!converted.IsConnected()) {
        MaterialXElements::Feed(_shader, input, converted);
        return;
    }
    MaterialXInput& output = _elements.GraphOutputs.emplace_back();
    output.Name = _elements.UniqueName(input + "_out");
    output.Type = type;
    output.Node = converted.Node;
    output.Output = converted.Output;
    MaterialXInput& connection = _shader.Inputs.emplace_back();
    connection.Name = input;
    connection.Type = type;
    connection.More = {{"nodegraph", GraphName}, {"output", output.Name}};
}

/// A surface without metalness uses the lighting rules of the environment; MaterialX can express it
/// only as emission.
void MaterialXWriter::FeedUnlit()
{
    Report(Carry::Approximated,
           IsConnected("in_colour") ? "the surface becomes unlit, with its colour as emission"
                                    : "the surface becomes unlit, with only its emission",
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
        FeedShader("emission", MakeNumber(0.0f), "float");
    }
    if (IsConnected("in_alpha"))
        FeedShader("opacity", InputOf("in_alpha"), "float");
    if (IsConnected("in_normal"))
        Report(Carry::None, "an unlit surface has no normal", "in_normal");
}

void MaterialXWriter::FeedPhysical(const InterchangeSurface& surface)
{
    for (const InterchangeSurface::Port& port : surface.Ports) {
        const Expression& result = port.Is.Steps.back().Value;
        std::string input = result.Name; // for a formula that consists of a single input
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
                Report(Carry::Composed, "the reflectance is multiplied by 2 for MaterialX",
                       port.Name);
            }
        }
        const auto usual = std::ranges::find(surface.Inputs, input, &NamedTexts::value_type::first);
        if (IsConnected(port.Name))
            FeedShader(input, value, type);
        else if (input != "specular" && input != "alpha" &&
                 ParseNumbers(usual->second).front() != ParseNumbers(port.Unfed).front() &&
                 (port.Name != "in_clearcoatRoughness" || IsConnected("in_clearcoat")))
            FeedShader(input, MakeNumber(ParseNumbers(port.Unfed).front()), type);
    }
    WriteRenderState();
}

/// Converts a tangent-space normal in MaterialX's encoding to world space.
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
    return MakeOutput(map.Name, "vector3");
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
        Report(Carry::Approximated, "the opacity blends the surface with the background",
               "in_opacity");
}

} // namespace Mox::Host
