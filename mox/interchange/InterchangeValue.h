#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// A value on the way from a MaterialX graph to a material: numbers, a text, or an output port.
struct InterchangeValue
{
    bool IsConnected() const { return !Node.empty(); }

    /// Whether all numbers are the same.
    bool IsUniform() const
    {
        for (const float number : Numbers) {
            if (number != Numbers.front())
                return false;
        }
        return true;
    }

    std::vector<float> Numbers; ///< empty for a text and a port
    std::string Text;           ///< such as a file or a space
    std::string ColourSpace;    ///< of a file
    std::string Parameter;      ///< name of the input of a node graph that holds the value
    std::string Lowest;         ///< of a parameter, if the file says so
    std::string Highest;        ///< likewise
    std::string Node;           ///< id of the node with the port
    std::string Port;
    int Count = 1;           ///< components of the port
    int Width = 1;           ///< components of the MaterialX value; a port of one stands for all
    std::string Type;        ///< of MaterialX, as far as it is known
    bool IsUnpacked = false; ///< a normal from -1 to 1 where MaterialX has it from 0 to 1
};

/// An output port of a node.
InterchangeValue MakePortValue(const std::string& node, const std::string& port, int count);

/// The number of components of a MaterialX type; 1 also for types without.
int WidthOfType(const std::string& type);

/// The numbers of a MaterialX value, "true" being 1; none if it has other text or one is infinite.
std::vector<float> ParseNumbers(const std::string& text);

/// The same of a property, whose colours have spaces between their numbers.
std::vector<float> ParsePropertyNumbers(std::string text);

/// Whether a value is not connected and equals a text, as numbers if both are numbers. One number
/// stands for all components.
bool EqualsText(const InterchangeValue& value, const std::string& text);

/// A number as documents hold it, to the last bit.
std::string FormatNumber(float number);

/// A name that is not taken: itself, or with a number.
/// @param taken names, with the last number that completed each; it takes the new one
std::string MakeUnique(std::unordered_map<std::string, int>& taken, const std::string& name);

} // namespace Mox::Host
