#include "plugins/core/CoreConstantNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/Material.h"
#include "mox/nodekit/NodeBindings.h"
#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

using namespace Mox::Materials;

namespace {

constexpr const char* constantTypes[] = {"Colour", "Scalar", "Component", "Vector"};

constexpr const char* vectorLabels[] = {"xy", "xyz", "xyzw"};

constexpr PortRow componentOutputs[] = {
    {"red", "red", 1}, {"green", "green", 1}, {"blue", "blue", 1}};

/// Returns the component count of a vector's binding. This is the value of the property, even above
/// 4, where the node has no ports. A binding has at least one component.
/// @throws ShaderError if the value is 0 or less
std::uint32_t BindingCount(const GuiProperty& property)
{
    const std::int32_t count = property.GetInt();
    if (count < 1)
        throw ShaderError("component count must be between 2 and 4");
    return static_cast<std::uint32_t>(count);
}

} // namespace

const char* CoreConstantNode::TypeName()
{
    return "CoreConstant";
}

CoreConstantNode::CoreConstantNode() : GuiNode(TypeName())
{
    SetName("Constant");
    SetBackgroundColour(0.8f, 1.0f, 0.8f);

    ConstantType = DeclareEnum(*this, "Constant Type",
                               "Constant Type: the type of constant to present in Maya. Scalars "
                               "generate a slider, colours generate a colour picker (with optional "
                               "alpha) and vectors generate an array of sliders.",
                               constantTypes);
    VectorComponentCount = DeclareInt(*this, "Component Count",
                                      "Component Count: the number of values for vector constants. "
                                      " This must be between 2 and 4.",
                                      4);
    DefaultColour =
        DeclareColour(*this, "Default Colour",
                      "Default Colour: the default value for colour constants.", 0.0f, 0.0f, 0.0f);
    MinScalar = DeclareFloat(*this, "Min Scalar",
                             "Min Scalar: the minimum value for scalar constants. This is the "
                             "value at the left-hand side of the slider.",
                             0.0f);
    MaxScalar = DeclareFloat(*this, "Max Scalar",
                             "Max Scalar: the maximum value for scalar constants. This is the "
                             "value at the right-hand side of the slider.",
                             1.0f);
    DefaultScalar = DeclareFloat(*this, "Default Scalar",
                                 "Default Scalar: the default value for scalar constants.", 1.0f);
    Alpha =
        DeclareBool(*this, "Alpha",
                    "Alpha: check this box in order to use add alpha to a constant colour.", false);
    DefaultAlpha =
        DeclareFloat(*this, "Default Alpha", "Default Alpha: the default alpha value.", 1.0f);
    Lock = DeclareBool(*this, "Lock",
                       "Lock: when this box is checked, no binding is presented in Maya and the "
                       "default value is used in all cases. This can improve performance and "
                       "should be used if the value does not need to vary between meshes.",
                       false);
    BasicColour = DeclareBool(
        *this, "Basic Colour",
        "Basic Colour: check this box to use this binding as the basic colour of the material.  At "
        "most one constant and one texture can form the basic colour, which is used for "
        "MoxiLocator preview and the vela diffuse term.  Only unlocked colour constants can be "
        "used as the basic colour.  If a material has no basic colours then the names of the "
        "bindings are used to guess which ones to use.",
        false);

    CoreConstantNode::UpdatePorts({});
}

CoreConstantNode::~CoreConstantNode() = default;

void CoreConstantNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const std::string& type = ConstantType->GetEnum();
    const bool isColour = IsColour();
    const bool isLocked = Lock->GetBool();
    if (type == "Colour") {
        AppendPort(OutputPorts, {"read", "colour", 3});
    } else if (type == "Scalar") {
        AppendPort(OutputPorts, {"read", "scalar", 1});
    } else if (type == "Component") {
        AppendPorts(OutputPorts, componentOutputs);
    } else {
        const std::int32_t count = GetVectorCount(*VectorComponentCount);
        AppendPort(OutputPorts, {"read", vectorLabels[count - 2], count});
    }
    const bool hasAlpha = isColour && Alpha->GetBool();
    if (hasAlpha)
        AppendPort(OutputPorts, {"alpha", "alpha", 1});

    VectorComponentCount->Visible = type == "Vector";
    DefaultColour->Visible = isColour;
    MinScalar->Visible = !isColour;
    MaxScalar->Visible = !isColour;
    DefaultScalar->Visible = !isColour;
    Alpha->Visible = isColour;
    DefaultAlpha->Visible = hasAlpha;
    BasicColour->Visible = isColour && !isLocked;

    const float grey = isLocked ? 0.6f : 0.0f;
    SetForegroundColour(grey, grey, grey);
}

bool CoreConstantNode::HasBinding()
{
    return !Lock->GetBool();
}

