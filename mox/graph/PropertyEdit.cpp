#include "mox/graph/PropertyEdit.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/HostValues.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <iterator>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

namespace {

bool AreSameBits(float left, float right)
{
    return std::bit_cast<std::uint32_t>(left) == std::bit_cast<std::uint32_t>(right);
}

/// Whether two properties have the same kind and bitwise the same value; references are equal if
/// they refer to the same object.
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

boost::shared_ptr<GuiProperty> CopyValue(const GuiProperty& property)
{
    auto copy = GuiProperty::Create(property.Name);
    copy->Kind = property.Kind;
    copy->Text = property.Text;
    copy->Integer = property.Integer;
    std::copy(std::begin(property.Floats), std::end(property.Floats), std::begin(copy->Floats));
    copy->Node = property.Node;
    return copy;
}

std::vector<DocumentProperty>::iterator Find(std::vector<DocumentProperty>& properties,
                                             const std::string& name)
{
    return std::ranges::find(properties, name, &DocumentProperty::Name);
}

/// Inserts a property that a record lacks after the properties that the node declares before it.
void Insert(std::vector<DocumentProperty>& properties, const PluginNode& node,
            DocumentProperty property)
{
    std::set<std::string> before;
    for (const auto& declared : node.Properties().Properties) {
        if (declared->Name == property.Name)
            break;
        before.insert(declared->Name);
    }
    const auto last =
        std::find_if(properties.rbegin(), properties.rend(),
                     [&](const DocumentProperty& other) { return before.contains(other.Name); });
    properties.insert(last.base(), std::move(property));
}

/// Whether a property has a different value in another node of the same type.
bool Differs(const GuiProperty& property, const GraphNode& node)
{
    if (!node.IsShown())
        return false;
    const auto other = node.Gui.Properties().Index.find(property.Name);
    return other != node.Gui.Properties().Index.end() && !HaveSameValue(property, *other->second);
}

bool IsRefused(const GraphNode& node)
{
    const auto& problems = node.Problems.Loading.Problems();
    return std::any_of(problems.begin(), problems.end(),
                       [](const Problem& problem) { return problem.Rule == "properties-refused"; });
}

} // namespace

PropertyEdit::PropertyEdit(const NodeBuilder& builder, std::size_t index,
                           const DocumentNode& record)
    : _builder(builder), _index(index), _record(record), _live(builder.Make(index, record))
{
    if (!_live.IsShown())
        return;
    _leftOut = builder.Load(_live, index, record);
    builder.BuildPorts(_live);
}

void PropertyEdit::Set(const DocumentProperty& value)
{
    if (!_live.IsShown() || !_live.Gui.Properties().Index.contains(value.Name))
        return SetInRecord(value);
    const auto& property = _live.Gui.Properties().Index.at(value.Name);
    if (property == _live.Gui.TypeProperty())
        throw HostError(_live.Where, "the type of a node cannot be changed");
    if (!_before.contains(value.Name))
        _before.emplace(value.Name, CopyValue(*property));
    _builder.Set(*property, value, _index, _live.Where);
}

void PropertyEdit::EmptyReferences(const std::string& id)
{
    for (DocumentProperty& property : _record.Properties) {
        if (property.Kind != GuiPropertyKind::Node || property.Value != id)
            continue;
        property.Value.clear();
        _isRecordChanged = true;
        if (_live.IsShown() && !_leftOut.contains(property.Name) &&
            _live.Gui.Properties().Index.contains(property.Name))
            Set(property);
    }
}

bool PropertyEdit::HasChanged() const
{
    return _isRecordChanged || std::any_of(_before.begin(), _before.end(), [&](const auto& entry) {
               return !IsHostValue(entry.first) && IsChanged(entry.first);
           });
}

bool PropertyEdit::WriteHostValues()
{
    bool isWritten = false;
    for (const auto& [name, before] : _before) {
        if (IsHostValue(name) && IsChanged(name))
            isWritten |= Write(*_live.Gui.Properties().Index.at(name));
    }
    return isWritten;
}

