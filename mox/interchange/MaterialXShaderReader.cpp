// The members of MaterialXReader that read the shader.

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/NearestName.h"
#include "mox/interchange/MaterialXReader.h"

#include <algorithm>
#include <cmath>

namespace Mox::Host {

using InputValues = InterchangeGraph::Values;
using Materials::Compose;

namespace {

bool IsNear(const InterchangeValue& value, const std::string& text)
{
    const auto wanted = ParseFloat(text);
    return wanted && !value.IsConnected() && !value.Numbers.empty() &&
           std::all_of(value.Numbers.begin(), value.Numbers.end(),
                       [&](float number) { return std::abs(number - *wanted) < 1e-5f; });
}

} // namespace

/// Returns the material to read, or null. Other materials are reported.
const XmlTree* MaterialXReader::ChooseMaterial(const XmlTree& root)
{
    std::vector<const XmlTree*> materials;
    const XmlTree* chosen = nullptr;
    std::string names;
    for (const XmlTree& child : root.Children) {
        if (child.Name != "surfacematerial")
            continue;
        materials.push_back(&child);
        names += Compose(names.empty() ? "" : ", ", "\"", child.Get("name"), "\"");
        if (!chosen && (_options.Material.empty() || child.Get("name") == _options.Material))
            chosen = &child;
    }
    if (!chosen && !_options.Material.empty()) {
        throw HostError(root.Where, Compose("there is no material \"", _options.Material,
                                            "\"; available: ", names.empty() ? "none" : names));
    }
    for (const XmlTree* other : materials) {
        if (other != chosen && _options.Material.empty())
            Report(Carry::None, *other,
                   Compose("this material is ignored; only the material \"", chosen->Get("name"),
                           "\" is read"));
    }
    return chosen;
}

/// Returns the shader of the material, or the first shader if there is no material.
MaterialXSource MaterialXReader::FindShader(const XmlTree& root)
{
    const XmlTree* material = ChooseMaterial(root);
    MaterialXSource shader;
    if (material)
        shader = ReadSurfaceMaterial(*material);
    if (shader.What == MaterialXSource::Kind::Output)
        return shader;
    if (!material) {
        for (const XmlTree& child : root.Children) {
            if (GetStandardNodes().FindSurface(child.Name))
                return {MaterialXSource::Kind::Output, &child, MaterialXScopes::Root, {}};
        }
    }
    throw HostError(material ? material->Where : root.Where,
                    material ? "the material has no surface shader"
                             : "the document has no material");
}

/// Reads the name, the description and the inputs of a material.
/// @returns its shader
MaterialXSource MaterialXReader::ReadSurfaceMaterial(const XmlTree& material)
{
    for (const char* other : {"backsurfaceshader", "displacementshader"}) {
        const XmlTree* unread = MaterialXScopes::FindInput(material, other);
        if (unread &&
            _scopes->Follow(MaterialXScopes::Root, *unread).What == MaterialXSource::Kind::Output)
            Report(Carry::None, *unread, "the input has no counterpart");
    }
    _builder.Document().Description.push_back({"name", material.Get("name")});
    if (const std::string* text = material.Find("doc"))
        _builder.Document().Description.push_back({"desc", *text});
    const XmlTree* input = MaterialXScopes::FindInput(material, "surfaceshader");
    return input ? _scopes->Follow(MaterialXScopes::Root, *input) : MaterialXSource();
}

void MaterialXReader::ReadShader(const MaterialXSource& shader)
{
    const InterchangeSurface* surface = GetStandardNodes().FindSurface(shader.Element->Name);
    if (!surface) {
        throw HostError(PlaceOf(*shader.Element),
                        Compose("the shader \"", shader.Element->Name, "\" is not supported"));
    }
    const Key key(shader.Scope, shader.Element);
    for (const auto& [name, text] : surface->Inputs) {
        if (GetStandardNodes().HasFixedInput(surface->Name, name))
            continue;
        if (const XmlTree* input = MaterialXScopes::FindInput(*shader.Element, name))
            Evaluate(_scopes->Follow(shader.Scope, *input));
    }
    const InputValues inputs = ReadInputs(key, surface->Inputs, surface->Name);
    _evaluated[key].IsDone = true;
    FeedSurface(*surface, inputs, *shader.Element);
    SetRenderState(*surface, inputs);
    WarnOfIgnored(*surface, inputs, *shader.Element);
}

void MaterialXReader::FeedSurface(const InterchangeSurface& surface, const InputValues& inputs,
                                  const XmlTree& element)
{
    InterchangeGraph::Site site = SiteOf({MaterialXScopes::Root, &element});
    site.Description.clear(); // only nodes keep it
    DocumentNode node = site.Record(surface.Type);
    std::vector<std::pair<std::string, InterchangeValue>> feeds;
    for (const InterchangeSurface::Port& port : surface.Ports) {
        if (!port.Unless.empty() && InterchangeGraph::Holds(port.Unless, inputs, {}))
            continue;
        const InterchangeGraph::Site step = site.Step(port.Name.substr(3));
        const std::size_t nodesBefore = _builder.Document().Nodes.size();
        InterchangeValue value = _graph.Supply(_graph.Evaluate(port.Is, inputs, step), step);
        if (IsNear(value, port.Unfed))
            continue;
        if (_builder.Document().Nodes.size() > nodesBefore)
            Report(Carry::Composed, element,
                   Compose("\"", port.Name, "\" is computed from several inputs"));
        const bool isVector =
            port.Name == "in_colour" || port.Name == "in_emission" || port.Name == "in_normal";
        if (value.Count > 1 || value.Numbers.size() > 1)
            value = _builder.Resize(value, isVector ? 3 : 1, step.Id, step.Line);
        if (!value.IsConnected()) {
            const Expression& result = port.Is.Steps.back().Value;
            if (!result.Numbers.empty()) { // a constant, independent of the shader's inputs
                feeds.emplace_back(port.Name, _builder.Constant(value.Numbers, step.Id, step.Line));
                continue;
            }
            DocumentNode constant;
            constant.Id = result.IsCall ? port.Name.substr(3) : result.Name;
            constant.Line = LineOf(element);
            const std::string name = constant.Id;
            value = _builder.Parameter(value.Numbers, std::move(constant), name);
        }
        feeds.emplace_back(port.Name, value);
    }
    const std::string id = _builder.Add(std::move(node));
    for (const auto& [port, value] : feeds)
        _builder.Connect(value, id, port, LineOf(element));
}

void MaterialXReader::SetRenderState(const InterchangeSurface& surface, const InputValues& inputs)
{
    for (const InterchangeSurface::State& state : surface.States) {
        if (!InterchangeGraph::Holds(state.When, inputs, {}) ||
            (!state.Unless.empty() && InterchangeGraph::Holds(state.Unless, inputs, {})))
            continue;
        for (const auto& [name, text] : state.Settings) {
            std::string value = text;
            if (text.starts_with("$")) {
                const InterchangeValue& number = inputs.at(text.substr(1));
                value = number.Numbers.empty()
                            ? "0.5"
                            : FormatNumber(std::clamp(number.Numbers.front(), 0.0f, 1.0f));
                if (value.find('e') != std::string::npos)
                    value = "0";
            }
            _builder.Document().RenderState.push_back({name, value});
        }
    }
}

void MaterialXReader::WarnOfIgnored(const InterchangeSurface& surface, const InputValues& inputs,
                                    const XmlTree& element)
{
    for (const InterchangeSurface::Ignored& ignored : surface.IgnoredInputs) {
        const InterchangeValue& value = inputs.at(ignored.Input);
        const XmlTree* input = MaterialXScopes::FindInput(element, ignored.Input);
        if (input && value.Text != ignored.Neutral && !EqualsText(value, ignored.Neutral))
            Report(ignored.IsApproximated ? Carry::Approximated : Carry::None, *input,
                   ignored.Note);
    }
    std::vector<RightName> names;
    for (const auto& [name, text] : surface.Inputs) {
        names.push_back({name});
        const XmlTree* input = MaterialXScopes::FindInput(element, name);
        if (input && ParseNumbers(text).size() == 1 && WidthOfType(input->Get("type")) > 1)
            Report(Carry::Approximated, *input,
                   "the input is a single number, so all components but the first are ignored");
    }
    for (const XmlTree& child : element.Children) {
        const std::string name = child.Get("name");
        if (child.Name == "input" && std::ranges::count(names, name, &RightName::Name) == 0)
            Report(Carry::None, child,
                   Compose("the shader has no input \"", name, "\"", SuggestName(name, names)));
    }
}

} // namespace Mox::Host
