#include "tests/support/DocumentMaker.h"

#include <iostream>
#include <iterator>

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

std::uint32_t DrawSeed()
{
    const std::uint32_t seed = std::random_device()();
    std::cout << "seed " << seed << "\n";
    return seed;
}

DocumentMaker::DocumentMaker(std::uint32_t seed)
    : _random(seed), _everything(ReadMaterialDocument(MOX_TEST_DATA "/document/everything.xml"))
{}

MaterialDocument DocumentMaker::Make()
{
    MaterialDocument document = _everything;
    MaterialComments& comments = document.Comments;
    for (auto* part : {&comments.Document, &comments.Nodes, &comments.Edges, &comments.Bindings})
        *part = {Comments(), Comments()};
    Thin(document.Nodes);
    Thin(document.Edges);
    Thin(document.Bindings);
    if (Below(2) == 0)
        document.Description.clear();
    comments.Description = document.Description.empty() ? DocumentComments() : Comments();
    for (DocumentValue& value : document.Description)
        value.Value = value.Name == "visibleinmayaui" ? "No" : Text();
    for (DocumentNode& node : document.Nodes) {
        Thin(node.Properties);
        node.Id += Text();
        node.Type = Text();
        node.Version = static_cast<std::int32_t>(_random());
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
        edge = {Text(), Text(), Text(), Text(), 0, Comments()};
    for (DocumentBinding& binding : document.Bindings) {
        binding.Comments = Comments();
        for (DocumentValue& value : binding.Values) {
            if (value.Name == "desc" || value.Value.empty())
                value.Value = Text();
        }
    }
    return document;
}

std::size_t DocumentMaker::Below(std::size_t end)
{
    return std::uniform_int_distribution(std::size_t(0), end - 1)(_random);
}

DocumentComments DocumentMaker::Comments()
{
    DocumentComments comments;
    while (Below(4) == 0)
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
    while (Below(4) != 0)
        text += pieces[Below(std::size(pieces))];
    return text;
}
