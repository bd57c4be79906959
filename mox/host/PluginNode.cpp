#include "mox/host/PluginNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/bindings/Material.h"
#include "mox/host/HostError.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <type_traits>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiPort;
using Materials::GuiProperty;
using Materials::GuiPropertyBag;
using Materials::GuiPropertyKind;

static_assert(std::is_same_v<PluginNode::EdgeList, GuiNode::EdgeList>);

namespace {

/// Returns the property with this name from the list of the bag, or a new property.
boost::shared_ptr<GuiProperty> FindListed(const GuiPropertyBag& bag, const std::string& name)
{
    for (const auto& property : bag.Properties) {
        if (property && property->Name == name)
            return property;
    }
    return GuiProperty::Create(name);
}

/// Returns a property that is in the index of the bag but not in its list, or a new property.
boost::shared_ptr<GuiProperty> FindUnlisted(const GuiPropertyBag& bag)
{
    for (const auto& [name, property] : bag.Index) {
        if (std::find(bag.Properties.begin(), bag.Properties.end(), property) ==
            bag.Properties.end())
            return property;
    }
    return GuiProperty::Create("");
}

/// Restores the bag of the node and replaces each data member that is null, so that the host can
/// still read the node after the error.
/// @returns a description of the missing data members, or an empty string
std::string MendRecords(GuiNode& node, const boost::shared_ptr<GuiPropertyBag>& bag)
{
    std::string lost;
    if (node.Properties != bag) {
        node.Properties = bag;
        lost = "its properties";
    }
    for (auto& [name, property] : bag->Index) {
        if (!property) {
            property = FindListed(*bag, name);
            lost = Compose("the property \"", name, "\"");
        }
    }
    for (auto& property : bag->Properties) {
        if (!property) {
            property = FindUnlisted(*bag);
            lost = Compose("the property \"", property->Name, "\"");
        }
    }
    for (const auto& [property, name] :
         {std::pair(&node.Type, "Type"), std::pair(&node.Name, "Name"),
          std::pair(&node.Description, "Description")}) {
        if (!*property || (*property)->Kind != GuiPropertyKind::String) {
            *property = FindListed(*bag, name);
            (*property)->Kind = GuiPropertyKind::String;
            lost = Compose("the text of the property \"", name, "\"");
        }
    }
    return lost;
}

std::string DescribeCallee(const char* operation, const std::string& type)
{
    return Compose(operation, " of the type \"", type, "\"");
}

} // namespace

PluginNode::PluginNode(boost::shared_ptr<GuiNode> node, const Place& where) : _node(std::move(node))
{
    if (!_node)
        throw HostError(where, "the node is null");
    _bag = _node->Properties;
    if (!_bag)
        throw HostError(where, "the node has no properties");
    Call(where, "the constructor", [] {});
}

template <class Operation>
void PluginNode::Call(const Place& where, const char* name, Operation operation) const
{
    try {
        operation();
    } catch (...) {
        MendRecords(*_node, _bag);
        ThrowAsHostError(where, DescribeCallee(name, Type()));
    }
    if (const std::string lost = MendRecords(*_node, _bag); !lost.empty())
        throw HostError(where, Compose(DescribeCallee(name, Type()), ": the node lost ", lost));
}

void PluginNode::UpdatePorts(const Place& where) const
{
    Call(where, "UpdatePorts", [this] { _node->UpdatePorts({}); });
}

std::string PluginNode::GetTitle(const Place& where) const
{
    std::string title;
    Call(where, "GetTitle", [&] { title = _node->GetTitle(); });
    return title;
}

void PluginNode::ResolveComponentCounts(const Place& where) const
{
    Call(where, "ResolveComponentCounts", [this] { _node->ResolveComponentCounts(); });
}

void PluginNode::ResolvePrecisions(const Place& where) const
{
    Call(where, "ResolvePrecisions", [this] { _node->ResolvePrecisions(); });
}

void PluginNode::GenerateShader(const Place& where, ShaderGraphGenerator& generator) const
{
    Call(where, "GenerateShader", [&] { _node->GenerateShader(generator); });
}

bool PluginNode::HasBinding(const Place& where) const
{
    bool hasBinding = false;
    Call(where, "HasBinding", [&] { hasBinding = _node->HasBinding(); });
    return hasBinding;
}

std::vector<PluginBinding> PluginNode::CreateBindings(const Place& where) const
{
    std::vector<PluginBinding> bindings;
    if (!HasBinding(where))
        return bindings;
    const auto material = boost::make_shared<Materials::Material>();
    Call(where, "CreateBindings", [&] { _node->CreateBindings(material); });
    for (const auto& binding : material->Bindings)
        bindings.emplace_back(binding, where, _node);
    return bindings;
}

void PluginNode::LoadProperties(const Place& where,
                                const boost::shared_ptr<GuiPropertyBag>& stored) const
{
    Call(where, "LoadProperties", [&] { _node->LoadProperties(stored); });
}

GuiPropertyBag& PluginNode::Properties() const
{
    return *_node->Properties;
}

std::vector<GuiPort>& PluginNode::InputPorts() const
{
    return _node->InputPorts;
}

std::vector<GuiPort>& PluginNode::OutputPorts() const
{
    return _node->OutputPorts;
}

PluginNode::EdgeList& PluginNode::InEdges() const
{
    return _node->InEdges;
}

PluginNode::EdgeList& PluginNode::OutEdges() const
{
    return _node->OutEdges;
}

float (&PluginNode::ForegroundColour() const)[4]
{
    return _node->ForegroundColour;
}

float (&PluginNode::BackgroundColour() const)[4]
{
    return _node->BackgroundColour;
}

const std::string& PluginNode::Type() const
{
    return _node->Type->Text;
}

const std::string& PluginNode::Name() const
{
    return _node->Name->Text;
}

const std::string& PluginNode::Description() const
{
    return _node->Description->Text;
}

const boost::shared_ptr<GuiProperty>& PluginNode::TypeProperty() const
{
    return _node->Type;
}

const boost::shared_ptr<GuiProperty>& PluginNode::NameProperty() const
{
    return _node->Name;
}

std::string PluginNode::Describe() const
{
    return _node->Describe();
}

std::int32_t PluginNode::FindInputPort(const std::string& name) const
{
    return _node->FindInputPort(name);
}

std::int32_t PluginNode::FindOutputPort(const std::string& name) const
{
    return _node->FindOutputPort(name);
}

GuiPort& PluginNode::GetInputPort(const Place& where, const std::string& name) const
{
    return CallLibrary(where, [&]() -> GuiPort& { return _node->GetInputPort(name); });
}

GuiPort& PluginNode::GetOutputPort(const Place& where, const std::string& name) const
{
    return CallLibrary(where, [&]() -> GuiPort& { return _node->GetOutputPort(name); });
}

std::string PrecisionOf(const GuiPort& port)
{
    try {
        return port.PrecisionKnown ? GetComponentName(port.Precision) : "";
    } catch (const ShaderError&) {
        return {};
    }
}

} // namespace Mox::Host
