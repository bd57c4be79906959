#include "mox/authoring/GuiNode.h"
#include "mox/host/AttributeText.h"
#include "tests/support/Failure.h"
#include "tests/support/Session.h"
#include "tests/support/TestNode.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using namespace Mox::Materials;

namespace {

/// Parses one port from each word up to "->": a component count, after "=" if it is fixed, or with
/// "?" instead of or after the count if it is unknown.
std::vector<GuiPort> MakePorts(std::istream& words)
{
    std::vector<GuiPort> ports;
    for (std::string word; words >> word && word != "->";) {
        GuiPort& port = ports.emplace_back("p", "");
        port.CountFixed = word.starts_with("=");
        port.CountKnown = !word.ends_with("?");
        port.ComponentCount = std::atoi(word.c_str() + (port.CountFixed ? 1 : 0));
    }
    return ports;
}

std::string CountsOf(const std::vector<GuiPort>& ports)
{
    std::string text;
    for (const GuiPort& port : ports) {
        text += port.CountKnown ? " " + std::to_string(port.ComponentCount) : " ?";
        text += port.CountConflict ? "!" : "";
    }
    return text;
}

TEST(GuiNode, ResolveComponentCounts)
{
    ExpectSession("authoring/counts.txt", [](const std::string& line) {
        std::istringstream words(line);
        TestNode node("T");
        node.InputPorts = MakePorts(words);
        node.OutputPorts = MakePorts(words);
        node.ResolveComponentCounts();
        return std::to_string(node.ComponentCount) + ":" + CountsOf(node.InputPorts) + " ->" +
               CountsOf(node.OutputPorts) + "\n";
    });
}

/// The expected lines describe what is known of the outputs: "?" if nothing, "none" if there is no
/// output.
TEST(GuiNode, ResolvePrecisions)
{
    ExpectSession("authoring/precisions.txt", [](const std::string& line) {
        TestNode node("T");
        node.InputPorts = {GuiPort("free", ""), GuiPort("fixed", "")};
        node.InputPorts[0].Precision = ComponentType::Int;
        node.InputPorts[0].PrecisionKnown = true;
        node.InputPorts[1].SetPrecision(ComponentType::Bool);
        std::istringstream words(line);
        for (std::string word; words >> word && word != "none";) {
            GuiPort& port = node.OutputPorts.emplace_back("out", "");
            port.PrecisionKnown = word != "?";
            if (port.PrecisionKnown)
                port.Precision = Mox::Host::ParseShaderType(word)->Component;
        }
        node.ResolvePrecisions();
        std::string text = std::string(GetComponentName(node.Precision)) + ":";
        for (const auto* ports : {&node.InputPorts, &node.OutputPorts}) {
            for (const GuiPort& port : *ports)
                text += " " + std::string(GetComponentName(port.GetPrecision()));
        }
        return text + "\n";
    });
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
    node.InputPorts = {GuiPort("a", ""), GuiPort("a", "second")};
    EXPECT_EQ(node.InputPorts[0].Label, "a");
    EXPECT_EQ(node.FindInputPort("a"), 0);
    EXPECT_EQ(node.FindOutputPort("a"), -1);
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

} // namespace
