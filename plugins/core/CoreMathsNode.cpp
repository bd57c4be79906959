#include "plugins/core/CoreMathsNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

#include <span>

using namespace Mox::Materials;

namespace {

constexpr PortRow twoValueInputs[] = {{"in_value1", "in1"}, {"in_value2", "in2"}};
constexpr PortRow oneValueInputs[] = {{"in_value1", "in"}};
constexpr PortRow powerInputs[] = {{"in_value1", "in"}, {"in_power", "power", 1}};
constexpr PortRow clampInputs[] = {{"in_value1", "in"}, {"in_min", "min"}, {"in_max", "max"}};
constexpr PortRow rangeInputs[] = {{"in_value1", "in"},
                                   {"in_min", "min"},
                                   {"in_max", "max"},
                                   {"in_oldmin", "old min"},
                                   {"in_oldmax", "old max"}};
constexpr PortRow blendInputs[] = {
    {"in_value1", "in1"}, {"in_value2", "in2"}, {"in_blend", "blend", 1}};
constexpr PortRow compareInputs[] = {
    {"in_value1", "in1"}, {"in_value2", "in2"}, {"in_test1", "test1", 1}, {"in_test2", "test2", 1}};
constexpr PortRow fresnelInputs[] = {{"in_facing", "facing", 1, ComponentType::Float},
                                     {"in_min", "min"},
                                     {"in_scale", "scale"},
                                     {"in_power", "power", 1}};

constexpr PortRow valueOutput = {"out_value", "out"};
constexpr PortRow scalarOutput = {"out_value", "out", 1};

constexpr auto automatic = ShaderLevel::Automatic;
constexpr auto fragment = ShaderLevel::Fragment;

struct MathsFunction
{
    const char* Name;
    std::span<const PortRow> Inputs;
    const PortRow& Output;
    const char* Body;
    ShaderLevel Level;           ///< unless overridden by "Execution Level"
    bool NeedsReference = false; ///< whether the body reads in_ref, the constant 1 in the node's
                                 ///< own type
};

// clang-format off
constexpr MathsFunction mathsFunctions[] = {
    {"Multiply", twoValueInputs, valueOutput,
     "\tout_value = in_value1 * in_value2;\n", automatic},
    {"Addition", twoValueInputs, valueOutput,
     "\tout_value = in_value1 + in_value2;\n", automatic},
    {"Subtraction", twoValueInputs, valueOutput,
     "\tout_value = in_value1 - in_value2;\n", automatic},
    {"Invert", oneValueInputs, valueOutput,
     "\tout_value = in_ref - in_value1;\n", automatic, true},
    {"Power", powerInputs, valueOutput,
     "\tout_value = pow( in_value1, in_power );\n", fragment},
    {"Clamp", clampInputs, valueOutput,
     "\tout_value = clamp( in_value1, in_min, in_max );\n", automatic},
    {"Range", rangeInputs, valueOutput,
     "\tout_value = lerp( in_min, in_max, saturate( ( in_value1 - in_oldmin )/( in_oldmax - in_oldmin ) ));\n",
     automatic},
    {"Lerp", blendInputs, valueOutput,
     "\tout_value = lerp( in_value1, in_value2, in_blend );\n", automatic},
    {"SmoothStep", blendInputs, valueOutput,
     "\tout_value = lerp( in_value1, in_value2, smoothstep( 0, 1, in_blend ) );\n", fragment},
    {"Compare", compareInputs, valueOutput,
     "\tout_value = ( in_test1 < in_test2 ) ? in_value1 : in_value2;\n", fragment},
    {"Dot Product", twoValueInputs, scalarOutput,
     "\tout_value = dot( in_value1, in_value2 );\n", automatic},
    {"Fresnel", fresnelInputs, scalarOutput,
     "\tout_value = in_min + in_scale*pow( saturate( 1.0 - in_facing ), in_power );\n", automatic},
    {"Ceil", oneValueInputs, valueOutput,
     "\tout_value = ceil( in_value1 );\n", fragment},
    {"Floor", oneValueInputs, valueOutput,
     "\tout_value = floor( in_value1 );\n", fragment},
    {"Frac", oneValueInputs, valueOutput,
     "\tout_value = frac( in_value1 );\n", fragment},
    {"Abs", oneValueInputs, valueOutput,
     "\tout_value = abs( in_value1 );\n", fragment},
};
// clang-format on

constexpr auto functionNames = NamesOf(mathsFunctions);

constexpr const char* levelNames[] = {"Automatic", "Vertex", "Fragment"};

ShaderLevel ChooseLevel(const std::string& executionLevel, ShaderLevel otherwise)
{
    if (executionLevel == "Vertex")
        return ShaderLevel::Vertex;
    if (executionLevel == "Fragment")
        return ShaderLevel::Fragment;
    return otherwise;
}

} // namespace

const char* CoreMathsNode::TypeName()
{
    return "CoreMaths";
}

