#pragma once

#include "mox/interchange/StandardNodes.h"

#include <list>
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
    std::string Output; ///< empty for the only one
    std::string Type = "float";
    bool IsPacked = false; ///< a normal from 0 to 1 that is meant from -1 to 1
};

/// An output of a node that is written.
MaterialXValue MakeOutput(const std::string& node, const std::string& type,
                          const std::string& output = {});

MaterialXValue MakeNumber(float number);

/// An input or output of an element.
struct MaterialXInput
{
    std::string Name;
    std::string Type;
    std::string Value;     ///< or one of the following
    std::string Node;      ///< of a connection
    std::string Output;    ///< likewise
    std::string Interface; ///< input of the node graph
    std::string ColourSpace;
    std::vector<std::pair<std::string, std::string>> More; ///< attributes
};

/// A node or a shader.
struct MaterialXElement
{
    std::string Category;
    std::string Name;
    std::string Type;
    std::vector<std::pair<std::string, std::string>> Attributes; ///< after the type
    std::vector<MaterialXInput> Inputs;
};

/// The parts of a MaterialX document that is being written, and what types need on the way.
class MaterialXElements
{
public:
    using Values = std::map<std::string, MaterialXValue>;

    /// A name for an element that no other one has: that of the node with what MaterialX does not
    /// allow replaced.
    std::string UniqueName(const std::string& wanted);

    /// The same for an input of the node graph, whose names are their own.
    std::string UniqueInput(const std::string& wanted);

    /// Adds a node to the graph; it stays where it is.
    MaterialXElement& Add(const std::string& category, const std::string& name,
                          const std::string& type);

    /// Adds a standard node with these inputs, each converted to what the node has.
    /// @param type of the node, if the caller knows it; else it follows from the inputs
    MaterialXValue Call(const InterchangeNode& node, const InterchangeAlternative& alternative,
                        const Values& inputs, const std::string& name, std::string type = {});

    /// Computes a formula of standard nodes.
    /// @param name of the node with the result; those of the steps are made of it
    MaterialXValue Evaluate(const Formula& formula, Values known, const std::string& name);

    /// The value with another type; a number becomes all components.
    MaterialXValue Convert(const MaterialXValue& value, const std::string& type);

    /// Gives an element an input with a value of its type.
    static void Feed(MaterialXElement& element, const std::string& input,
                     const MaterialXValue& value);

    std::list<MaterialXElement> Graph; ///< nodes of the node graph
    std::vector<MaterialXInput> GraphInputs;
    std::vector<MaterialXInput> GraphOutputs;

private:
    MaterialXValue EvaluateExpression(const Expression& expression, const Values& known,
                                      const std::string& name);

    std::unordered_map<std::string, int> _names;  ///< with the last number that completed one
    std::unordered_map<std::string, int> _inputs; ///< likewise
    std::map<std::string, MaterialXValue> _converted;
};

/// Numbers as MaterialX writes them.
std::string FormatNumbers(const std::vector<float>& numbers);

/// The type of a number of components, "color3" or "vector3" if there is a choice.
std::string TypeOfWidth(int width, bool isColour);

} // namespace Mox::Host
