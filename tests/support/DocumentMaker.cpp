#include "tests/support/DocumentMaker.h"

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

DocumentMaker::DocumentMaker(Random& random)
    : _random(random), _everything(ReadMaterialDocument(MOX_TEST_DATA "/document/everything.xml"))
{}

MaterialDocument DocumentMaker::Make()
{
    MaterialDocument document = _everything;
    MaterialComments& comments = document.Comments;
    for (auto* part : {&comments.Document, &comments.Nodes, &comments.Edges, &comments.Bindings,
                       &comments.Annotations})
        *part = {Comments(), Comments()};
    Thin(document.Nodes);
    Thin(document.Edges);
    Thin(document.Bindings);
    Thin(document.Annotations);
    if (_random.Below(2) == 0)
        document.Description.clear();
    comments.Description = document.Description.empty() ? DocumentComments() : Comments();
    for (DocumentValue& value : document.Description)
        value.Value = value.Name == "visibleinmayaui" ? "No" : Text();
    for (DocumentNode& node : document.Nodes) {
        Thin(node.Properties);
        node.Id += Text();
        node.Type = Text();
        node.Version = static_cast<std::int32_t>(_random.Below(1ull << 32));
        node.Comments = Comments();
        node.LastComments = Comments();
        for (DocumentProperty& property : node.Properties) {
            property.Name = Text();
            property.Comments = Comments();
            if (property.Kind == GuiPropertyKind::String)
                property.Value = Text();
        }
    }
    for (DocumentEdge& edge : document.Edges)
        edge = {Text(), Text(), Text(), Text(), 0, Comments(), std::move(edge.Points)};
    for (DocumentAnnotation& annotation : document.Annotations) {
        annotation.Id += Text();
        annotation.Text = Text();
        annotation.Comments = Comments();
    }
    for (DocumentBinding& binding : document.Bindings) {
        binding.Comments = Comments();
        for (DocumentValue& value : binding.Values) {
            if (value.Name == "desc" || value.Value.empty())
                value.Value = Text();
        }
    }
    return document;
}

DocumentComments DocumentMaker::Comments()
{
    DocumentComments comments;
    while (_random.Below(4) == 0)
        comments.push_back(Text());
    return comments;
}

std::string DocumentMaker::Text()
{
    static const char* const pieces[] = {
        "a",   "mix",   " ",    "\t", "\n",       "\r",           "\r\n",
        "&",   "<",     ">",    "\"", "'",        "--",           "-",
        "]]>", "&#10;", "<!--", "%",  "\xC3\xA9", "\xE2\x80\xA8", "\xF0\x9F\x98\x80",
    };
    std::string text;
    while (_random.Below(4) != 0)
        text += _random.Pick(pieces);
    return text;
}
