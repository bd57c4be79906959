#include "mox/authoring/GuiPropertyBag.h"
#include "tests/support/Failure.h"
#include "tests/support/TestNode.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

boost::shared_ptr<GuiProperty> EnumOf(std::initializer_list<const char*> words)
{
    auto property = GuiProperty::Create("p");
    for (const char* word : words)
        property->AddEnum(word);
    return property;
}

TEST(GuiProperty, GettersAreStrictAboutTheKind)
{
    auto p = GuiProperty::Create("p");
    EXPECT_FALSE(p->GetBool());
    const auto expect = [&](const std::string& kind, auto read) {
        EXPECT_EQ(FailureOf([&] { (*p.*read)(); }),
                  "cannot read " + kind + " value from non-" + kind + " property \"p\"");
    };
    expect("integer", &GuiProperty::GetInt);
    expect("float", &GuiProperty::GetFloat);
    expect("string", &GuiProperty::GetString);
    expect("enum", &GuiProperty::GetEnum);
    expect("node", &GuiProperty::GetNode);
    float r, g, b;
    EXPECT_EQ(FailureOf([&] { p->GetColour(r, g, b); }),
              "cannot read colour value from non-colour property \"p\"");
    p->SetInt(1);
    expect("bool", &GuiProperty::GetBool);
}

TEST(GuiProperty, KindsShareStorage)
{
    auto p = GuiProperty::Create("p");
    p->SetColour(0.1f, 0.2f, 0.3f);
    p->SetFloat(0.9f);
    EXPECT_EQ(p->Floats[1], 0.2f);
    EXPECT_EQ(p->Floats[2], 0.3f);

    auto other = GuiProperty::Create("q");
    other->Integer = 2;
    auto flag = GuiProperty::Create("r");
    flag->CopyFrom(other);
    EXPECT_FALSE(flag->GetBool()) << "only 1 is true";
}

TEST(GuiProperty, EnumWords)
{
    auto p = EnumOf({"one", "two"});
    EXPECT_EQ(p->GetEnum(), "one");
    EXPECT_EQ(FailureOf([&] { p->AddEnum("two"); }), "enum \"two\" is not unique");
    EXPECT_EQ(FailureOf([&] { p->SetEnum("Two"); }), "enum \"Two\" does not exist");
    EXPECT_EQ(p->Choices.size(), 2u);
    EXPECT_EQ(p->GetEnum(), "one");
    p->SetString("free");
    EXPECT_EQ(FailureOf([&] { p->GetEnum(); }),
              "cannot read enum value from non-enum property \"p\"");
    EXPECT_EQ(p->Choices.size(), 2u);
}

TEST(GuiProperty, CopyFromChecksKindThenWordThenNodeType)
{
    auto flag = GuiProperty::Create("p");
    auto number = GuiProperty::Create("q");
    number->SetInt(1);
    EXPECT_EQ(FailureOf([&] { flag->CopyFrom(number); }),
              "cannot copy property \"p\" from property with non-matching type");

    auto narrow = EnumOf({"a"});
    auto wide = EnumOf({"b", "a"});
    EXPECT_EQ(FailureOf([&] { narrow->CopyFrom(wide); }),
              "cannot copy property \"p\" as enum \"b\" is not a known enum value");
    EXPECT_EQ(narrow->GetEnum(), "a");

    auto restricted = GuiProperty::Create("p");
    restricted->AddNodeTypename("Wanted");
    restricted->AddNodeTypename("Wanted");
    EXPECT_EQ(restricted->Choices.size(), 2u);
    auto source = GuiProperty::Create("s");
    source->AddNodeTypename("x");
    source->Node = boost::make_shared<TestNode>("Other");
    EXPECT_EQ(FailureOf([&] { restricted->CopyFrom(source); }),
              "cannot copy property \"p\" as node typename \"Other\" is not a valid typename");
    EXPECT_FALSE(restricted->GetNode());

    auto open = GuiProperty::Create("o");
    open->Kind = GuiPropertyKind::Node;
    open->CopyFrom(source);
    EXPECT_EQ(open->GetNode(), source->Node);
    source->Node.reset();
    restricted->Node = boost::make_shared<TestNode>("Wanted");
    restricted->CopyFrom(source);
    EXPECT_FALSE(restricted->GetNode());
}

TEST(GuiPropertyBag, KeepsOrderAndRefusesDoubles)
{
    GuiPropertyBag bag;
    EXPECT_EQ(bag.Version, 0);
    auto b = GuiProperty::Create("b");
    bag.Add(b);
    bag.Add(GuiProperty::Create("a"));
    EXPECT_EQ(FailureOf([&] { bag.Add(bag.Properties.front()); }),
              "property with name \"b\" already exists")
        << "the handle inside the full bag itself";
    bag.Add(GuiProperty::Create("B"));
    EXPECT_EQ(FailureOf([&] { bag.Add(b); }), "property with name \"b\" already exists");
    EXPECT_EQ(bag.Properties.size(), 3u);
    EXPECT_EQ(bag.Index.size(), 3u);
    EXPECT_EQ(bag.Properties.front(), b);
    EXPECT_EQ(bag.Get("b"), b);
    EXPECT_EQ(FailureOf([&] { bag.Get("c"); }), "failed to find property \"c\"");
}

TEST(GuiPropertyBag, CopyFromStopsAtTheFirstFailure)
{
    GuiPropertyBag target;
    auto stored = boost::make_shared<GuiPropertyBag>();
    for (const char* name : {"first", "second", "third"}) {
        auto own = GuiProperty::Create(name);
        own->SetInt(0);
        target.Add(own);
        auto other = GuiProperty::Create(name);
        other->SetInt(7);
        stored->Add(other);
    }
    stored->Add(GuiProperty::Create("unknown here"));
    stored->Get("second")->SetFloat(1.0f);
    EXPECT_EQ(FailureOf([&] { target.CopyFrom(stored); }),
              "cannot copy property \"second\" from property with non-matching type");
    EXPECT_EQ(target.Get("first")->GetInt(), 7);
    EXPECT_EQ(target.Get("third")->GetInt(), 0);
    EXPECT_EQ(target.Properties.size(), 3u);
}

TEST(GuiPropertyBag, CopyFromMayDestroyTheOwnerOfItsSource)
{
    GuiPropertyBag target;
    const auto reference = GuiProperty::Create("first");
    reference->AddNodeTypename("Owner");
    const auto number = GuiProperty::Create("second");
    number->SetInt(0);
    target.Add(reference);
    target.Add(number);
    reference->Node = boost::make_shared<TestNode>("Owner");
    GuiPropertyBag& source = *reference->Node->Properties;
    source.Add(GuiProperty::Create("first"));
    source.Get("first")->AddNodeTypename("Owner");
    source.Add(GuiProperty::Create("second"));
    source.Get("second")->SetInt(7);
    target.CopyFrom(reference->Node->Properties);
    EXPECT_FALSE(reference->GetNode());
    EXPECT_EQ(number->GetInt(), 7);
}

} // namespace
