#include "plugins/library/FileNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/bindings/Material.h"
#include "mox/bindings/TextureBinding.h"
#include "mox/document/PropertyText.h"
#include "mox/nodekit/NodeBindings.h"
#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"

#include <algorithm>
#include <utility>

using namespace Mox::Host;
using namespace Mox::Materials;

namespace {

constexpr std::int32_t noFlags = 0;

/// Converts the label to a Cg name, which the name of a texture should be.
std::string NameFromLabel(const std::string& label)
{
    std::string name = label;
    std::erase_if(name, [](char c) {
        return (c < '0' || c > '9') && (c < 'A' || c > 'Z') && (c < 'a' || c > 'z');
    });
    return name;
}

/// Returns the name of the node's function, such as "mathsRoundCode".
std::string FunctionName(const std::string& typeName)
{
    std::string name = typeName + "Code";
    if (name.front() >= 'A' && name.front() <= 'Z')
        name.front() = static_cast<char>(name.front() - 'A' + 'a');
    return name;
}

/// Appends a local variable initialized with an expression.
void DeclareVariable(ShaderFunctionBuilder& builder, const ShaderType& type,
                     const std::string& name, const std::string& value)
{
    builder.AppendCode(Compose("\t", type.FormatDeclaration(name), " = ", value, ";\n"));
}

std::string ColourText(const GuiProperty& property, const ShaderType& type)
{
    float red = 0.0f;
    float green = 0.0f;
    float blue = 0.0f;
    property.GetColour(red, green, blue);
    return Compose(type.Format(), "( ", red, ", ", green, ", ", blue, " )");
}

template <class Part>
PortRow RowOf(const Part& part)
{
    return {part.Name.c_str(), part.Label.c_str(), part.Count, part.Precision};
}

} // namespace

FileNode::FileNode(std::shared_ptr<const NodeFile> file)
    : GuiNode(file->TypeName), _file(std::move(file))
{
    SetName(NameFromLabel(_file->Label));
    SetBackgroundColour(_file->Colour[0], _file->Colour[1], _file->Colour[2]);
    Name->Visible = !_file->Samplers.empty();
    Properties->Version = _file->PropertiesVersion;
    for (const NodeProperty& property : _file->Properties)
        DeclareProperty(property);
    FileNode::UpdatePorts({});
}

FileNode::~FileNode() = default;

void FileNode::DeclareProperty(const NodeProperty& property)
{
    const auto own = GuiProperty::Create(property.Name);
    own->Help = property.Help;
    for (const NodeChoice& choice : property.Choices)
        own->AddEnum(choice.Name);
    own->Kind = property.Kind;
    if (property.Kind == GuiPropertyKind::Enum && !property.Value.empty())
        own->SetEnum(property.Value);
    else if (!property.Value.empty())
        SetFromText(*own, property.Kind, property.Value);
    Properties->Add(own);
}

NodeSettings FileNode::Settings() const
{
    return SettingsOf(*_file, *Properties);
}

void FileNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const NodeSettings settings = Settings();
    // A property that is only the default of inputs is visible if one of these inputs exists.
    for (const NodeInput& input : _file->Inputs) {
        if (input.Source == NodeSource::Property)
            Properties->Get(input.SourceText)->Visible = false;
    }
    for (const NodeInput& input : _file->Inputs) {
        if (!Holds(input.When, settings))
            continue;
        if (input.Source == NodeSource::Property)
            Properties->Get(input.SourceText)->Visible = true;
        if (input.IsPort())
            AppendPort(InputPorts, RowOf(input));
    }
    for (const NodeOutput& output : _file->Outputs) {
        if (Holds(output.When, settings))
            AppendPort(OutputPorts, RowOf(output));
    }
}

std::string FileNode::GetTitle()
{
    if (!_file->Title.empty())
        return Properties->Get(_file->Title)->GetEnum();
    return _file->Samplers.empty() ? _file->Label : GetName();
}

bool FileNode::HasBinding()
{
    const NodeSettings settings = Settings();
    return std::any_of(_file->Samplers.begin(), _file->Samplers.end(),
                       [&](const auto& sampler) { return Holds(sampler.When, settings); });
}

void FileNode::CreateBindings(const boost::shared_ptr<Material>& material)
{
    const NodeSettings settings = Settings();
    for (const NodeSampler& sampler : _file->Samplers) {
        if (!Holds(sampler.When, settings))
            continue;
        const boost::shared_ptr<TextureBinding> binding =
            AsTextureBinding(CreateBinding(StreamType::Texture, GetName() + sampler.Suffix, 1));
        CopyBindingTexts(*this, *binding);
        binding->srgb = sampler.Srgb && Holds(*sampler.Srgb, settings);
        binding->usingAlpha = sampler.Alpha && Holds(*sampler.Alpha, settings);
        binding->usageHint = sampler.Usage;
        material->AddBinding(binding);
    }
}

void FileNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const NodeSettings settings = Settings();
    ShaderFunctionBuilder builder;
    Feeds feeds;
    for (const NodeInput& input : _file->Inputs) {
        if (Holds(input.When, settings))
            AddInput(input, generator, builder, feeds);
    }
    for (const NodeSampler& sampler : _file->Samplers) {
        if (!Holds(sampler.When, settings))
            continue;
        builder.AddInput(sampler.Type, sampler.Name);
        feeds.emplace_back(sampler.Name, ShaderNode::CreateUniformParameter(
                                             GetName() + sampler.Suffix, sampler.Type));
    }
    AddOutputs(builder, *this);
    for (const NodeBody& body : _file->Bodies) {
        if (Holds(body.When, settings))
            builder.AppendCode(FillPlaceholders(body.Text, NodeType(*this)));
    }
    const ShaderNodeHandle function =
        builder.Build(ChooseLevel(settings), FunctionName(_file->TypeName));

    for (const NodeFunction& helper : _file->Functions) {
        ShaderFunctionBuilder code;
        code.AppendCode(helper.Text);
        generator.AddNode(code.Build(ShaderLevel::Automatic, helper.Name));
    }
    generator.AddNode(function);
    for (const auto& [input, parameter] : feeds) {
        generator.AddNode(parameter);
        generator.Connect(parameter, "read", function, input);
    }
    RegisterEdges(generator, function);
}

void FileNode::AddInput(const NodeInput& input, ShaderGraphGenerator& generator,
                        ShaderFunctionBuilder& builder, Feeds& feeds)
{
    if (input.IsPort() && GetInputPort(input.Name).Connected) {
        builder.AddInputPort(GetInputPort(input.Name));
        return;
    }
    if (input.Source != NodeSource::Value) {
        AddConstant(input, builder);
        return;
    }
    // A queried provider adds its parameter to the graph, so that the parameter made here is merged
    // with it.
    generator.Graph->GetInterfaceNode(input.SourceText, noFlags, input.Type);
    builder.AddInput(input.Type, input.Name);
    feeds.emplace_back(input.Name,
                       ShaderNode::CreateInterfaceParameter(input.SourceText, noFlags, input.Type));
}

void FileNode::AddConstant(const NodeInput& input, ShaderFunctionBuilder& builder)
{
    if (input.Source == NodeSource::Edge) {
        throw ShaderError(Compose(Describe(), ": please connect the port \"", input.Label,
                                  "\" before exporting"));
    }
    ShaderType type(Precision, 1, 1, 1);
    if (input.IsPort())
        type = GetInputPort(input.Name).GetShaderType();
    if (input.Source == NodeSource::Expression) {
        DeclareVariable(builder, type, input.Name, FillPlaceholders(input.SourceText, type));
        return;
    }
    if (input.Source == NodeSource::Zero) {
        builder.DeclareConstant(type, input.Name, 0.0f);
        return;
    }
    const GuiProperty& property = *Properties->Get(input.SourceText);
    switch (property.Kind) {
    case GuiPropertyKind::Bool:
        DeclareVariable(builder, {ComponentType::Bool, 1, 1, 1}, input.Name,
                        property.GetBool() ? "true" : "false");
        break;
    case GuiPropertyKind::Integer:
        DeclareVariable(builder, {ComponentType::Int, 1, 1, 1}, input.Name,
                        Compose(property.GetInt()));
        break;
    case GuiPropertyKind::Colour:
        type.Columns = 3;
        DeclareVariable(builder, type, input.Name, ColourText(property, type));
        break;
    default:
        builder.DeclareConstant(type, input.Name, property.GetFloat());
        break;
    }
}

ShaderLevel FileNode::ChooseLevel(const NodeSettings& settings) const
{
    for (const NodeProperty& property : _file->Properties) {
        for (const NodeChoice& choice : property.Choices) {
            if (choice.Level && choice.Name == settings.at(property.Name))
                return *choice.Level;
        }
    }
    for (const NodeBody& body : _file->Bodies) {
        if (body.Level && Holds(body.When, settings))
            return *body.Level;
    }
    const bool readsTexture =
        std::any_of(_file->Samplers.begin(), _file->Samplers.end(),
                    [&](const auto& sampler) { return Holds(sampler.When, settings); });
    return readsTexture ? ShaderLevel::Fragment : ShaderLevel::Automatic;
}
