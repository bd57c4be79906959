#include "mox/graph/NodeSnapshot.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <iterator>

namespace Mox::Host {

using Materials::GuiProperty;
using Materials::GuiPropertyKind;

namespace {

bool AreSameBits(float left, float right)
{
    return std::bit_cast<std::uint32_t>(left) == std::bit_cast<std::uint32_t>(right);
}

boost::shared_ptr<GuiProperty> Copy(const GuiProperty& property)
{
    auto copy = GuiProperty::Create(property.Name);
    copy->Kind = property.Kind;
    copy->Text = property.Text;
    copy->Integer = property.Integer;
    std::copy(std::begin(property.Floats), std::end(property.Floats), std::begin(copy->Floats));
    copy->Node = property.Node;
    copy->Editable = property.Editable;
    copy->Visible = property.Visible;
    return copy;
}

void Exchange(GuiProperty& left, GuiProperty& right) noexcept
{
    std::swap(left.Kind, right.Kind);
    left.Text.swap(right.Text);
    std::swap(left.Integer, right.Integer);
    std::swap(left.Floats, right.Floats);
    left.Node.swap(right.Node);
    std::swap(left.Editable, right.Editable);
    std::swap(left.Visible, right.Visible);
}

} // namespace

bool HaveSameValue(const GuiProperty& left, const GuiProperty& right)
{
    if (left.Kind != right.Kind)
        return false;
    switch (left.Kind) {
    case GuiPropertyKind::Bool:
        return (left.Integer == 1) == (right.Integer == 1);
    case GuiPropertyKind::Integer:
        return left.Integer == right.Integer;
    case GuiPropertyKind::Float:
        return AreSameBits(left.Floats[0], right.Floats[0]);
    case GuiPropertyKind::Colour:
        return std::equal(std::begin(left.Floats), std::end(left.Floats), std::begin(right.Floats),
                          AreSameBits);
    case GuiPropertyKind::String:
    case GuiPropertyKind::Enum:
        return left.Text == right.Text;
    case GuiPropertyKind::Node:
        return left.Node == right.Node;
    }
    return false;
}

NodeSnapshot::NodeSnapshot(const PluginNode& node)
    : _node(node), _inputs(node.InputPorts()), _outputs(node.OutputPorts())
{
    for (const auto& property : node.Properties().Properties)
        _properties.push_back(Copy(*property));
    std::copy(std::begin(node.ForegroundColour()), std::end(node.ForegroundColour()), _foreground);
    std::copy(std::begin(node.BackgroundColour()), std::end(node.BackgroundColour()), _background);
}

void NodeSnapshot::Restore() noexcept
{
    for (std::size_t i = 0; i < _properties.size(); ++i)
        Exchange(*_node.Properties().Properties[i], *_properties[i]);
    _node.InputPorts().swap(_inputs);
    _node.OutputPorts().swap(_outputs);
    std::copy(std::begin(_foreground), std::end(_foreground), _node.ForegroundColour());
    std::copy(std::begin(_background), std::end(_background), _node.BackgroundColour());
}

std::vector<boost::shared_ptr<GuiProperty>> NodeSnapshot::ChangedProperties() const
{
    std::vector<boost::shared_ptr<GuiProperty>> changed;
    for (std::size_t i = 0; i < _properties.size(); ++i) {
        if (!HaveSameValue(*_node.Properties().Properties[i], *_properties[i]))
            changed.push_back(_properties[i]);
    }
    return changed;
}

} // namespace Mox::Host
