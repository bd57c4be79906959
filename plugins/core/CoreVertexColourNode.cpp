#include "plugins/core/CoreVertexColourNode.h"

#include "mox/nodekit/NodeBindings.h"
#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

#include <span>

using namespace Mox::Materials;

namespace {

constexpr PortRow colourOutputs[] = {{"out_colour", "colour", 3}};
constexpr PortRow componentOutputs[] = {
    {"out_red", "red", 1}, {"out_green", "green", 1}, {"out_blue", "blue", 1}};
constexpr PortRow vectorOutputs[] = {{"out_colour", "rgba", 4}};
constexpr PortRow alphaOutput = {"out_alpha", "alpha", 1};

struct ColourKind
{
    const char* Name;
    std::span<const PortRow> Outputs;
    const char* Body;
    bool IsVector = false; ///< whether one output has all four components of the stream
};

constexpr ColourKind colourKinds[] = {
    {"Colour", colourOutputs, "\tout_colour = in_colour.xyz;\n"},
    {"Component", componentOutputs,
     "\tout_red = in_colour.x;\n\tout_green = in_colour.y;\n\tout_blue = in_colour.z;\n"},
    {"Vector", vectorOutputs, "\tout_colour = in_colour;\n", true},
};

constexpr auto colourTypes = NamesOf(colourKinds);

} // namespace

const char* CoreVertexColourNode::TypeName()
{
    return "CoreVertexColour";
}

CoreVertexColourNode::CoreVertexColourNode() : GuiNode(TypeName())
{
    SetName("VertexColour");
    SetBackgroundColour(1.0f, 0.8f, 1.0f);

    ColourType =
        DeclareEnum(*this, "Colour Type",
                    "Colour Type: the colour outputs to present from this node.", colourTypes);
    Alpha =
        DeclareBool(*this, "Alpha", "Alpha: check this box in order to use vertex alpha.", false);

    CoreVertexColourNode::UpdatePorts({});
}

CoreVertexColourNode::~CoreVertexColourNode() = default;

void CoreVertexColourNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const ColourKind& kind = RowNamed(colourKinds, ColourType->GetEnum());
    Alpha->Editable = !kind.IsVector;
    if (kind.IsVector)
        Alpha->SetBool(true);
    AppendPorts(OutputPorts, kind.Outputs);
    if (!kind.IsVector && Alpha->GetBool())
        AppendPort(OutputPorts, alphaOutput);
}

void CoreVertexColourNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const ColourKind& kind = RowNamed(colourKinds, ColourType->GetEnum());
    const bool isAlphaOutput =
        !kind.IsVector && Alpha->GetBool() && GetOutputPort(alphaOutput.Name).Connected;
    const ShaderType streamType(Precision, kind.IsVector || isAlphaOutput ? 4 : 3, 1, 1);

    ShaderFunctionBuilder builder;
    builder.AddInput(streamType, "in_colour");
    for (const PortRow& row : kind.Outputs)
        builder.AddOutputPort(GetOutputPort(row.Name));
    builder.AppendCode(kind.Body);
    if (isAlphaOutput) {
        builder.AddOutputPort(GetOutputPort(alphaOutput.Name));
        builder.AppendCode("\tout_alpha = in_colour.w;\n");
    }
    const ShaderNodeHandle function = builder.Build(ShaderLevel::Automatic, "colourCode");
    const ShaderNodeHandle stream = ShaderNode::CreateVaryingParameter(GetName(), streamType);
    generator.AddNode(function);
    generator.AddNode(stream);
    generator.Connect(stream, "read", function, "in_colour");
    RegisterEdges(generator, function);
}

bool CoreVertexColourNode::HasBinding()
{
    return true;
}

void CoreVertexColourNode::CreateBindings(const boost::shared_ptr<Material>& material)
{
    AddStreamBinding(*this, StreamType::Colour, *material);
}
