#pragma once

#include "mox/interchange/Formula.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// What becomes of a standard node of MaterialX.
enum class Carry
{
    Direct,       ///< one node that means the same
    Composed,     ///< several nodes that mean the same
    Approximated, ///< nodes that come near
    None,         ///< nothing
};

/// Names with values, such as properties of a node.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

/// What has to hold for an alternative.
struct InterchangeCondition
{
    enum class Test
    {
        Equals,    ///< the input has no connection and this value
        OneOf,     ///< the same with several values, separated by commas
        Width,     ///< the input has this number of components
        InputType, ///< the input has this MaterialX type
        NodeType,  ///< the node has this MaterialX type
        NodeWidth, ///< the node's type has this number of components
    };

    Test What = Test::Equals;
    std::string Input;
    std::string Text;
};

/// An input or output of a MaterialX node, and the port that stands for it.
struct InterchangePort
{
    std::string Input;
    std::string Port;
    int Count = 0; ///< 0: the port's number of components is free
};

/// One of the ways in which a MaterialX node is carried over; standard_nodes.xml explains the
/// parts.
struct InterchangeAlternative
{
    Carry Kind = Carry::None;
    std::vector<InterchangeCondition> When;
    std::string Type;
    std::string Code; ///< what the reader does by itself
    NamedTexts Settings;
    std::vector<InterchangePort> Inputs;
    std::vector<InterchangePort> Outputs;
    Formula Is;
    Formula After;    ///< from the value of the texture that was read
    std::string Text; ///< of the formula, for people
    std::string Note;
};

/// A standard node of MaterialX or a helper of formulas.
struct InterchangeNode
{
    std::string Name;
    bool IsHelper = false;
    NamedTexts Inputs;  ///< with the values without a connection
    NamedTexts Neutral; ///< inputs and the values with which the node does nothing
    bool IsVector = false;
    std::string Kinds;       ///< words
    std::string FloatInputs; ///< words, as the following
    std::string SingleInputs;
    std::string IntegerInputs;
    std::string Gives;
    std::vector<InterchangeAlternative> Alternatives;
};

/// A shader of MaterialX.
struct InterchangeSurface
{
    struct Port
    {
        std::string Name;
        Formula Is;
        std::vector<InterchangeCondition> Unless;
        std::string Unfed; ///< what the port reads without an edge; empty if that cannot be said
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
        std::string Neutral; ///< with which nothing is lost
        std::string Note;
        bool IsApproximated = false; ///< part of the meaning is kept
    };

    std::string Name;
    std::string Type;
    NamedTexts Inputs;
    std::vector<Port> Ports;
    std::vector<State> States;
    std::vector<Ignored> IgnoredInputs;
};

/// A node type without a direct counterpart, as a formula of MaterialX nodes.
struct InterchangeBack
{
    std::string Type;
    NamedTexts Settings;
    NamedTexts Inputs; ///< values of ports without an edge or a property
    Formula Is;
    std::string Note; ///< what the formula leaves out; empty if it means the same
};

/// The table in standard_nodes.xml.
struct StandardNodes
{
    const InterchangeNode* Find(std::string_view name) const;
    const InterchangeSurface* FindSurface(std::string_view name) const;

    /// The property that holds the value of a port without an edge, or null.
    const std::string* FindProperty(const std::string& type, const std::string& port) const;

    std::vector<InterchangeNode> Nodes;
    std::vector<InterchangeSurface> Surfaces;
    std::vector<InterchangeBack> Back;
    std::map<std::pair<std::string, std::string>, std::string> PortProperties; ///< by type and port
    std::map<std::string, std::size_t, std::less<>> NodeIndex;
};

/// The table, which is part of the program.
const StandardNodes& GetStandardNodes();

/// The table for people: what becomes of each standard node, in Markdown.
std::string FormatStandardNodes();

/// Whether a text names what the mesh or the scene supplies, such as "UV0".
bool IsGeometryName(std::string_view text);

} // namespace Mox::Host
