#pragma once

#include <string>
#include <vector>

namespace Mox::Host {

/// An intermediate value in the conversion from MaterialX to a material: numbers, a string, or an
/// output port.
struct InterchangeValue
{
    bool IsConnected() const { return !Node.empty(); }

    /// Returns whether all numbers are equal.
    bool IsUniform() const
    {
        for (const float number : Numbers) {
            if (number != Numbers.front())
                return false;
        }
        return true;
    }

    std::vector<float> Numbers; ///< empty for a string or a port
    std::string Text;           ///< such as a file name or the name of a coordinate space
    std::string ColourSpace;    ///< of a texture file
    std::string Parameter;      ///< name of the node graph input that holds the value
    std::string Lowest;         ///< minimum of the parameter, if the file specifies one
    std::string Highest;        ///< maximum of the parameter, if the file specifies one
    std::string Node;           ///< id of the node that has the port
    std::string Port;
    int Count = 1;           ///< number of components of the port
    int Width = 1;           ///< number of components of the MaterialX value; a single-component
                             ///< port is broadcast
    std::string Type;        ///< MaterialX type, if known
    bool IsUnpacked = false; ///< a normal in the range -1 to 1 where MaterialX has 0 to 1
};

/// Creates a value that refers to an output port of a node.
InterchangeValue MakePortValue(const std::string& node, const std::string& port, int count);

/// Returns the number of components of a MaterialX type; 1 for types without components.
int WidthOfType(const std::string& type);

/// Parses the numbers of a MaterialX value, with "true" as 1; returns an empty list if the string
/// contains anything else or a number is infinite.
std::vector<float> ParseNumbers(const std::string& text);

/// Parses the numbers of a property; the components of colours are separated by spaces.
std::vector<float> ParsePropertyNumbers(std::string text);

/// Returns whether a value is unconnected and equals a string, compared numerically if both are
/// numbers. A single number represents all components.
bool EqualsText(const InterchangeValue& value, const std::string& text);

/// Formats numbers so that ParseNumbers restores them exactly.
std::string FormatNumbers(const std::vector<float>& numbers);

} // namespace Mox::Host
