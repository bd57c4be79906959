#include "CheckerNode.h"

#include <mox/ShaderError.h>
#include <mox/Text.h>
#include <mox/nodekit/NodeFunction.h>
#include <mox/nodekit/PortRebuild.h>
#include <mox/nodekit/PropertyDeclarations.h>

using namespace Mox::Materials;

const char* CheckerNode::TypeName()
{
    return "Checker";
}

CheckerNode::CheckerNode() : GuiNode(TypeName())
{
    SetBackgroundColour(0.9f, 0.9f, 0.6f);
    Name->Visible = false;

    Squares = DeclareInt(*this, "Squares", "Squares: the number of squares along each side.", 8);

    AppendPort(InputPorts, {"in_uv", "uv", 2, ComponentType::Float});
    AppendPort(OutputPorts, {"out_value", "value", 1});
}

void CheckerNode::GenerateShader(ShaderGraphGenerator& generator)
{
    if (Squares->GetInt() < 1)
        throw ShaderError(Compose(Describe(), ": \"Squares\" must be at least 1"));
    ShaderFunctionBuilder builder;
    AddInputs(builder, *this);
    AddOutputs(builder, *this);
    builder.AppendCode(Compose("\tfloat2 square = floor( in_uv * ", Squares->GetInt(), " );\n"));
    builder.AppendCode("\tout_value = 2.0 * frac( ( square.x + square.y ) * 0.5 );\n");
    AddFunction(generator, *this, builder, ShaderLevel::Fragment, "checker");
}
