#include "PlainNode.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Bench {

boost::shared_ptr<PlainNode> CreatePlainNode(const std::vector<PlainProperty>& rows)
{
    auto node = boost::make_shared<PlainNode>();
    node->Properties = boost::make_shared<PlainBag>();
    for (const PlainProperty& row : rows) {
        auto property = boost::make_shared<PlainProperty>();
        property->Name = row.Name;
        property->Help = row.Help;
        property->Editable = row.Editable;
        property->Visible = row.Visible;
        property->Style = row.Style;
        property->Kind = row.Kind;
        property->Text = row.Text;
        property->Integer = row.Integer;
        for (int i = 0; i < 3; ++i)
            property->Floats[i] = row.Floats[i];
        for (const std::string& choice : row.Choices)
            property->Choices.push_back(choice);
        node->Properties->Properties.push_back(property);
        node->Properties->Index[property->Name] = property;
    }
    return node;
}

} // namespace Mox::Bench