void CoreConstantNode::CreateBindings(const boost::shared_ptr<Material>& material)
{
    if (Lock->GetBool())
        return;
    const bool isAlphaUsed = IsAlphaUsed();
    const std::string& name = GetName();
    boost::shared_ptr<Binding> binding;
    if (IsColour()) {
        binding = CreateBinding(StreamType::Float, name, isAlphaUsed ? 4 : 3);
        binding->uiType = UiType::Colour;
        float red, green, blue;
        DefaultColour->GetColour(red, green, blue);
        binding->SetDefault(0, red);
        binding->SetDefault(1, green);
        binding->SetDefault(2, blue);
        if (isAlphaUsed)
            binding->SetDefault(3, DefaultAlpha->GetFloat());
        binding->basicColour = BasicColour->GetBool();
    } else {
        const bool isVector = ConstantType->GetEnum() == "Vector";
        const std::uint32_t count = isVector ? BindingCount(*VectorComponentCount) : 1;
        binding = CreateBinding(StreamType::Float, name, count);
        binding->uiType = UiType::Slider;
        for (std::uint32_t i = 0; i < count; ++i) {
            binding->SetMin(i, MinScalar->GetFloat());
            binding->SetMax(i, MaxScalar->GetFloat());
            binding->SetDefault(i, DefaultScalar->GetFloat());
        }
    }
    CopyBindingTexts(*this, *binding);
    material->AddBinding(binding);
}

void CoreConstantNode::GenerateShader(ShaderGraphGenerator& generator)
{
    if (Lock->GetBool())
        GenerateLocked(generator);
    else if (ConstantType->GetEnum() == "Component" || (IsColour() && Alpha->GetBool()))
        GenerateSplitUniform(generator);
    else
        GenerateUniform(generator);
}

bool CoreConstantNode::IsColour() const
{
    return ConstantType->GetEnum() == "Colour" || ConstantType->GetEnum() == "Component";
}

bool CoreConstantNode::IsAlphaUsed()
{
    return IsColour() && Alpha->GetBool() && GetOutputPort("alpha").Connected;
}

void CoreConstantNode::GenerateLocked(ShaderGraphGenerator& generator)
{
    const bool isAlphaUsed = IsAlphaUsed();
    ShaderFunctionBuilder builder;
    if (IsColour()) {
        float red, green, blue;
        DefaultColour->GetColour(red, green, blue);
        if (ConstantType->GetEnum() == "Colour") {
            const ShaderType type = GetOutputPort("read").GetShaderType();
            builder.AddOutput(type, "out_value");
            builder.AppendCode(Compose("\tout_value = ", type.Format(), "( ", red, ", ", green,
                                       ", ", blue, ");\n"));
        } else {
            for (const PortRow& row : componentOutputs)
                builder.AddOutputPort(GetOutputPort(row.Name));
            builder.AppendCode(Compose("\tred = ", red, ";\n"));
            builder.AppendCode(Compose("\tgreen = ", green, ";\n"));
            builder.AppendCode(Compose("\tblue = ", blue, ";\n"));
        }
    } else {
        builder.AddOutput(GetOutputPort("read").GetShaderType(), "out_value");
        builder.AppendCode(Compose("\tout_value = ", DefaultScalar->GetFloat(), ";\n"));
    }
    if (isAlphaUsed) {
        builder.AddOutputPort(GetOutputPort("alpha"));
        builder.AppendCode(Compose("\talpha = ", DefaultAlpha->GetFloat(), ";\n"));
    }
    const ShaderNodeHandle function = builder.Build(ShaderLevel::Automatic, "lockCode");
    generator.AddNode(function);
    RecordTails(generator, function, "out_value");
}

void CoreConstantNode::GenerateUniform(ShaderGraphGenerator& generator)
{
    const ShaderType type = GetOutputPort("read").GetShaderType();
    const ShaderNodeHandle parameter = ShaderNode::CreateUniformParameter(GetName(), type);
    generator.AddNode(parameter);
    RegisterEdges(generator, parameter);
}

void CoreConstantNode::GenerateSplitUniform(ShaderGraphGenerator& generator)
{
    const bool isAlphaUsed = IsAlphaUsed();
    const ShaderType uniformType(Precision, isAlphaUsed ? 4 : 3, 1, 1);
    ShaderFunctionBuilder builder;
    builder.AddInput(uniformType, "in_uniform");
    if (ConstantType->GetEnum() == "Colour") {
        builder.AddOutput(GetOutputPort("read").GetShaderType(), "out_colour");
        builder.AppendCode("\tout_colour.xyz = in_uniform.xyz;\n");
    } else {
        for (const PortRow& row : componentOutputs)
            builder.AddOutputPort(GetOutputPort(row.Name));
        builder.AppendCode("\tred = in_uniform.x;\n");
        builder.AppendCode("\tgreen = in_uniform.y;\n");
        builder.AppendCode("\tblue = in_uniform.z;\n");
    }
    if (isAlphaUsed) {
        builder.AddOutputPort(GetOutputPort("alpha"));
        builder.AppendCode("\talpha = in_uniform.w;\n");
    }
    const ShaderNodeHandle function = builder.Build(ShaderLevel::Automatic, "swizzleColour");
    generator.AddNode(function);
    const ShaderNodeHandle parameter = ShaderNode::CreateUniformParameter(GetName(), uniformType);
    generator.AddNode(parameter);
    generator.Connect(parameter, "read", function, "in_uniform");
    RecordTails(generator, function, "out_colour");
}

void CoreConstantNode::RecordTails(ShaderGraphGenerator& generator,
                                   const ShaderNodeHandle& function, const char* readName)
{
    for (const auto& entry : OutEdges) {
        const boost::shared_ptr<GuiEdge> edge(entry);
        generator.RecordEdgeTail(edge, function,
                                 edge->TailPort == "read" ? readName : edge->TailPort);
    }
}
