#include "mox/nodekit/PropertyDeclarations.h"

#include "mox/ShaderError.h"

namespace Mox::Materials {

namespace {

template <class SetDefault>
boost::shared_ptr<GuiProperty> Declare(GuiNode& node, const char* name, const char* help,
                                       SetDefault setDefault)
{
    auto property = GuiProperty::Create(name);
    property->Help = help;
    setDefault(*property);
    node.Properties->Add(property);
    return property;
}

} // namespace

boost::shared_ptr<GuiProperty> DeclareBool(GuiNode& node, const char* name, const char* help,
                                           bool value)
{
    return Declare(node, name, help, [=](GuiProperty& property) { property.SetBool(value); });
}

boost::shared_ptr<GuiProperty> DeclareInt(GuiNode& node, const char* name, const char* help,
                                          std::int32_t value)
{
    return Declare(node, name, help, [=](GuiProperty& property) { property.SetInt(value); });
}

boost::shared_ptr<GuiProperty> DeclareFloat(GuiNode& node, const char* name, const char* help,
                                            float value)
{
    return Declare(node, name, help, [=](GuiProperty& property) { property.SetFloat(value); });
}

boost::shared_ptr<GuiProperty> DeclareColour(GuiNode& node, const char* name, const char* help,
                                             float red, float green, float blue)
{
    return Declare(node, name, help,
                   [=](GuiProperty& property) { property.SetColour(red, green, blue); });
}

boost::shared_ptr<GuiProperty> DeclareEnum(GuiNode& node, const char* name, const char* help,
                                           std::span<const char* const> words)
{
    return Declare(node, name, help, [=](GuiProperty& property) {
        property.Choices.assign(words.begin(), words.end());
        property.SetEnum(words.front());
    });
}

boost::shared_ptr<GuiProperty> DeclareNode(GuiNode& node, const char* name, const char* help,
                                           const char* typeName)
{
    return Declare(node, name, help,
                   [=](GuiProperty& property) { property.AddNodeTypename(typeName); });
}

std::int32_t GetVectorCount(const GuiProperty& property)
{
    const std::int32_t count = property.GetInt();
    if (count < 2 || count > 4)
        throw ShaderError("component count must be between 2 and 4");
    return count;
}

} // namespace Mox::Materials
