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

MaterialDocument DocumentMaker::Make()
{
    MaterialDocument document;
    document.Comments.Document = {Comments(), Comments()};
    document.Comments.Nodes = {Comments(), Comments()};
    document.Comments.Edges = {Comments(), Comments()};
    document.Comments.Bindings = {Comments(), Comments()};
    if (Below(2) == 0) {
        document.Description = {{"desc", Text()}, {"name", Text()}, {"visibleinmayaui", "No"}};
        document.Comments.Description = Comments();
    }
    if (Below(2) == 0) {
        document.RenderState = {{"zTestFunc", "lessOrEqual"}, {"alphaRef", "0.25"}};
        document.Comments.RenderState = Comments();
    }
    for (std::size_t i = Below(5); i > 0; --i)
        document.Nodes.push_back(MakeNode(std::to_string(i)));
    for (std::size_t i = Below(5); i > 0; --i)
        document.Edges.push_back({Text(), Text(), Text(), Text(), 0, Comments()});
    for (std::size_t i = Below(4); i > 0; --i)
        document.Bindings.push_back(MakeBinding(std::to_string(i)));
    return document;
}

std::size_t DocumentMaker::Below(std::size_t end)
{
    return std::uniform_int_distribution(std::size_t(0), end - 1)(_random);
}

DocumentNode DocumentMaker::MakeNode(const std::string& id)
{
    DocumentNode node;
    node.Id = id + Text();
    node.Type = Text();
    node.Version = static_cast<std::int32_t>(_random());
    for (std::size_t i = Below(4); i > 0; --i)
        node.Properties.push_back(MakeProperty());
    node.Comments = Comments();
    node.LastComments = Comments();
    return node;
}

DocumentProperty DocumentMaker::MakeProperty()
{
    static const DocumentProperty samples[] = {
        {"", GuiPropertyKind::Bool, "true", 0, {}},
        {"", GuiPropertyKind::Integer, "-2147483648", 0, {}},
        {"", GuiPropertyKind::Float, "-1.5e-07", 0, {}},
        {"", GuiPropertyKind::Float, "-nan", 0, {}},
        {"", GuiPropertyKind::Colour, "1 .5 inf", 0, {}},
    };
    DocumentProperty property = {Text(), GuiPropertyKind::String, Text(), 0, {}};
    if (const std::size_t i = Below(2 * std::size(samples)); i < std::size(samples))
        property = samples[i];
    property.Comments = Comments();
    return property;
}

DocumentBinding DocumentMaker::MakeBinding(const std::string& tag)
{
    DocumentBinding samples[] = {
        {"float", tag, {{"default", "1, -0.5"}, {"min", "0"}, {"gui", "slider"}}, 0, {}},
        {"texture", tag, {{"srgb", "Yes"}, {"default", Text()}, {"desc", Text()}}, 0, {}},
        {"uv", tag, {{"default", Text()}, {"basic_colour", "No"}}, 0, {}},
        {"tangent", tag, {{"stream_type", "half"}}, 0, {}},
    };
    DocumentBinding binding = samples[Below(std::size(samples))];
    binding.Comments = Comments();
    return binding;
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