GraphNode PropertyEdit::Settle()
{
    WriteHostValues();
    if (!_live.IsShown())
        return _builder.Build(_index, _record);
    for (const auto& property : _live.Gui.Properties().Properties) {
        if (property->Node)
            property->Node = _builder.Renew(property->Node);
    }
    try {
        _live.Gui.UpdatePorts(_live.Where);
    } catch (const HostError&) {
        // Building the node from the record fails as well, and that error is reported.
    }
    const std::set<std::string> dropped = DropSettled();
    // Values set by the user are written first, since the others may follow from them.
    TakeOver([&](const GuiProperty& property) {
        return IsSet(property) && !dropped.contains(property.Name);
    });
    GraphNode shown = _builder.Build(_index, _record);
    const auto differs = [&](const GuiProperty& property) { return Differs(property, shown); };
    if (TakeOver(
            [&](const GuiProperty& property) { return property.Editable && differs(property); }))
        shown = _builder.Build(_index, _record);
    if (TakeOver(differs))
        shown = _builder.Build(_index, _record);
    return shown;
}

/// Removes set properties from the record if the node derives the same values without them, unless
/// they have comments.
/// @returns their names
std::set<std::string> PropertyEdit::DropSettled()
{
    std::set<std::string> set;
    for (const auto& property : _live.Gui.Properties().Properties) {
        const auto stored = Find(_record.Properties, property->Name);
        if (stored != _record.Properties.end() && stored->Comments.empty() && IsSet(*property))
            set.insert(property->Name);
    }
    if (set.empty())
        return set;
    const auto isIn = [&](const DocumentProperty& property) { return set.contains(property.Name); };
    DocumentNode bare = _record;
    std::erase_if(bare.Properties, isIn);
    const GraphNode settled = _builder.Build(_index, bare);
    std::erase_if(set, [&](const std::string& name) {
        return Differs(*_live.Gui.Properties().Index.at(name), settled);
    });
    std::erase_if(_record.Properties, isIn);
    return set;
}

/// Whether the user has changed the value of an editable property that is not the host's own.
bool PropertyEdit::IsSet(const GuiProperty& property) const
{
    return property.Editable && !IsHostValue(property.Name) && _before.contains(property.Name) &&
           IsChanged(property.Name);
}

/// Writes the selected values of the node to the record.
/// @returns whether the record was changed
template <class IsWanted>
bool PropertyEdit::TakeOver(IsWanted isWanted)
{
    bool isWritten = false;
    for (const auto& property : _live.Gui.Properties().Properties) {
        if (property != _live.Gui.TypeProperty() && isWanted(*property))
            isWritten |= Write(*property);
    }
    if (isWritten && !_live.IsPlaceholder && !IsRefused(_live))
        _record.Version = _live.Gui.Properties().Version;
    return isWritten;
}

bool PropertyEdit::IsChanged(const std::string& name) const
{
    return _leftOut.contains(name) ||
           !HaveSameValue(*_live.Gui.Properties().Index.at(name), *_before.at(name));
}

/// Sets a property that is unknown to the type, which is possible only if the record has it.
void PropertyEdit::SetInRecord(const DocumentProperty& value)
{
    const auto stored = Find(_record.Properties, value.Name);
    if (stored == _record.Properties.end())
        throw HostError(_live.Where, Compose("failed to find property \"", value.Name, "\"",
                                             SuggestProperty(value.Name, _live)));
    const auto parsed = GuiProperty::Create(value.Name);
    parsed->Kind = stored->Kind;
    if (stored->Kind == GuiPropertyKind::Enum)
        parsed->Choices = {value.Value};
    _builder.Set(*parsed, value, _index, _live.Where);
    _isRecordChanged |= stored->Value != value.Value;
    stored->Value = value.Value;
}

/// @returns whether the record was changed
bool PropertyEdit::Write(const GuiProperty& property)
{
    const std::string value = property.Kind == GuiPropertyKind::Node
                                  ? _builder.IdOf(property.Node.get())
                                  : FormatValue(property);
    const auto stored = Find(_record.Properties, property.Name);
    if (stored == _record.Properties.end()) {
        Insert(_record.Properties, _live.Gui, {property.Name, property.Kind, value});
        return true;
    }
    if (stored->Kind == property.Kind && stored->Value == value)
        return false;
    stored->Kind = property.Kind;
    stored->Value = value;
    return true;
}

} // namespace Mox::Host
