#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/TestNode.h"

#include <boost/smart_ptr/make_shared.hpp>

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

TEST(AuthoringExhaustion, PropertiesKeepTheirValue)
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

TEST(AuthoringExhaustion, ListAndIndexOfABagAgree)
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
TEST(AuthoringExhaustion, AChainIsReleasedWithoutMemory)
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
TEST(AuthoringExhaustion, ATreeIsReleasedWithoutMemory)
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

} // namespace
