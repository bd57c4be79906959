#include "mox/authoring/GuiProperty.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"

#include <algorithm>
#include <new>

namespace Mox::Materials {

namespace {

/// The nodes to release after the node of the outermost property. For a chain, there is only one at
/// a time, which requires no allocation.
class PendingNodes
{
public:
    void Add(boost::shared_ptr<GuiNode>& node)
    {
        if (!_first) {
            _first.swap(node);
            return;
        }
        try {
            _others.push_back(node);
        } catch (const std::bad_alloc&) {
            // Out of memory: release the node recursively instead.
        }
        node.reset();
    }

    /// Returns the next node, or an empty handle at the end.
    boost::shared_ptr<GuiNode> Take()
    {
        boost::shared_ptr<GuiNode> next;
        if (_first) {
            next.swap(_first);
        } else if (!_others.empty()) {
            next.swap(_others.back());
            _others.pop_back();
        }
        return next;
    }

private:
    boost::shared_ptr<GuiNode> _first;
    std::vector<boost::shared_ptr<GuiNode>> _others;
};

/// Points to the stack frame of the outermost release, so it needs no cleanup at thread exit.
thread_local PendingNodes* pendingNodes = nullptr;

void ReleaseNode(boost::shared_ptr<GuiNode>& node)
{
    if (pendingNodes) {
        pendingNodes->Add(node);
        return;
    }
    PendingNodes pending;
    pendingNodes = &pending;
    node.reset();
    while (auto next = pending.Take())
        next.reset();
    pendingNodes = nullptr;
}

} // namespace

boost::shared_ptr<GuiProperty> GuiProperty::Create(const std::string& name)
{
    return boost::make_shared<GuiProperty>(CreateOnly(), name);
}

GuiProperty::GuiProperty(CreateOnly, const std::string& name) : GuiProperty(name)
{}

GuiProperty::GuiProperty(const std::string& name) : Name(name)
{}

GuiProperty::~GuiProperty()
{
    if (Node)
        ReleaseNode(Node);
}

void GuiProperty::SetBool(bool value)
{
    Kind = GuiPropertyKind::Bool;
    Integer = value ? 1 : 0;
}

void GuiProperty::SetInt(std::int32_t value)
{
    Kind = GuiPropertyKind::Integer;
    Integer = value;
}

void GuiProperty::SetFloat(float value)
{
    Kind = GuiPropertyKind::Float;
    Floats[0] = value;
}

void GuiProperty::SetString(const std::string& value)
{
    Text = value;
    Kind = GuiPropertyKind::String;
}

void GuiProperty::SetColour(float red, float green, float blue)
{
    Kind = GuiPropertyKind::Colour;
    Floats[0] = red;
    Floats[1] = green;
    Floats[2] = blue;
}

void GuiProperty::AddEnum(const std::string& word)
{
    if (HasChoice(word))
        throw ShaderError(Compose("enum \"", word, "\" is not unique"));
    Choices.push_back(word);
    if (Choices.size() == 1) {
        try {
            Text = word;
        } catch (...) {
            Choices.pop_back();
            throw;
        }
    }
    Kind = GuiPropertyKind::Enum;
}

void GuiProperty::SetEnum(const std::string& word)
{
    if (!HasChoice(word))
        throw ShaderError(Compose("enum \"", word, "\" does not exist"));
    Text = word;
    Kind = GuiPropertyKind::Enum;
}

void GuiProperty::AddNodeTypename(const std::string& typeName)
{
    Choices.push_back(typeName);
    Kind = GuiPropertyKind::Node;
}

bool GuiProperty::GetBool() const
{
    RequireKind(GuiPropertyKind::Bool, "cannot read bool value from non-bool property \"");
    return Integer == 1;
}

std::int32_t GuiProperty::GetInt() const
{
    RequireKind(GuiPropertyKind::Integer, "cannot read integer value from non-integer property \"");
    return Integer;
}

float GuiProperty::GetFloat() const
{
    RequireKind(GuiPropertyKind::Float, "cannot read float value from non-float property \"");
    return Floats[0];
}

const std::string& GuiProperty::GetString() const
{
    RequireKind(GuiPropertyKind::String, "cannot read string value from non-string property \"");
    return Text;
}

void GuiProperty::GetColour(float& red, float& green, float& blue) const
{
    RequireKind(GuiPropertyKind::Colour, "cannot read colour value from non-colour property \"");
    red = Floats[0];
    green = Floats[1];
    blue = Floats[2];
}

const std::string& GuiProperty::GetEnum() const
{
    RequireKind(GuiPropertyKind::Enum, "cannot read enum value from non-enum property \"");
    return Text;
}

boost::shared_ptr<GuiNode>& GuiProperty::GetNode()
{
    RequireKind(GuiPropertyKind::Node, "cannot read node value from non-node property \"");
    return Node;
}

void GuiProperty::CopyFrom(const boost::shared_ptr<GuiProperty>& source)
{
    if (Kind != source->Kind) {
        throw ShaderError(
            Compose("cannot copy property \"", Name, "\" from property with non-matching type"));
    }
    if (Kind == GuiPropertyKind::Enum && !HasChoice(source->Text)) {
        throw ShaderError(Compose("cannot copy property \"", Name, "\" as enum \"", source->Text,
                                  "\" is not a known enum value"));
    }
    if (Kind == GuiPropertyKind::Node && source->Node && !Choices.empty() &&
        !HasChoice(source->Node->GetType())) {
        throw ShaderError(Compose("cannot copy property \"", Name, "\" as node typename \"",
                                  source->Node->GetType(), "\" is not a valid typename"));
    }
    Text = source->Text;
    Integer = source->Integer;
    std::copy(std::begin(source->Floats), std::end(source->Floats), std::begin(Floats));
    Node = source->Node;
}

void GuiProperty::RequireKind(GuiPropertyKind kind, const char* complaint) const
{
    if (Kind != kind)
        throw ShaderError(Compose(complaint, Name, "\""));
}

bool GuiProperty::HasChoice(const std::string& word) const
{
    return std::find(Choices.begin(), Choices.end(), word) != Choices.end();
}

} // namespace Mox::Materials
