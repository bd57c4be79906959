#include "mox/authoring/GuiNode.h"
#include "tests/support/Failure.h"
#include "tests/support/TestNode.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

/// A free port that knows its count, a free port that does not (0), or a fixed port.
GuiPort Free(std::int32_t count)
{
    GuiPort port("p", "");
    port.ComponentCount = count;
    port.CountKnown = count != 0;
    return port;
}

GuiPort Fixed(std::int32_t count, bool isKnown = true)
{
    GuiPort port("p", "");
    port.SetComponentCount(count);
    port.CountKnown = isKnown;
    return port;
}

std::string CountsOf(const std::vector<GuiPort>& ports)
{
    std::string text;
    for (const GuiPort& port : ports) {
        text += port.CountKnown ? std::to_string(port.ComponentCount) : "?";
        text += port.CountConflict ? "! " : " ";
    }
    return text;
}

TEST(GuiNode, ResolveComponentCounts)
{
    struct Case
    {
        const char* What;
        std::vector<GuiPort> Inputs;
        std::vector<GuiPort> Outputs;
        std::int32_t Count;
        const char* InputCounts;
        const char* OutputCounts;
    };
    const Case cases[] = {
        {"a scalar fits", {Free(3), Free(1), Free(3)}, {Free(0)}, 3, "3 1 3 ", "3 "},
        {"vectors disagree", {Free(3), Free(4)}, {Free(0), Free(2)}, 3, "3! 4! ", "? 2 "},
        {"disagreement reaches every free input",
         {Free(0), Free(2), Fixed(4), Free(3)},
         {},
         2,
         "?! 2! 4 3! ",
         ""},
        {"unknown takes the scalar", {Free(1), Free(1), Free(0)}, {Free(0)}, 1, "1 1 1 ", "1 "},
        {"unknown takes the vector", {Free(0), Free(4)}, {Free(2)}, 4, "4 4 ", "4 "},
        {"fixed input has no vote", {Fixed(4), Free(2)}, {Free(0)}, 2, "4 2 ", "2 "},
        {"fixed and unknown conflicts", {Fixed(4, false), Free(2)}, {}, 2, "?! 2 ", ""},
        {"fixed and unknown agrees", {Fixed(2, false), Free(2)}, {}, 2, "? 2 ", ""},
        {"fixed and unknown under a scalar", {Fixed(4, false), Free(1)}, {}, 1, "? 1 ", ""},
        {"fixed output keeps its count", {Free(3)}, {Fixed(1), Free(0)}, 3, "3 ", "1 3 "},
        {"no inputs", {}, {Free(0)}, 1, "", "1 "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.What);
        TestNode node("T");
        node.InputPorts = c.Inputs;
        node.OutputPorts = c.Outputs;
        node.ResolveComponentCounts();
        EXPECT_EQ(node.ComponentCount, c.Count);
        EXPECT_EQ(CountsOf(node.InputPorts), c.InputCounts);
        EXPECT_EQ(CountsOf(node.OutputPorts), c.OutputCounts);
    }
}

TEST(GuiNode, ResolvePrecisions)
{
    constexpr auto unknown = ComponentType::Unknown; // stands for "not known" in this table
    constexpr auto f = ComponentType::Float;
    constexpr auto h = ComponentType::Half;
    struct Case
    {
        std::vector<ComponentType> Outputs;
        ComponentType Node;
        std::vector<ComponentType> OutputsAfter;
    };
    const Case cases[] = {
        {{}, h, {}},
        {{unknown}, h, {h}},
        {{f}, f, {f}},
        {{h, f, unknown}, f, {h, f, f}},
        {{ComponentType::Fixed, ComponentType::Int, unknown},
         h,
         {ComponentType::Fixed, ComponentType::Int, h}},
    };
    for (const Case& c : cases) {
        TestNode node("T");
        node.InputPorts = {GuiPort("free", ""), GuiPort("fixed", "")};
        node.InputPorts[0].Precision = ComponentType::Int;
        node.InputPorts[0].PrecisionKnown = true;
        node.InputPorts[1].SetPrecision(ComponentType::Bool);
        for (const ComponentType precision : c.Outputs) {
            node.OutputPorts.emplace_back("out", "");
            node.OutputPorts.back().Precision = precision;
            node.OutputPorts.back().PrecisionKnown = precision != unknown;
        }
        node.ResolvePrecisions();
        EXPECT_EQ(node.Precision, c.Node);
        EXPECT_EQ(node.InputPorts[0].GetPrecision(), c.Node);
        EXPECT_EQ(node.InputPorts[1].GetPrecision(), ComponentType::Bool);
        for (std::size_t i = 0; i < c.OutputsAfter.size(); ++i)
            EXPECT_EQ(node.OutputPorts[i].GetPrecision(), c.OutputsAfter[i]);
    }
}

