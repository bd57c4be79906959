#include "mox/authoring/GuiNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <boost/smart_ptr/make_shared.hpp>

template class DiGraphNode<Mox::Materials::GuiNode, Mox::Materials::GuiEdge>;

namespace Mox::Materials {

namespace {

constexpr std::int32_t descriptionStyle = 1;
constexpr std::int32_t helpUrlStyle = 2;

std::int32_t FindPort(const std::vector<GuiPort>& ports, const std::string& name)
{
    for (std::size_t i = 0; i < ports.size(); ++i) {
        if (ports[i].Name == name)
            return static_cast<std::int32_t>(i);
    }
    return -1;
}

void SetColour(float (&colour)[4], float red, float green, float blue)
{
    colour[0] = red;
    colour[1] = green;
    colour[2] = blue;
}

/// The count that the free inputs agree on, ignoring scalars, which are compatible with any count.
/// If they disagree, Count is the first one above 1, and Agreed is false.
struct CountVote
{
    std::int32_t Count = 1;
    bool Agreed = true;
};

CountVote VoteOnCount(const std::vector<GuiPort>& inputs)
{
    CountVote vote;
    for (const GuiPort& port : inputs) {
        if (!port.CountKnown || port.CountFixed)
            continue;
        if (port.ComponentCount == vote.Count || port.ComponentCount == 1)
            continue;
        if (vote.Count == 1)
            vote.Count = port.ComponentCount;
        else
            vote.Agreed = false;
    }
    return vote;
}

} // namespace

GuiNode::GuiNode(const std::string& typeName) : Properties(boost::make_shared<GuiPropertyBag>())
{
    Type = GuiProperty::Create("Type");
    Type->Help = "Type: the internal type of the node.";
    Type->SetString(typeName);
    Type->Editable = false;
    Properties->Add(Type);

    Name = GuiProperty::Create("Name");
    Name->Help = "Name: the name entered here will correspond to the binding name presented in "
                 "Maya.";
    Name->SetString(typeName);
    Properties->Add(Name);

    BindingIndex = GuiProperty::Create("BindingIndex");
    BindingIndex->SetInt(0);
    BindingIndex->Visible = false;
    Properties->Add(BindingIndex);

    BindingGroup = GuiProperty::Create("BindingGroup");
    BindingGroup->SetString("");
    BindingGroup->Visible = false;
    Properties->Add(BindingGroup);

    PositionX = GuiProperty::Create("PositionX");
    PositionX->SetFloat(0.0f);
    PositionX->Visible = false;
    Properties->Add(PositionX);

    PositionY = GuiProperty::Create("PositionY");
    PositionY->SetFloat(0.0f);
    PositionY->Visible = false;
    Properties->Add(PositionY);

    Description = GuiProperty::Create("Description");
    Description->Help = "Description: if this node generates a Maya binding, then this description "
                        "will be used a tooltip for the binding. Otherwise this is a space for "
                        "general notes about the node.";
    Description->SetString("");
    Description->Style = descriptionStyle;
    Properties->Add(Description);

    HelpUrl = GuiProperty::Create("Help Url");
    HelpUrl->Help = "Help Url: if this node generates a Maya binding then this Url will be "
                    "accessable from a button on the binding Ui.";
    HelpUrl->SetString("");
    HelpUrl->Style = helpUrlStyle;
    Properties->Add(HelpUrl);
}

GuiNode::~GuiNode() = default;

void GuiNode::UpdatePorts(const boost::shared_ptr<void>&)
{}

std::string GuiNode::GetTitle()
{
    return GetName();
}

void GuiNode::ResolveComponentCounts()
{
    const CountVote vote = VoteOnCount(InputPorts);
    ComponentCount = vote.Count;
    if (!vote.Agreed) {
        for (GuiPort& port : InputPorts) {
            if (!port.CountFixed)
                port.CountConflict = true;
        }
        return;
    }
    for (GuiPort& port : InputPorts) {
        if (port.CountKnown)
            continue;
        if (!port.CountFixed) {
            port.ComponentCount = ComponentCount;
            port.CountKnown = true;
        } else if (ComponentCount != port.ComponentCount && ComponentCount != 1) {
            port.CountConflict = true;
        }
    }
    for (GuiPort& port : OutputPorts) {
        if (!port.CountFixed) {
            port.ComponentCount = ComponentCount;
            port.CountKnown = true;
        }
    }
}

void GuiNode::ResolvePrecisions()
{
    Precision = ComponentType::Half;
    for (const GuiPort& port : OutputPorts) {
        if (port.PrecisionKnown && port.Precision == ComponentType::Float)
            Precision = ComponentType::Float;
    }
    for (GuiPort& port : InputPorts) {
        if (!port.PrecisionFixed) {
            port.Precision = Precision;
            port.PrecisionKnown = true;
        }
    }
    for (GuiPort& port : OutputPorts) {
        if (!port.PrecisionKnown && !port.PrecisionFixed) {
            port.Precision = Precision;
            port.PrecisionKnown = true;
        }
    }
}

bool GuiNode::HasBinding()
{
    return false;
}

void GuiNode::CreateBindings(const boost::shared_ptr<Material>&)
{}

void GuiNode::LoadProperties(const boost::shared_ptr<GuiPropertyBag>& stored)
{
    if (stored->Version > Properties->Version) {
        throw ShaderError(Compose("Cannot convert \"", GetType(), "\" version ", stored->Version,
                                  " properties into version ", Properties->Version,
                                  " properties. Are you running with an old DLL?"));
    }
    Properties->CopyFrom(stored);
}

const std::string& GuiNode::GetType() const
{
    return Type->GetString();
}

const std::string& GuiNode::GetName() const
{
    return Name->GetString();
}

void GuiNode::SetName(const std::string& name)
{
    Name->SetString(name);
}

void GuiNode::SetForegroundColour(float red, float green, float blue)
{
    SetColour(ForegroundColour, red, green, blue);
}

void GuiNode::SetBackgroundColour(float red, float green, float blue)
{
    SetColour(BackgroundColour, red, green, blue);
}

std::int32_t GuiNode::FindInputPort(const std::string& name) const
{
    return FindPort(InputPorts, name);
}

std::int32_t GuiNode::FindOutputPort(const std::string& name) const
{
    return FindPort(OutputPorts, name);
}

GuiPort& GuiNode::GetInputPort(const std::string& name)
{
    const std::int32_t index = FindInputPort(name);
    if (index < 0)
        throw ShaderError(Compose(Describe(), ": input port \"", name, "\" does not exist"));
    return InputPorts[static_cast<std::size_t>(index)];
}

GuiPort& GuiNode::GetOutputPort(const std::string& name)
{
    const std::int32_t index = FindOutputPort(name);
    if (index < 0)
        throw ShaderError(Compose(Describe(), ": output port \"", name, "\" does not exist"));
    return OutputPorts[static_cast<std::size_t>(index)];
}

std::string GuiNode::Describe() const
{
    return Compose("node \"", GetName(), "\" (", GetType(), ")");
}

void GuiNode::RegisterEdges(ShaderGraphGenerator& generator, const ShaderNodeHandle& shaderNode)
{
    for (const auto& entry : InEdges) {
        const boost::shared_ptr<GuiEdge> edge(entry);
        generator.RecordEdgeHead(edge, shaderNode, edge->HeadPort);
    }
    for (const auto& entry : OutEdges) {
        const boost::shared_ptr<GuiEdge> edge(entry);
        generator.RecordEdgeTail(edge, shaderNode, edge->TailPort);
    }
}

} // namespace Mox::Materials
