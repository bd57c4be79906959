#include "plugins/core/CoreAnimatedUvNode.h"

#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

using namespace Mox::Materials;

namespace {

constexpr const char* modes[] = {"Basic", "Advanced"};
constexpr const char* executionLevels[] = {"Vertex", "Fragment"};

constexpr PortRow basicInputs[] = {{"in_frame", "frame", 1}, {"in_uv", "uv", 2}};
constexpr PortRow basicOutputs[] = {
    {"out_uv1", "uv1", 2}, {"out_uv2", "uv2", 2}, {"out_blend", "blend", 1}};
constexpr PortRow advancedInputs[] = {{"in_frame", "frame", 1}};
constexpr PortRow advancedOutputs[] = {{"out_offset1", "offset1", 2},
                                       {"out_offset2", "offset2", 2},
                                       {"out_scale", "scale", 2},
                                       {"out_blend", "blend", 1}};

constexpr const char* offsetsBody = "float2 scale = float2( numColsRcp, numRowsRcp );\n"
                                    "float frame1 = in_frame;\n"
                                    "float frame2 = in_frame + 1.0f;\n"
                                    "float2 st1 = float2( frame1, frame1*numColsRcp );\n"
                                    "float2 st2 = float2( frame2, frame2*numColsRcp );\n"
                                    "float2 offset1 = floor( st1 );\n"
                                    "float2 offset2 = floor( st2 );\n"
                                    "out_blend = st1.x - offset1.x;\n";
constexpr const char* basicBody = "out_uv1 = ( in_uv + offset1 )*scale;\n"
                                  "out_uv2 = ( in_uv + offset2 )*scale;\n";
constexpr const char* advancedBody = "out_offset1 = offset1;\n"
                                     "out_offset2 = offset2;\n"
                                     "out_scale = scale;\n";

float Reciprocal(const GuiProperty& number)
{
    return static_cast<float>(1.0 / number.GetInt());
}

} // namespace

const char* CoreAnimatedUvNode::TypeName()
{
    return "CoreAnimatedUv";
}

CoreAnimatedUvNode::CoreAnimatedUvNode() : GuiNode(TypeName())
{
    SetBackgroundColour(1.0f, 0.0f, 0.5f);
    Name->Visible = false;

    Rows = DeclareInt(*this, "Rows", "Rows: the number of rows of frames in the texture", 4);
    Columns =
        DeclareInt(*this, "Columns", "Columns: the number of columns of frames in the texture", 4);
    Mode = DeclareEnum(*this, "Mode",
                       "Mode: how the offsets are exposed.  Use \"Basic\" to apply the offsets and "
                       "scale to a single uv set automatically, or use \"Advanced\" to exposed "
                       "these parameters for custom use.",
                       modes);
    ExecutionLevel =
        DeclareEnum(*this, "Execution Level",
                    "Execution Level: force the animation to be done either per-vertex or "
                    "per-fragment.Usually this should be left at \"Vertex\".",
                    executionLevels);

    CoreAnimatedUvNode::UpdatePorts({});
}

CoreAnimatedUvNode::~CoreAnimatedUvNode() = default;

void CoreAnimatedUvNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const bool isBasic = Mode->GetEnum() == "Basic";
    if (isBasic) {
        AppendPorts(InputPorts, basicInputs);
        AppendPorts(OutputPorts, basicOutputs);
    } else {
        AppendPorts(InputPorts, advancedInputs);
        AppendPorts(OutputPorts, advancedOutputs);
    }
}

std::string CoreAnimatedUvNode::GetTitle()
{
    return "Animated Uv";
}

void CoreAnimatedUvNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const ShaderType scalar(ComponentType::Float, 1, 1, 1);
    ShaderFunctionBuilder builder;
    AddInputs(builder, *this);
    AddOutputs(builder, *this);
    builder.DeclareConstant(scalar, "numRowsRcp", Reciprocal(*Rows));
    builder.DeclareConstant(scalar, "numColsRcp", Reciprocal(*Columns));
    builder.AppendCode(offsetsBody);
    builder.AppendCode(Mode->GetEnum() == "Basic" ? basicBody : advancedBody);
    const ShaderLevel level =
        ExecutionLevel->GetEnum() == "Vertex" ? ShaderLevel::Vertex : ShaderLevel::Fragment;
    AddFunction(generator, *this, builder, level, "animatedUv");
}
