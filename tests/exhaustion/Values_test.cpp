#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/bindings/Binding.h"
#include "mox/graph/BindingsDocument.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/TestNode.h"
#include "tests/support/XmlElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <vector>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using PropertyHandle = boost::shared_ptr<GuiProperty>;

std::string DescribeProperty(const PropertyHandle& property)
{
    std::string text = Compose(static_cast<int>(property->Kind), " ", property->Text, " ",
                               property->Integer, " ", property->Floats[0]);
    for (const std::string& choice : property->Choices)
        text += " " + choice;
    return text;
}

PropertyHandle MakeEnum()
{
    auto property = GuiProperty::Create("choice");
    property->AddEnum("short");
    property->AddEnum(longText);
    property->Integer = 7;
    return property;
}

TEST(ValueExhaustion, PropertiesKeepTheirValue)
{
    const auto plain = [] { return GuiProperty::Create(longText); };
    const auto expect = [](auto make, auto call) {
        ExpectSurvival(
            make, [&](const PropertyHandle& property) { call(*property); }, DescribeProperty);
    };
    expect(plain, [](GuiProperty& property) { property.SetString(longText); });
    expect(plain, [](GuiProperty& property) { property.AddNodeTypename(longText); });
    expect(plain, [](GuiProperty& property) { property.AddEnum(longText); });
    expect(MakeEnum, [](GuiProperty& property) { property.AddEnum(longText + "3"); });
    expect(MakeEnum, [](GuiProperty& property) { property.SetEnum(longText); });
    const PropertyHandle source = MakeEnum();
    source->SetEnum(longText);
    source->Integer = 8;
    expect(MakeEnum, [&](GuiProperty& property) { property.CopyFrom(source); });
}

TEST(ValueExhaustion, ListAndIndexOfABagAgree)
{
    const auto make = [] {
        auto bag = boost::make_shared<GuiPropertyBag>();
        bag->Add(GuiProperty::Create(longText));
        return bag;
    };
    const auto describe = [](const boost::shared_ptr<GuiPropertyBag>& bag) {
        std::string text;
        for (const auto& property : bag->Properties)
            text += property->Name + " ";
        for (const auto& [name, property] : bag->Index)
            text += "; " + name + " " + property->Name;
        return text;
    };
    const PropertyHandle added = GuiProperty::Create(longText + "2");
    ExpectSurvival(
        make, [&](const auto& bag) { bag->Add(added); }, describe);
}

/// @param make returns a handle that keeps many nodes alive
/// @returns whether releasing them tried to allocate memory and coped without it
template <class Make>
bool ReleaseWithoutMemory(Make make)
{
    const std::size_t live = Allocations::LiveCount(Allocations::Owner::All);
    boost::shared_ptr<GuiNode> node = make();
    Allocations::FailAt(1, Allocations::Shortage::Lasting);
    node.reset();
    const bool hasAsked = Allocations::EndFailing();
    EXPECT_EQ(Allocations::LiveCount(Allocations::Owner::All), live);
    return hasAsked;
}

/// A chain of references so long that releasing it must not recurse.
TEST(ValueExhaustion, AChainIsReleasedWithoutMemory)
{
    EXPECT_FALSE(ReleaseWithoutMemory([] {
        boost::shared_ptr<GuiNode> first;
        for (int i = 0; i < 50000; ++i) {
            const auto node = boost::make_shared<TestNode>("test");
            node->Name->Node = first;
            first = node;
        }
        return first;
    }));
}

/// Nodes with several references are released through a list; if it cannot be allocated, they are
/// released at once.
TEST(ValueExhaustion, ATreeIsReleasedWithoutMemory)
{
    EXPECT_TRUE(ReleaseWithoutMemory([] {
        boost::shared_ptr<GuiNode> root;
        for (int i = 0; i < 100; ++i) {
            const auto node = boost::make_shared<TestNode>("test");
            for (const auto& property : {node->Name, node->Type, node->PositionX})
                property->Node = boost::make_shared<TestNode>("leaf");
            node->PositionY->Node = root;
            root = node;
        }
        return root;
    }));
}

/// Makes a binding in which every field differs from its default.
boost::shared_ptr<Binding> MakeFull(StreamType type)
{
    std::string attributes =
        "gui='position' uiunittype='angular' min='1.25, 2.5, 3.75' max='4, 5, 6' "
        "default='1234.5, 1234.5, 1234.5' basic_colour='Yes' srgb='Yes' signed_expanded='Yes' "
        "normalised='No' using_alpha='Yes'";
    for (const char* text : {"cgname", "uv", "desc", "helpUrl", "uilabel", "stream_type",
                             "dataset_modifiers", "usage_hint"})
        attributes += Compose(" ", text, "='", longText, "'");
    auto binding = CreateBinding(type, longText, 3);
    binding->ReadXml(XmlElement(attributes).Get());
    return binding;
}

std::string DescribeBinding(const boost::shared_ptr<Binding>& binding)
{
    const XmlElement element;
    binding->WriteXml(element.Get());
    return element.Attributes();
}

TEST(ValueExhaustion, BindingsAreWrittenAndReadWholeOrNotAtAll)
{
    std::vector<Host::PluginBinding> bindings;
    for (const auto type : {StreamType::Float, StreamType::Texture, StreamType::Uv})
        bindings.emplace_back(MakeFull(type));
    const std::string text = Host::FormatBindings(bindings);
    ExpectAllOrNothing([&] { return Host::FormatBindings(bindings); });
    ExpectAllOrNothing([&] { return Host::FormatBindings(Host::ParseBindings("x.xml", text)); });
}

TEST(ValueExhaustion, BindingsKeepTheirValues)
{
    const auto expect = [](StreamType type, auto call) {
        ExpectSurvival([=] { return CreateBinding(type, longText, 3); },
                       [&](const auto& binding) { call(*binding); }, DescribeBinding);
    };
    const auto setTexts = [](Binding& binding) { binding.SetDefaultText("1.5, 2.5, 3.5, 4.5"); };
    expect(StreamType::Float, setTexts);
    expect(StreamType::Texture, setTexts);
    expect(StreamType::Float, [](Binding& binding) { binding.SetCount(100); });
    ExpectSurvival([] { return CreateBinding(StreamType::Position, longText, 1); },
                   [](auto& binding) { binding = CreateBinding(StreamType::Float, "new", 4); },
                   DescribeBinding);
}

} // namespace
