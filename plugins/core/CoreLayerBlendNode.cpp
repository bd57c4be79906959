#include "plugins/core/CoreLayerBlendNode.h"

#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

using namespace Mox::Materials;

namespace {

/// A blend mode. Its body may read in_one and in_half, constants with the type of the node, and
/// have local variables of that type.
struct BlendMode
{
    const char* Name;
    const char* Body;
    bool ReadsOne = false;
    bool ReadsHalf = false;
    const char* FirstLocal = nullptr;
    const char* SecondLocal = nullptr;
};

constexpr const char* multiplied = " multiplied = 2.0f*in_value1*in_value2;\n";
constexpr const char* screened =
    " screened = in_one - 2.0f*( in_one - in_value1 )*( in_one - in_value2 );\n";
constexpr const char* burned = " burned = in_one - 0.5f*( in_one - in_value1 )/in_value2;\n";
constexpr const char* dodged = " dodged = 0.5f*in_value1/( in_one - in_value2 );\n";

// clang-format off
constexpr BlendMode blendModes[] = {
    {"Darken", "\tout_value = ( in_value1 < in_value2 ) ? in_value1 : in_value2;\n"},
    {"Lighten", "\tout_value = ( in_value1 > in_value2 ) ? in_value1 : in_value2;\n"},
    {"Multiply", "\tout_value = in_value1*in_value2;\n"},
    {"Screen", "\tout_value = in_one - ( in_one - in_value1 )*( in_one - in_value2 );\n", true},
    {"Overlay", "\tout_value = ( in_value1 < in_half ) ? multiplied : screened;\n",
     true, true, multiplied, screened},
    {"Colour Dodge", "\tout_value = in_value1/( in_one - in_value2 );\n", true},
    {"Colour Burn", "\tout_value = in_one - ( in_one - in_value1 )/in_value2;\n", true},
    {"Hard Light", "\tout_value = ( in_value2 < in_half ) ? multiplied : screened;\n",
     true, true, multiplied, screened},
    {"Vivid Light", "\tout_value = ( in_value2 < in_half ) ? burned : dodged;\n",
     true, true, burned, dodged},
    {"Difference", "\tout_value = abs( in_value1 - in_value2 );\n"},
    {"Exclusion", "\tout_value = in_value1 + in_value2 - 2.0f*in_value1*in_value2;\n"},
};
// clang-format on

constexpr auto modeNames = NamesOf(blendModes);

constexpr PortRow inputs[] = {{"in_value1", "in1"}, {"in_value2", "in2"}};
constexpr PortRow output = {"out_value", "out"};

} // namespace

const char* CoreLayerBlendNode::TypeName()
{
    return "CoreLayerBlend";
}

CoreLayerBlendNode::CoreLayerBlendNode() : GuiNode(TypeName())
{
    SetName("LayerBlend");
    SetBackgroundColour(0.44f, 0.71f, 0.19f);
    Name->Visible = false;

    Mode = DeclareEnum(*this, "Mode", "Mode: the layer blend to perform.", modeNames);

    AppendPorts(InputPorts, inputs);
    AppendPort(OutputPorts, output);
}

CoreLayerBlendNode::~CoreLayerBlendNode() = default;

std::string CoreLayerBlendNode::GetTitle()
{
    return Mode->GetEnum();
}

void CoreLayerBlendNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const BlendMode& mode = RowNamed(blendModes, Mode->GetEnum());
    const ShaderType type = NodeType(*this);
    ShaderFunctionBuilder builder;
    AddInputs(builder, *this);
    AddOutputs(builder, *this);
    if (mode.ReadsOne)
        builder.DeclareConstant(type, "in_one", 1.0f);
    if (mode.ReadsHalf)
        builder.DeclareConstant(type, "in_half", 0.5f);
    for (const char* local : {mode.FirstLocal, mode.SecondLocal}) {
        if (local)
            builder.AppendCode("\t" + type.Format() + local);
    }
    builder.AppendCode(mode.Body);
    AddFunction(generator, *this, builder, ShaderLevel::Automatic, "mathsCode");
}
