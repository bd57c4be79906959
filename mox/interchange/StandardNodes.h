#pragma once

#include "mox/host/Problem.h"
#include "mox/interchange/Formula.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// How a standard MaterialX node is converted.
enum class Carry
{
    Direct,       ///< to one equivalent node
    Composed,     ///< to several nodes that together are equivalent
    Approximated, ///< to nodes that approximate it
    None,         ///< not at all
};

/// Returns the rule of the warning about a conversion that is not direct.
constexpr ProblemRule RuleOf(Carry kind)
{
    switch (kind) {
    case Carry::Composed:
        return "interchange-composed";
    case Carry::Approximated:
        return "interchange-approximated";
    default:
        return "interchange-dropped";
    }
}

/// Pairs of names and values, such as the properties of a node.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

/// A condition of an alternative.
struct InterchangeCondition
{
    enum class Test
    {
        Equals,    ///< the input is unconnected and has this value
        OneOf,     ///< the input is unconnected and has one of several values, separated by commas
        Width,     ///< the input has this number of components
        InputType, ///< the input has this MaterialX type
        NodeType,  ///< the node has this MaterialX type
        NodeWidth, ///< the node's type has this number of components
    };

    Test What = Test::Equals;
    std::string Input;
    std::string Text;
};

/// An input or output of a MaterialX node and the corresponding port.
struct InterchangePort
{
    std::string Input;
    std::string Port;
    int Count = 0; ///< 0 if the port's number of components is not fixed
};

/// One of the ways to convert a MaterialX node; standard_nodes.xml explains the fields.
struct InterchangeAlternative
{
    Carry Kind = Carry::None;
    std::vector<InterchangeCondition> When;
    std::string Type;
    std::string Code; ///< name of a conversion implemented in the reader
    NamedTexts Settings;
    std::vector<InterchangePort> Inputs;
    std::vector<InterchangePort> Outputs;
    Formula Is;
    Formula After;    ///< formula applied to the value read from the texture
    std::string Text; ///< source of the formula, for the documentation
    std::string Note;
};

/// A standard MaterialX node, or a helper used in formulas.
struct InterchangeNode
{
    std::string Name;
    bool IsHelper = false;
    NamedTexts Inputs;  ///< with their values when unconnected
    NamedTexts Neutral; ///< inputs with the values for which the node has no effect
    bool IsVector = false;
    std::string Kinds;       ///< space-separated list
    std::string FloatInputs; ///< space-separated list, like the following
    std::string SingleInputs;
    std::string IntegerInputs;
    std::vector<std::string> FixedInputs; ///< inputs that must be values
    std::string Gives;
    std::vector<InterchangeAlternative> Alternatives;
};

/// A MaterialX shader.
struct InterchangeSurface
{
    struct Port
    {
        std::string Name;
        Formula Is;
        std::vector<InterchangeCondition> Unless;
        std::string Unfed; ///< value of the port if it has no edge; empty if it cannot be expressed
    };

    struct State
    {
        std::vector<InterchangeCondition> When;
        std::vector<InterchangeCondition> Unless;
        NamedTexts Settings; ///< of the render state
    };

    struct Ignored
    {
        std::string Input;
        std::string Neutral; ///< value for which the input has no effect
        std::string Note;
        bool IsApproximated = false; ///< if true, part of the meaning is preserved
    };

    std::string Name;
    std::string Type;
    NamedTexts Inputs;
    std::vector<std::string> FixedInputs; ///< inputs that must be values
    std::vector<Port> Ports;
    std::vector<State> States;
    std::vector<Ignored> IgnoredInputs;
};

/// A node type without a direct counterpart, expressed as a formula of MaterialX nodes.
struct InterchangeBack
{
    std::string Type;
    NamedTexts Settings;
    NamedTexts Inputs; ///< values of ports that have neither an edge nor a property
    Formula Is;
    std::string Note; ///< the features that the formula omits; empty if it is equivalent
};

/// The table in standard_nodes.xml.
struct StandardNodes
{
    const InterchangeNode* Find(std::string_view name) const;
    const InterchangeSurface* FindSurface(std::string_view name) const;

    /// Returns whether an input of a node or shader must be a value.
    bool HasFixedInput(std::string_view category, const std::string& input) const;

    /// Returns the property that contains the value of a port without an edge, or null.
    const std::string* FindProperty(const std::string& type, const std::string& port) const;

    std::vector<InterchangeNode> Nodes;
    std::vector<InterchangeSurface> Surfaces;
    std::vector<InterchangeBack> Back;
    std::map<std::pair<std::string, std::string>, std::string> PortProperties; ///< keyed by node
                                                                               ///< type and port
    std::map<std::string, std::size_t, std::less<>> NodeIndex;
};

/// Returns the table, which is compiled into the program.
const StandardNodes& GetStandardNodes();

/// Formats the table as Markdown documentation: the conversion of each standard node, and
/// statistics.
std::string FormatStandardNodes();

/// Suffix for the name of an element that only reads a node graph input, appended to the input's
/// name.
constexpr std::string_view InputReaderEnding = "_node";

/// Returns whether colours of a space require no conversion: the space is linear with Rec. 709
/// primaries, or is for data.
bool IsPlainColourSpace(std::string_view space);

/// Returns the node that converts colours of a space to linear Rec. 709, or null if there is none.
const InterchangeNode* FindColourConversion(std::string_view space);

/// Returns whether a string is the name of data that the mesh or the scene supplies, such as "UV0".
bool IsGeometryName(std::string_view text);

} // namespace Mox::Host
