#pragma once

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace Mox::Bench {

/// A property as a program's text has it.
struct PlainRow
{
    const char* Name;
    const char* Help;
    bool Editable;
    bool Visible;
    int Style;
    int Kind;
    const char* Text;
    int Integer;
    const float* Floats;
    std::vector<const char*> Choices;
};

/// The floor: what creating and freeing a maths node costs if one writes it down without a thought
/// about speed. It has the fields of a property and of a node, and nothing behind them.
struct PlainProperty
{
    std::string Name;
    std::string Label;
    std::string Help;
    bool Editable = true;
    bool Visible = true;
    int Style = 0;
    int Kind = 0;
    std::string Text;
    int Integer = 0;
    float Floats[3] = {};
    boost::shared_ptr<void> Node;
    std::vector<std::string> Choices;
};

struct PlainBag
{
    int Version = 0;
    std::vector<boost::shared_ptr<PlainProperty>> Properties;
    std::map<std::string, boost::shared_ptr<PlainProperty>> Index;
};

struct PlainNode
{
    boost::shared_ptr<PlainBag> Properties;
};

/// A node with a property for each row.
boost::shared_ptr<PlainNode> CreatePlainNode(const std::vector<PlainRow>& rows);

} // namespace Mox::Bench