TEST(GuiNode, StandardPropertiesHeadTheBag)
{
    const TestNode node("T");
    std::string names;
    for (const auto& property : node.Properties->Properties)
        names += property->Name + (property->Visible ? "" : "(hidden)") +
                 (property->Editable ? "" : "(locked)") +
                 (property->Style ? std::to_string(property->Style) : "") + ";";
    EXPECT_EQ(names, "Type(locked);Name;BindingIndex(hidden);BindingGroup(hidden);PositionX(hidden)"
                     ";PositionY(hidden);Description1;Help Url2;");
    EXPECT_EQ(node.GetType(), "T");
    EXPECT_EQ(node.GetName(), "T");
    EXPECT_EQ(node.BackgroundColour[3], 0.9f);
    EXPECT_EQ(node.ForegroundColour[3], 1.0f);
}

TEST(GuiNode, PortsAreFoundByName)
{
    TestNode node("T");
    node.SetName("n");
    node.InputPorts = {GuiPort("a", ""), GuiPort("a", "second")};
    EXPECT_EQ(node.InputPorts[0].Label, "a");
    EXPECT_EQ(node.FindInputPort("a"), 0);
    EXPECT_EQ(node.FindOutputPort("a"), -1);
    EXPECT_EQ(FailureOf([&] { node.GetInputPort("b"); }),
              "node \"n\" (T): input port \"b\" does not exist");
    EXPECT_EQ(FailureOf([&] { node.GetOutputPort("a"); }),
              "node \"n\" (T): output port \"a\" does not exist");
    EXPECT_EQ(FailureOf([&] { node.InputPorts[0].GetComponentCount(); }),
              "cannot read unknown component count");
    EXPECT_EQ(FailureOf([&] { node.InputPorts[0].GetPrecision(); }),
              "cannot read unknown precision");
}

TEST(GuiNode, LoadPropertiesComparesVersionsAsSigned)
{
    TestNode node("T");
    auto stored = boost::make_shared<GuiPropertyBag>();
    auto name = GuiProperty::Create("Name");
    name->SetString("loaded");
    stored->Add(name);
    stored->Version = 1;
    EXPECT_EQ(FailureOf([&] { node.LoadProperties(stored); }),
              "Cannot convert \"T\" version 1 properties into version 0 properties. Are you "
              "running with an old DLL?");
    EXPECT_EQ(node.GetName(), "T");
    stored->Version = -5;
    node.LoadProperties(stored);
    EXPECT_EQ(node.GetName(), "loaded");
}

TEST(DiGraphNode, ListsEachEdgeOnceAndMeetsDeadEntries)
{
    TestNode node("T");
    auto first = boost::make_shared<GuiEdge>();
    auto second = boost::make_shared<GuiEdge>();
    node.AddInEdge(first);
    node.AddOutEdge(first);
    node.AddInEdge(second);
    EXPECT_EQ(node.InEdges.back().lock(), second);
    EXPECT_EQ(FailureOf([&] { node.AddInEdge(first); }),
              "in-edge entry for addition already exists on node");
    EXPECT_EQ(FailureOf([&] { node.AddOutEdge(first); }),
              "out-edge entry for addition already exists on node");
    second.reset();
    EXPECT_EQ(FailureOf([&] { node.AddInEdge(first); }),
              "in-edge entry for addition already exists on node")
        << "the live entry stands ahead of the dead one";
    EXPECT_THROW(node.AddInEdge(boost::make_shared<GuiEdge>()), boost::bad_weak_ptr);
    EXPECT_EQ(node.InEdges.size(), 2u);
}

} // namespace
