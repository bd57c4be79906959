#pragma once

#include "mox/authoring/GuiPropertyBag.h"
#include "mox/host/AttributeText.h"
#include "mox/host/Xpm.h"
#include "mox/shader/ShaderNode.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The values of the properties that determine which parts a node has, as strings, by name.
using NodeSettings = std::map<std::string, std::string>;

/// Properties that must have one of certain values; if empty, the part is always present.
using NodeConditions = Conditions;

struct NodeChoice
{
    std::string Name;
    std::optional<ShaderLevel> Level; ///< that this choice sets for the node
};

struct NodeProperty
{
    std::string Name;
    Materials::GuiPropertyKind Kind = Materials::GuiPropertyKind::Bool;
    std::string Value; ///< default; a valid value of the kind, or empty for the kind's own default
    std::string Help;  ///< starts with the name, a colon and a space
    std::optional<std::pair<float, float>> Range; ///< lowest and highest sensible value
    std::vector<NodeChoice> Choices;              ///< for an enum, in display order
    int Line = 0;
};

/// The source of an unconnected input's value.
enum class NodeSource
{
    Zero,
    Property,   ///< a property of the node
    Value,      ///< a value that the host supplies by name
    Expression, ///< a Cg expression
    Edge,       ///< none: the node cannot be exported if the input is unconnected
};

/// An input of the bodies.
struct NodeInput
{
    std::string Name;
    std::string Label; ///< empty if the input is not a port
    std::optional<std::int32_t> Count;
    std::optional<ComponentType> Precision;
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1); ///< type of an input that is not
                                                                   ///< a port
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

/// A texture that bodies read, and the binding through which artists choose it.
struct NodeSampler
{
    std::string Name;
    ShaderType Type = ShaderType(ComponentType::Sampler2D, 1, 1, 1);
    std::string Suffix;                  ///< appended to the node's name to form the binding's name
    std::string Usage;                   ///< hint for the host, such as "Normal"
    std::optional<NodeConditions> Srgb;  ///< conditions under which the texture holds sRGB colours
    std::optional<NodeConditions> Alpha; ///< conditions under which alpha is read
    NodeConditions When;
    int Line = 0;
};

/// The Cg functions of one name, for bodies to call.
struct NodeFunction
{
    std::string Name;
    std::string Text; ///< whole lines
    int Line = 0;     ///< file line of the first line of Text
};

/// Cg code that reads the inputs and assigns the outputs. All bodies whose conditions hold are
/// used, in order.
struct NodeBody
{
    std::string Text; ///< whole lines, indented by a tab; may contain placeholders
    std::optional<ShaderLevel> Level;
    NodeConditions When;
    int Line = 0; ///< file line of the first line of Text
};

/// A node type as its file describes it. All names are valid in Cg, and every condition refers to
/// an existing property and existing values.
struct NodeFile
{
    std::string File;
    std::string TypeName;
    std::string Label;
    std::string Library;
    bool IsCompiled = false; ///< whether another plug-in implements the type; the file then adds
                             ///< help and ranges
    std::int32_t PropertiesVersion = 0; ///< version of the set of properties, as stored in
                                        ///< documents
    std::string Help;
    std::string Title; ///< enum property whose value is the title; may be empty
    float Colour[3] = {0.9f, 0.9f, 0.9f};
    XpmTable Icon; ///< a valid table, or empty
    std::vector<NodeProperty> Properties;
    std::vector<NodeInput> Inputs;
    std::vector<NodeOutput> Outputs;
    std::vector<NodeSampler> Samplers;
    std::vector<NodeFunction> Functions;
    std::vector<NodeBody> Bodies;

    const NodeProperty* FindProperty(std::string_view name) const;
};

bool Holds(const NodeConditions& conditions, const NodeSettings& settings);

/// Returns the settings given by the properties of a node.
/// @param properties must include all properties of the file
NodeSettings SettingsOf(const NodeFile& file, const Materials::GuiPropertyBag& properties);

/// Returns every combination of values that the conditions of a file distinguish; an empty list if
/// there are more than mostSettings.
std::vector<NodeSettings> ListSettings(const NodeFile& file);
constexpr std::size_t mostSettings = 1024;

/// Replaces the placeholders in Cg code: "$type" with the type of the node, "$scalar" with its
/// precision, and "$count" with its number of components. Line numbers do not change.
std::string FillPlaceholders(std::string text, const ShaderType& type);

} // namespace Mox::Host
