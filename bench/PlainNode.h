#pragma once

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace Mox::Bench {

/// A property as it would be written in source code.
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

/// The baseline: the cost of creating and freeing a maths node in code written without regard to
/// speed. It has the fields of a property and of a node, without any behaviour.
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

/// Creates a node with one property per row.
boost::shared_ptr<PlainNode> CreatePlainNode(const std::vector<PlainRow>& rows);

} // namespace Mox::Bench
