#include "PlainNode.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Bench {

namespace {

/// Takes std::string parameters, so that literals are converted at each call, as in ordinary code.
void AddProperty(PlainNode& node, const std::string& name, const std::string& help, bool editable,
                 bool visible, int style, int kind, const std::string& text, int integer,
                 const float* floats, const std::vector<std::string>& choices)
{
    auto property = boost::make_shared<PlainProperty>();
    property->Name = name;
    property->Help = help;
    property->Editable = editable;
    property->Visible = visible;
    property->Style = style;
    property->Kind = kind;
    property->Text = text;
    property->Integer = integer;
    for (int i = 0; i < 3; ++i)
        property->Floats[i] = floats[i];
    for (const std::string& choice : choices)
        property->Choices.push_back(choice);
    node.Properties->Properties.push_back(property);
    node.Properties->Index[name] = property;
}

} // namespace

boost::shared_ptr<PlainNode> CreatePlainNode(const std::vector<PlainRow>& rows)
{
    auto node = boost::make_shared<PlainNode>();
    node->Properties = boost::make_shared<PlainBag>();
    for (const PlainRow& row : rows) {
        AddProperty(*node, row.Name, row.Help, row.Editable, row.Visible, row.Style, row.Kind,
                    row.Text, row.Integer, row.Floats, {row.Choices.begin(), row.Choices.end()});
    }
    return node;
}

} // namespace Mox::Bench
