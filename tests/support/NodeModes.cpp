#include "tests/support/NodeModes.h"

#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/MaterialProgram.h"
#include "tests/support/BuildTree.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/NodeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <regex>
#include <set>
#include <sstream>

using namespace Mox::Host;
using namespace Mox::Materials;

namespace {

constexpr const char* testedNode = "tested";

/// Writes a material with a node in one mode: sources at its inputs and, unless it is an output
/// node, a sum of all its outputs that becomes the colour of a surface.
/// @param width component count of inputs that accept any
std::string WriteMaterial(const GuiNode& node, const std::string& type, const std::string& settings,
                          bool hasBinding, std::int32_t width)
{
    constexpr std::array sources = {"one.read", "two.read", "three.read", "four.read"};
    std::string text =
        Compose("one SurfaceTime\ntwo CoreUv; Name=two\nthree SurfaceObjectPosition\n"
                "four CoreConstant; Name=four; Constant Type=Vector; Component Count=4\n",
                testedNode, " ", type, hasBinding ? "; Name=tested" : "",
                settings.empty() ? "" : "; ", settings, "\n");
    for (const GuiPort& port : node.InputPorts) {
        const auto count = static_cast<std::size_t>(port.CountFixed ? port.ComponentCount : width);
        text += Compose(sources.at(count - 1), " -> ", testedNode, ".", port.Name, "\n");
    }
    if (node.OutputPorts.empty())
        return text;
    std::string sum;
    for (std::size_t i = 0; i < node.OutputPorts.size(); ++i) {
        const std::string output = Compose(testedNode, ".", node.OutputPorts[i].Name);
        const std::string dot = Compose("dot", i);
        text += Compose(dot, " CoreMaths; Function=Dot Product\n", output, " -> ", dot,
                        ".in_value1\n", output, " -> ", dot, ".in_value2\n");
        if (i == 0) {
            sum = dot;
            continue;
        }
        const std::string next = Compose("sum", i);
        text += Compose(next, " CoreMaths; Function=Addition\n", sum, ".out_value -> ", next,
                        ".in_value1\n", dot, ".out_value -> ", next, ".in_value2\n");
        sum = next;
    }
    return Compose(text, "surface Surface\n", sum, ".out_value -> surface.in_colour\n");
}

void AppendModes(const std::string& type, std::vector<NodeMode>& modes)
{
    for (const std::string& settings : CombineSettings(*TestPlugins().CreateNode(type).Handle())) {
        const auto node = TestPlugins().CreateNode(type).Handle();
        ApplySettings(*node, settings);
        node->UpdatePorts({});
        const bool isAnyWidth = std::any_of(node->InputPorts.begin(), node->InputPorts.end(),
                                            [](const GuiPort& port) { return !port.CountFixed; });
        for (const std::int32_t width : {1, 3}) {
            if (width > 1 && !isAnyWidth)
                continue;
            modes.push_back({type,
                             Compose(type, settings.empty() ? "" : "; ", settings,
                                     isAnyWidth ? Compose(" x", width) : ""),
                             MaterialFromText(
                                 WriteMaterial(*node, type, settings, node->HasBinding(), width))});
        }
    }
}

/// The names of the functions that a piece of code defines.
const std::set<std::string>& NamesDefinedIn(const std::string& code)
{
    static std::map<std::string, std::set<std::string>> known;
    const auto [names, isNew] = known.try_emplace(code);
    if (!isNew)
        return names->second;
    static const std::regex definition(R"(^\s*(?!return )\w+ (\w+)\([^;]*$)");
    std::istringstream lines(code);
    std::smatch found;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_search(line, found, definition))
            names->second.insert(found[1]);
    }
    return names->second;
}

/// The pieces of code that a function calls directly or through later pieces.
std::vector<std::string> CodeCalledBy(const std::string& function,
                                      const std::vector<std::string>& code)
{
    std::vector<std::string> called;
    std::string callers = function;
    for (auto piece = code.rbegin(); piece != code.rend(); ++piece) {
        const std::set<std::string>& names = NamesDefinedIn(*piece);
        if (std::any_of(names.begin(), names.end(), [&](const std::string& name) {
                return callers.find(name + "(") != std::string::npos;
            })) {
            called.insert(called.begin(), *piece);
            callers += *piece;
        }
    }
    return called;
}

} // namespace

std::vector<std::string> CombineSettings(const GuiNode& node)
{
    constexpr std::size_t standardProperties = 8;
    std::vector<std::string> combinations{""};
    const auto& properties = node.Properties->Properties;
    for (std::size_t i = standardProperties; i < properties.size(); ++i) {
        std::vector<std::string> values;
        if (properties[i]->Kind == GuiPropertyKind::Enum)
            values = properties[i]->Choices;
        else if (properties[i]->Kind == GuiPropertyKind::Bool)
            values = {"false", "true"};
        else
            continue;
        std::vector<std::string> longer;
        for (const std::string& combination : combinations) {
            for (const std::string& value : values)
                longer.push_back(Compose(combination, combination.empty() ? "" : "; ",
                                         properties[i]->Name, "=", value));
        }
        combinations = std::move(longer);
    }
    return combinations;
}

std::vector<NodeMode> ModesOfEveryNode()
{
    std::vector<NodeMode> modes;
    for (const Plugin& plugin : TestPlugins().Plugins()) {
        for (const PluginType& type : plugin.Types()) {
            if (type.Listed && TestPlugins().FindSupplier(type.TypeName) == &plugin)
                AppendModes(type.TypeName, modes);
        }
    }
    return modes;
}

std::vector<ModeFunction> FunctionsOfEveryMode()
{
    std::set<std::string> known;
    std::vector<ModeFunction> functions;
    for (const NodeMode& mode : ModesOfEveryNode()) {
        ProblemList problems;
        MaterialGraph graph = LoadMaterial(mode.Material, TestPlugins(), problems);
        ResolveGraph(graph, problems);
        const ProgramPlan plan =
            PlanMaterialProgram(graph, TestEnvironment(), StageCopies::HandedOn, problems);
        EXPECT_FALSE(problems.HasErrors()) << mode.Name << "\n" << FormatProblems(problems);
        if (problems.HasErrors())
            continue;
        for (const PlannedFunction& function : plan.Functions) {
            const bool isEnvironment = function.Node.empty();
            if (!isEnvironment && function.Node != testedNode)
                continue;
            const std::string text =
                Compose(FormatSignature(function.Name, function.Inputs, function.Outputs), "\n{\n",
                        function.Code, function.Code.ends_with('\n') ? "" : "\n", "}\n");
            if (known.insert(text).second)
                functions.push_back({isEnvironment ? "environment " + function.Name : mode.Name,
                                     CodeCalledBy(text, plan.Code), text});
        }
    }
    EXPECT_GT(functions.size(), 100u);
    return functions;
}
