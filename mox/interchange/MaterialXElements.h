#pragma once

#include "mox/interchange/StandardNodes.h"

#include <deque>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// A value in a MaterialX document that is being written: numbers, or an output of a node.
struct MaterialXValue
{
    bool IsConnected() const { return !Node.empty(); }

    std::vector<float> Numbers;
    std::string Node;
    std::string Output; ///< empty if the node has only one output
    std::string Type = "float";
    bool IsPacked = false; ///< a normal encoded in the range 0 to 1, which represents -1 to 1
};

/// Creates a value that refers to an output of a written node.
MaterialXValue MakeOutput(const std::string& node, const std::string& type,
                          const std::string& output = {});

MaterialXValue MakeNumber(float number);

/// An input or output of an element.
struct MaterialXInput
{
    std::string Name;
    std::string Type;
    std::string Value;     ///< set unless one of the following fields is
    std::string Node;      ///< node that the input is connected to
    std::string Output;    ///< output of that node
    std::string Interface; ///< node graph input that it is connected to
    std::string ColourSpace;
    std::vector<std::pair<std::string, std::string>> More; ///< additional attributes
};

/// A node or a shader.
struct MaterialXElement
{
    std::string Category;
    std::string Name;
    std::string Type;
    std::vector<std::pair<std::string, std::string>> Attributes; ///< written after the type
    std::vector<MaterialXInput> Inputs;
};

/// Collects the parts of a MaterialX document that is being written and inserts type conversions.
class MaterialXElements
{
public:
    using Values = std::map<std::string, MaterialXValue>;

    /// Creates a unique name for an element, an input or an output, replacing characters that
    /// MaterialX does not allow.
    std::string UniqueName(const std::string& wanted);

    /// Adds a node to the graph; the reference remains valid.
    MaterialXElement& Add(const std::string& category, const std::string& name,
                          const std::string& type);

    /// Adds a standard node with the given inputs, each converted to the type that the node
    /// expects.
    /// @param type the type of the node if known; otherwise it is derived from the inputs
    MaterialXValue Call(const InterchangeNode& node, const InterchangeAlternative& alternative,
                        const Values& inputs, const std::string& name, std::string type = {});

    /// Evaluates a formula of standard nodes.
    /// @param name the name of the node with the result; names of the steps are derived from it
    MaterialXValue Evaluate(const Formula& formula, Values known, const std::string& name);

    /// Converts a value to another type; a single number is broadcast to all components.
    MaterialXValue Convert(const MaterialXValue& value, const std::string& type);

    /// Adds an input with a value of the same type to an element.
    static void Feed(MaterialXElement& element, const std::string& input,
                     const MaterialXValue& value);

    std::deque<MaterialXElement> Graph; ///< nodes of the node graph
    std::vector<MaterialXInput> GraphInputs;
    std::vector<MaterialXInput> GraphOutputs;

private:
    MaterialXValue EvaluateExpression(const Expression& expression, const Values& known,
                                      const std::string& name);

    std::unordered_map<std::string, int> _names; ///< used names, each with the last number
                                                 ///< appended to it
    std::map<std::string, MaterialXValue> _converted;
};

/// Returns the MaterialX type for a number of components; isColour selects "color3" instead of
/// "vector3" if both exist.
std::string TypeOfWidth(int width, bool isColour);

} // namespace Mox::Host
