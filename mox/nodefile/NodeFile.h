#pragma once

#include "mox/authoring/GuiPropertyBag.h"
#include "mox/host/Condition.h"
#include "mox/shader/ShaderNode.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The values of the properties that decide which parts of a node there are, as text, by name.
using NodeSettings = std::map<std::string, std::string>;

/// Properties that must have one of some values; without any, the part is always there.
using NodeConditions = Conditions;

struct NodeChoice
{
    std::string Name;
    std::optional<ShaderLevel> Level; ///< that this choice forces on the node
};

struct NodeProperty
{
    std::string Name;
    Materials::GuiPropertyKind Kind = Materials::GuiPropertyKind::Bool;
    std::string Value; ///< the default; a valid value of the kind, or empty for the kind's own
    std::string Help;  ///< begins with the name, a colon and a space
    std::optional<std::pair<float, float>> Range; ///< lowest and highest sensible value
    std::vector<NodeChoice> Choices;              ///< of an enum, in display order
    int Line = 0;
};

/// Where an input takes its value from unless an edge brings one.
enum class NodeSource
{
    Zero,
    Property,   ///< a property of the node
    Value,      ///< a value that the host supplies by its name
    Expression, ///< Cg
    Edge,       ///< nowhere: the node cannot be exported without an edge
};

/// What bodies read under a name.
struct NodeInput
{
    std::string Name;
    std::string Label; ///< empty if it is not a port
    std::optional<std::int32_t> Count;
    std::optional<ComponentType> Precision;
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1); ///< of a value without a port
    NodeSource Source = NodeSource::Zero;
    std::string SourceText; ///< name of the property or value, or the expression
    NodeConditions When;
    int Line = 0;

    bool IsPort() const { return !Label.empty(); }
};

struct NodeOutput
{
    std::string Name;
    std::string Label;
    std::optional<std::int32_t> Count;
    std::optional<ComponentType> Precision;
    NodeConditions When;
    int Line = 0;
};

/// A texture that bodies read, with the binding through which artists choose it.
struct NodeSampler
{
    std::string Name;
    ShaderType Type = ShaderType(ComponentType::Sampler2D, 1, 1, 1);
    std::string Suffix;                  ///< after the node's name, which makes the binding's name
    std::string Usage;                   ///< hint for the host, such as "Normal"
    std::optional<NodeConditions> Srgb;  ///< the texture holds sRGB colours if they hold
    std::optional<NodeConditions> Alpha; ///< the fourth component is read if they hold
    NodeConditions When;
    int Line = 0;
};

/// Cg functions of one name that bodies call.
struct NodeFunction
{
    std::string Name;
    std::string Text; ///< whole lines
    int Line = 0;     ///< of the first line of Text
};

/// Cg that reads the inputs and assigns the outputs. All bodies whose conditions hold count, one
/// after another.
struct NodeBody
{
    std::string Text; ///< whole lines, each with a tab before it; may contain placeholders
    std::optional<ShaderLevel> Level;
    NodeConditions When;
    int Line = 0; ///< of the first line of Text
};

/// A node type as its file describes it. The names are names in Cg, and every condition names a
/// property and values that there are.
struct NodeFile
{
    std::string File;
    std::string TypeName;
    std::string Label;
    std::string Library;
    bool IsCompiled = false; ///< another plug-in has the type; the file adds help and ranges
    std::int32_t PropertiesVersion = 0; ///< of the set of properties, as documents store it
    std::string Help;
    std::string Title; ///< enum property whose value is the title, or empty
    float Colour[3] = {0.9f, 0.9f, 0.9f};
    std::vector<NodeProperty> Properties;
    std::vector<NodeInput> Inputs;
    std::vector<NodeOutput> Outputs;
    std::vector<NodeSampler> Samplers;
    std::vector<NodeFunction> Functions;
    std::vector<NodeBody> Bodies;

    const NodeProperty* FindProperty(std::string_view name) const;
};

bool Holds(const NodeConditions& conditions, const NodeSettings& settings);

/// The settings that the properties of a node have.
/// @param properties must have all properties of the file
NodeSettings SettingsOf(const NodeFile& file, const Materials::GuiPropertyBag& properties);

/// Every combination of values that the conditions of a file tell apart.
/// @param most to be listed; if there are more, the result is empty
std::vector<NodeSettings> ListSettings(const NodeFile& file, std::size_t most);

/// Cg with the placeholders replaced: "$type" by the type of the node, "$scalar" by its precision,
/// "$count" by its number of components. Lines stay lines.
std::string FillPlaceholders(std::string text, const ShaderType& type);

} // namespace Mox::Host