CoreMathsNode::CoreMathsNode() : GuiNode(TypeName())
{
    SetName("Maths");
    SetBackgroundColour(1.0f, 0.5f, 0.5f);
    Name->Visible = false;

    Function =
        DeclareEnum(*this, "Function", "Function: the type of mathematical function to perform.",
                    functionNames);
    DefaultValue1 = DeclareFloat(*this, "Default Value 1",
                                 "Default Value 1: the default value for the port \"in1\" (or "
                                 "\"in\") when no edge is connected.",
                                 0.0f);
    DefaultValue2 = DeclareFloat(*this, "Default Value 2",
                                 "Default Value 2: the default value for the port \"in2\" when no "
                                 "edge is connected.",
                                 0.0f);
    DefaultBlend = DeclareFloat(*this, "Default Blend",
                                "Default Blend: the default value for the port \"blend\" when no "
                                "edge is connected.",
                                0.5f);
    DefaultMin = DeclareFloat(*this, "Default Min",
                              "Default Min: the default value for the port \"min\" when no edge is "
                              "connected.",
                              0.0f);
    DefaultMax = DeclareFloat(*this, "Default Max",
                              "Default Max: the default value for the port \"max\" when no edge is "
                              "connected.",
                              1.0f);
    DefaultOldMin = DeclareFloat(*this, "Default Old Min",
                                 "Default Old Min: the default value for the port \"old min\" when "
                                 "no edge is connected.",
                                 0.0f);
    DefaultOldMax = DeclareFloat(*this, "Default Old Max",
                                 "Default Old Max: the default value for the port \"old max\" when "
                                 "no edge is connected.",
                                 1.0f);
    DefaultTest1 = DeclareFloat(*this, "Default Test 1",
                                "Default Test 1: the default value for the port \"test1\" when no "
                                "edge is connected.",
                                0.0f);
    DefaultTest2 = DeclareFloat(*this, "Default Test 2",
                                "Default Test 2: the default value for the port \"test2\" when no "
                                "edge is connected.",
                                0.0f);
    DefaultPower = DeclareFloat(*this, "Default Power",
                                "Default Power: the default value for the port \"power\" when no "
                                "edge is connected.  The default for fresnel should be 5.",
                                5.0f);
    DefaultScale = DeclareFloat(*this, "Default Scale",
                                "Default Scale: the default value for the port \"scale\" when no "
                                "edge is connected.",
                                1.0f);
    ExecutionLevel = DeclareEnum(
        *this, "Execution Level",
        "Execution Level: force the maths to be done either per-vertex or per-fragment, for "
        "example to force some uv arithmetic to be done per-vertex (possibly using more "
        "interpolants to do so). Usually this should be left at \"Automatic\".",
        levelNames);

    PortDefaults = {
        {"in_value1", DefaultValue1}, {"in_value2", DefaultValue2}, {"in_blend", DefaultBlend},
        {"in_min", DefaultMin},       {"in_max", DefaultMax},       {"in_oldmin", DefaultOldMin},
        {"in_oldmax", DefaultOldMax}, {"in_test1", DefaultTest1},   {"in_test2", DefaultTest2},
        {"in_power", DefaultPower},   {"in_scale", DefaultScale},
    };

    CoreMathsNode::UpdatePorts({});
}

CoreMathsNode::~CoreMathsNode() = default;

void CoreMathsNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const MathsFunction& function = RowNamed(mathsFunctions, Function->GetEnum());
    AppendPorts(InputPorts, function.Inputs);
    AppendPort(OutputPorts, function.Output);

    for (const auto& [portName, property] : PortDefaults)
        property->Visible = false;
    for (const GuiPort& port : InputPorts) {
        if (const auto entry = PortDefaults.find(port.Name); entry != PortDefaults.end())
            entry->second->Visible = true;
    }
}

std::string CoreMathsNode::GetTitle()
{
    return Function->GetEnum();
}

void CoreMathsNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const MathsFunction& function = RowNamed(mathsFunctions, Function->GetEnum());
    ShaderFunctionBuilder builder;
    AddInputs(builder, *this, [this](const GuiPort& port) { return DefaultFor(port); });
    AddOutputs(builder, *this);
    if (function.NeedsReference)
        builder.DeclareConstant(NodeType(*this), "in_ref", 1.0f);
    builder.AppendCode(function.Body);
    const ShaderLevel level = ChooseLevel(ExecutionLevel->GetEnum(), function.Level);
    AddFunction(generator, *this, builder, level, "mathsCode");
}

float CoreMathsNode::DefaultFor(const GuiPort& port) const
{
    const auto entry = PortDefaults.find(port.Name);
    if (entry == PortDefaults.end()) {
        throw ShaderError(Compose("a value needs to be supplied to the \"", port.Label,
                                  "\" port on the ", Function->GetEnum(), " maths node"));
    }
    return entry->second->GetFloat();
}
