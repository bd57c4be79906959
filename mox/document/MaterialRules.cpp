#include "mox/document/MaterialRules.h"

#include "mox/bindings/DocumentKeys.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/DocumentTextures.h"
#include "mox/document/PropertyText.h"

#include <algorithm>

namespace Mox::Host {

using Materials::GuiPropertyKind;
namespace BindingKeys = Materials::BindingKeys;
namespace DocumentKeys = Materials::DocumentKeys;

namespace {

bool IsNotEmpty(std::string_view text)
{
    return !text.empty();
}

bool IsWholeNumber(std::string_view text)
{
    return ParseInteger(text).has_value();
}

/// Returns whether a string is a list of numbers separated by commas and optional spaces. A binding
/// would silently ignore any other string.
bool IsNumberList(std::string_view text)
{
    while (true) {
        const std::size_t comma = text.find(',');
        const std::string_view number = text.substr(0, comma);
        const bool isWord = number.ends_with("inf") || number.ends_with("nan");
        if (isWord || !IsNumber(number))
            return false;
        if (comma == std::string_view::npos)
            return true;
        text.remove_prefix(comma + 1);
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    }
}

/// Returns whether a string is a decimal number from 0 to 1.
bool IsFraction(std::string_view text)
{
    const std::string_view digits = text.starts_with('0') ? "0123456789" : "0";
    if (!text.starts_with('0') && !text.starts_with('1'))
        return false;
    if (text.size() == 1)
        return true;
    return text[1] == '.' && text.size() > 2 &&
           text.find_first_not_of(digits, 2) == std::string_view::npos;
}

constexpr ValueRule anyText;
constexpr ValueRule someText = {{}, IsNotEmpty, "a non-empty string"};
constexpr ValueRule typeKey = {{}, nullptr, "the key of a node type"};
constexpr ValueRule nodeId = {{}, nullptr, "the id of a node"};
constexpr ValueRule portName = {{}, nullptr, "the Cg name of a port"};
constexpr ValueRule propertyName = {{}, nullptr, "the name of a property"};
constexpr ValueRule wholeNumber = {{}, IsWholeNumber, "a 32-bit integer"};
constexpr ValueRule number = {
    {}, IsNumber, "a number such as \"3\", \"-0.5\" or \"1e-07\", or \"inf\", \"-inf\" or \"nan\""};
constexpr ValueRule colour = {{}, IsColour, "three numbers separated by single spaces"};
constexpr ValueRule numberList = {{}, IsNumberList, "numbers separated by commas"};
constexpr ValueRule fraction = {{}, IsFraction, "a number from 0 to 1"};

constexpr ValueRule coordinate = {
    {}, IsCoordinate, "a whole number of pixels from -10000000 to 10000000"};
constexpr ValueRule extent = {{}, IsExtent, "a whole number of pixels from 1 to 10000000"};
constexpr ValueRule points = {
    {}, ArePoints, "points such as \"10,20 -30,40\", in whole pixels from -10000000 to 10000000"};
constexpr ValueRule displayColour = {{}, IsDisplayColour, "a colour such as \"#4080c0\""};

constexpr std::string_view versionWords[] = {PlainVersion, AnnotatedVersion};
constexpr std::string_view annotationKinds[] = {FormatAnnotationKind(AnnotationKind::Frame),
                                                FormatAnnotationKind(AnnotationKind::Note)};
constexpr std::string_view booleans[] = {"true", "false"};
constexpr std::string_view yesOrNo[] = {"Yes", "No"};
constexpr std::string_view comparisons[] = {"never",   "less",     "equal",          "lessOrEqual",
                                            "greater", "notEqual", "greaterOrEqual", "always"};
constexpr std::string_view blendFactors[] = {"zero",
                                             "one",
                                             "sourceColour",
                                             "oneMinusSourceColour",
                                             "destColour",
                                             "oneMinusDestColour",
                                             "sourceAlpha",
                                             "oneMinusSourceAlpha",
                                             "destAlpha",
                                             "oneMinusDestAlpha",
                                             "constantColour",
                                             "oneMinusConstantColour",
                                             "constantAlpha",
                                             "oneMinusConstantAlpha",
                                             "sourceAlphaSaturate"};

constexpr AttributeRule Required(std::string_view name, const ValueRule& value)
{
    return {name, true, value};
}

constexpr AttributeRule Optional(std::string_view name, const ValueRule& value)
{
    return {name, false, value};
}

constexpr AttributeRule materialAttributes[] = {Required("version", {versionWords})};

constexpr AttributeRule descriptionAttributes[] = {
    Optional(DocumentKeys::Name, anyText),       Optional(DocumentKeys::Desc, anyText),
    Optional(DocumentKeys::Categories, anyText), Optional(DocumentKeys::HelpUrl, anyText),
    Optional(DocumentKeys::Preview, anyText),    Optional(DocumentKeys::VisibleInMayaUi, {yesOrNo}),
};

constexpr AttributeRule renderStateAttributes[] = {
    Optional(DocumentKeys::AlphaBlend, {yesOrNo}),
    Optional(DocumentKeys::SourceBlend, {blendFactors}),
    Optional(DocumentKeys::DestBlend, {blendFactors}),
    Optional(DocumentKeys::AlphaTest, {yesOrNo}),
    Optional(DocumentKeys::AlphaFunc, {comparisons}),
    Optional(DocumentKeys::AlphaRef, fraction),
    Optional(DocumentKeys::ZWriteEnabled, {yesOrNo}),
    Optional(DocumentKeys::ZTest, {yesOrNo}),
    Optional(DocumentKeys::ZTestFunc, {comparisons}),
    Optional(DocumentKeys::BackFaceCullEnabled, {yesOrNo}),
};

constexpr AttributeRule nodeAttributes[] = {
    Required("id", someText),
    Required("type", typeKey),
    Required("version", wholeNumber),
};

constexpr AttributeRule propertyAttributes[] = {Required("name", propertyName)};
constexpr AttributeRule booleanValue[] = {Required("value", {booleans})};
constexpr AttributeRule integerValue[] = {Required("value", wholeNumber)};
constexpr AttributeRule floatValue[] = {Required("value", number)};
constexpr AttributeRule colourValue[] = {Required("value", colour)};
constexpr AttributeRule textValue[] = {Required("value", anyText)};
constexpr ElementRule::Variant kinds[] = {
    {FormatKind(GuiPropertyKind::Bool), booleanValue},
    {FormatKind(GuiPropertyKind::Integer), integerValue},
    {FormatKind(GuiPropertyKind::Float), floatValue},
    {FormatKind(GuiPropertyKind::Colour), colourValue},
    {FormatKind(GuiPropertyKind::String), textValue},
    {FormatKind(GuiPropertyKind::Enum), textValue},
    {FormatKind(GuiPropertyKind::Node), textValue},
};

constexpr AttributeRule edgeAttributes[] = {
    Required("tail", nodeId),       Required("tailPort", portName), Required("head", nodeId),
    Required("headPort", portName), Optional("points", points),
};

// The rules reject attribute values that a binding would silently ignore.
constexpr AttributeRule bindingAttributes[] = {
    Required(BindingKeys::Tag, someText),
    Optional(BindingKeys::Gui, {BindingKeys::UiTypeWords}),
    Optional(BindingKeys::CgName, anyText),
    Optional(BindingKeys::Uv, anyText),
    Optional(BindingKeys::Desc, anyText),
    Optional(BindingKeys::HelpUrl, anyText),
    Optional(BindingKeys::UiLabel, anyText),
    Optional(BindingKeys::UiUnitType, {BindingKeys::UiUnitTypeWords}),
    Optional(BindingKeys::StreamFormat, anyText),
    Optional(BindingKeys::StreamNormalize, {yesOrNo}),
    Optional(BindingKeys::DatasetModifiers, anyText),
    Optional(BindingKeys::BasicColour, {yesOrNo}),
};
constexpr AttributeRule floatAttributes[] = {
    Optional(BindingKeys::Min, numberList),
    Optional(BindingKeys::Max, numberList),
    Optional(BindingKeys::Default, numberList),
};
constexpr AttributeRule textureAttributes[] = {
    Optional(BindingKeys::Default, anyText),
    Optional(BindingKeys::Srgb, {yesOrNo}),
    Optional(BindingKeys::SignedExpanded, {yesOrNo}),
    Optional(BindingKeys::Normalised, {yesOrNo}),
    Optional(BindingKeys::UsageHint, anyText),
    Optional(BindingKeys::UsingAlpha, {yesOrNo}),
    Optional(SamplerKeys::WrapU, {SamplerKeys::WrapWords}),
    Optional(SamplerKeys::WrapV, {SamplerKeys::WrapWords}),
    Optional(SamplerKeys::Filter, {SamplerKeys::FilterWords}),
    Optional(SamplerKeys::Anisotropy, {SamplerKeys::AnisotropyWords}),
};
constexpr AttributeRule setAttributes[] = {Optional(BindingKeys::Default, anyText)};
constexpr ElementRule::Variant streams[] = {
    {"float", floatAttributes},
    {"texture", textureAttributes},
    {"uv", setAttributes},
    {"colour", setAttributes},
    {"position"},
    {"normal"},
    {"tangent"},
    {"binormal"},
    {"blendindices"},
    {"blendweights"},
};

constexpr AttributeRule annotationAttributes[] = {
    Required("id", someText),   Required("kind", {annotationKinds}), Required("text", anyText),
    Required("x", coordinate),  Required("y", coordinate),           Required("width", extent),
    Required("height", extent), Optional("colour", displayColour),
};

constexpr ElementRule::Child nodeChildren[] = {{&PropertyRule, true}};
constexpr ElementRule nodeRule = {"node", nodeAttributes, nodeChildren};
constexpr ElementRule::Child nodesChildren[] = {{&nodeRule, true}};
constexpr ElementRule::Child edgesChildren[] = {{&EdgeRule, true}};
constexpr ElementRule::Child bindingsChildren[] = {{&BindingRule, true}};
constexpr ElementRule::Child annotationsChildren[] = {{&AnnotationRule, true}};
constexpr ElementRule nodesRule = {"nodes", {}, nodesChildren};
constexpr ElementRule edgesRule = {"edges", {}, edgesChildren};
constexpr ElementRule bindingsRule = {"bindings", {}, bindingsChildren};
constexpr ElementRule annotationsRule = {"annotations", {}, annotationsChildren};
constexpr ElementRule::Child materialChildren[] = {
    {&DescriptionRule}, {&RenderStateRule}, {&nodesRule},
    {&edgesRule},       {&bindingsRule},    {&annotationsRule},
};

} // namespace

constexpr ElementRule DescriptionRule = {DocumentKeys::Description, descriptionAttributes};
constexpr ElementRule RenderStateRule = {"renderState", renderStateAttributes};
constexpr ElementRule PropertyRule = {"property", propertyAttributes, {}, "kind", kinds};
constexpr ElementRule EdgeRule = {"edge", edgeAttributes};
constexpr ElementRule AnnotationRule = {"annotation", annotationAttributes};
constexpr ElementRule BindingRule = {"binding", bindingAttributes, {}, "stream", streams};
constexpr ElementRule MaterialRule = {DocumentKeys::Material, materialAttributes, materialChildren};

} // namespace Mox::Host
