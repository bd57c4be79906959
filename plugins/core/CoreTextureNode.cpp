#include "plugins/core/CoreTextureNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/bindings/Material.h"
#include "mox/bindings/TextureBinding.h"
#include "mox/nodekit/NodeBindings.h"
#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

#include <span>

using namespace Mox::Materials;

namespace {

constexpr const char* textureTypes[] = {"1D", "2D"};

constexpr PortRow input1D = {"in_uv", "u", 1, ComponentType::Float};
constexpr PortRow input2D = {"in_uv", "uv", 2, ComponentType::Float};

constexpr PortRow colourOutputs[] = {{"out_colour", "colour", 3}};
constexpr PortRow normalOutputs[] = {{"out_colour", "normal", 3}};
constexpr PortRow vectorOutputs[] = {{"out_colour", "rgba", 4}};
constexpr PortRow componentOutputs[] = {
    {"out_red", "red", 1}, {"out_green", "green", 1}, {"out_blue", "blue", 1}};
constexpr PortRow alphaOutput = {"out_alpha", "alpha", 1};

struct ColourKind
{
    const char* Name;
    std::span<const PortRow> Outputs;
    const char* Body;
    bool IsNormal = false;    ///< neither converted from sRGB nor a basic colour
    bool ForcesAlpha = false; ///< whether four components are read although there is no port for
                              ///< alpha
};

constexpr ColourKind colourKinds[] = {
    {"Colour", colourOutputs, "\tout_colour = value.xyz;\n"},
    {"Normal", normalOutputs, "\tout_colour = 2.0.xxx*value.xyz - 1.0.xxx;\n", true},
    {"Component", componentOutputs,
     "\tout_red = value.x;\n\tout_green = value.y;\n\tout_blue = value.z;\n"},
    {"Vector", vectorOutputs, "\tout_colour = value;\n", false, true},
    {"DXT5 Normal", normalOutputs,
     "\tout_colour.xy = 2.0.xx*value.ag - 1.0.xx;\n"
     "\tout_colour.z = sqrt( 1.0 - dot( out_colour.xy, out_colour.xy ) );\n",
     true, true},
};

constexpr auto colourTypes = NamesOf(colourKinds);

const ColourKind& KindOf(const CoreTextureNode& node)
{
    return RowNamed(colourKinds, node.ColourType->GetEnum());
}

/// Returns the texture node that a node references, or null at the end of a chain.
/// @throws ShaderError if the reference leads to a placeholder for a texture node
CoreTextureNode* Referred(const CoreTextureNode& node)
{
    GuiNode* referred = node.Reference->GetNode().get();
    auto* texture = dynamic_cast<CoreTextureNode*>(referred);
    if (referred && !texture) {
        throw ShaderError(Compose(node.Describe(), ": it refers to ", referred->Describe(),
                                  ", which is a placeholder and not a texture node"));
    }
    return texture;
}

} // namespace

const char* CoreTextureNode::TypeName()
{
    return "CoreTexture";
}

CoreTextureNode::CoreTextureNode() : GuiNode(TypeName())
{
    SetName("Texture");
    SetBackgroundColour(1.0f, 1.0f, 0.5f);

    Reference =
        DeclareNode(*this, "Reference",
                    "Reference: can point to another texture to use the same name and settings. "
                    "Only one binding will be created in Maya and shared between all references.",
                    TypeName());
    TextureType =
        DeclareEnum(*this, "Texture Type",
                    "Texture Type: the type of texture to read. At the moment only 1D and 2D "
                    "textures are supported, but this may be extended to 3D and CUBE in future.",
                    textureTypes);
    TextureType->SetEnum("2D");
    ColourType = DeclareEnum(
        *this, "Colour Type",
        "Colour Type: the colour outputs to present from this node. Normal maps should always use "
        "the \"Normal\" or \"DXT5 Normal\" setting to properly unpack the normal from the texture.",
        colourTypes);
    Alpha = DeclareBool(*this, "Alpha",
                        "Alpha: check this box in order to use the alpha channel of the texture.",
                        false);
    Srgb = DeclareBool(
        *this, "sRGB",
        "sRGB: uncheck this box in order to read raw texture values without sRGB conversion. "
        "Painted 8-bit art is usually saved in the sRGB colour space, however this box should be "
        "unchecked to directly read HDR images or texture lookup data.",
        true);
    BasicColour = DeclareBool(
        *this, "Basic Colour",
        "Basic Colour: check this box to use this binding as the basic colour of the material.  At "
        "most one constant and one texture can form the basic colour, which is used for "
        "MoxiLocator preview and the vela diffuse term.  If a material has  no basic colours then "
        "the names of the bindings are used to guess which ones to use.",
        false);

    CoreTextureNode::UpdatePorts({});
}

CoreTextureNode::~CoreTextureNode() = default;

void CoreTextureNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const bool isReferring = Reference->GetNode() != nullptr;
    for (const auto& property : {Description, TextureType, ColourType, Alpha, Srgb, BasicColour})
        property->Editable = !isReferring;
    const float grey = isReferring ? 0.6f : 0.0f;
    SetForegroundColour(grey, grey, grey);
    if (const CoreTextureNode* referred = Referred(*this)) {
        for (const auto setting :
             {&CoreTextureNode::TextureType, &CoreTextureNode::ColourType, &CoreTextureNode::Alpha,
              &CoreTextureNode::Srgb, &CoreTextureNode::BasicColour})
            (this->*setting)->CopyFrom(referred->*setting);
    }

    const ColourKind& kind = KindOf(*this);
    Srgb->Visible = !kind.IsNormal;
    BasicColour->Visible = !kind.IsNormal;

    AppendPort(InputPorts, TextureType->GetEnum() == "1D" ? input1D : input2D);
    AppendPorts(OutputPorts, kind.Outputs);
    if (!isReferring) {
        Alpha->Editable = !kind.ForcesAlpha;
        if (kind.ForcesAlpha)
            Alpha->SetBool(true);
    }
    if (!kind.ForcesAlpha && Alpha->GetBool())
        AppendPort(OutputPorts, alphaOutput);
}

std::string CoreTextureNode::GetTitle()
{
    return GetBindingName();
}

std::string CoreTextureNode::GetBindingName()
{
    // The mark advances after 1, 2, 4... steps; in a cycle, the walk reaches the mark again.
    const CoreTextureNode* node = this;
    const CoreTextureNode* mark = this;
    std::size_t steps = 0;
    std::size_t stepsToMark = 1;
    while (const CoreTextureNode* next = Referred(*node)) {
        node = next;
        if (node == mark) {
            throw ShaderError(Compose(Describe(), ": its chain of references leads into a cycle"));
        }
        if (++steps == stepsToMark) {
            mark = node;
            stepsToMark *= 2;
        }
    }
    return node->GetName();
}

bool CoreTextureNode::IsAlphaUsed()
{
    if (KindOf(*this).ForcesAlpha)
        return true;
    const std::int32_t port = FindOutputPort(alphaOutput.Name);
    return Alpha->GetBool() && port >= 0 && OutputPorts[static_cast<std::size_t>(port)].Connected;
}

bool CoreTextureNode::HasBinding()
{
    return !Reference->GetNode();
}

void CoreTextureNode::CreateBindings(const boost::shared_ptr<Material>& material)
{
    if (Reference->GetNode())
        return;
    const boost::shared_ptr<TextureBinding> binding =
        AsTextureBinding(CreateBinding(StreamType::Texture, GetBindingName(), 1));
    CopyBindingTexts(*this, *binding);
    const bool isNormal = KindOf(*this).IsNormal;
    binding->srgb = Srgb->GetBool() && !isNormal;
    binding->basicColour = BasicColour->GetBool() && !isNormal;
    binding->usageHint = ColourType->GetEnum();
    binding->usingAlpha = IsAlphaUsed();
    material->AddBinding(binding);
}

void CoreTextureNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const std::string name = GetBindingName();
    const GuiPort& coordinate = GetInputPort("in_uv");
    if (!coordinate.Connected) {
        throw ShaderError(
            Compose(Describe(), ": please attach a texture coordinate before exporting"));
    }
    const ColourKind& kind = KindOf(*this);
    const bool isAlphaUsed = IsAlphaUsed();
    const std::int32_t count = isAlphaUsed ? 4 : 3;
    const bool is1D = TextureType->GetEnum() == "1D";
    const ShaderType samplerType(is1D ? ComponentType::Sampler1D : ComponentType::Sampler2D, 1, 1,
                                 1);

    ShaderFunctionBuilder builder;
    builder.AddInputPort(coordinate);
    builder.AddInput(samplerType, "in_sampler");
    builder.AppendCode(Compose("\t", ShaderType(Precision, count, 1, 1).Format(),
                               " value = ", Precision == ComponentType::Float ? "f" : "h", count,
                               "tex", is1D ? "1D" : "2D", "( in_sampler, in_uv );\n"));
    if (Srgb->GetBool() && !kind.IsNormal)
        builder.AppendCode("\tvalue.xyz = MoxSrgbToLinear( value.xyz );\n");
    for (const PortRow& row : kind.Outputs)
        builder.AddOutputPort(GetOutputPort(row.Name));
    builder.AppendCode(kind.Body);
    if (isAlphaUsed && !kind.ForcesAlpha) {
        builder.AddOutputPort(GetOutputPort(alphaOutput.Name));
        builder.AppendCode("\tout_alpha = value.w;\n");
    }
    const ShaderNodeHandle function = builder.Build(ShaderLevel::Fragment, "textureCode");
    const ShaderNodeHandle sampler = ShaderNode::CreateUniformParameter(name, samplerType);
    generator.AddNode(function);
    generator.AddNode(sampler);
    generator.Connect(sampler, "read", function, "in_sampler");
    RegisterEdges(generator, function);
}
