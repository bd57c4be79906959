#include "tests/support/TestEditor.h"

#include "mox/program/CgFormat.h"
#include "tests/support/BuildTree.h"
#include "tests/support/TemporaryFolder.h"

using namespace Mox::Host;

namespace {

class OneColourPainter : public Painter
{
public:
    Picture Draw(const MaterialDocument&, const PictureRequest& request, ProblemList&) override
    {
        if (request.Mesh != "sphere")
            throw HostError({}, "there is no such mesh");
        return {request.Width, request.Height,
                std::vector<std::uint8_t>(std::size_t(4) * request.Width * request.Height, 128)};
    }

    LoadedTexture Load(const MaterialDocument&, const std::string& tag, ProblemList&) override
    {
        if (tag != "grey")
            throw HostError({}, "there is no such texture");
        return {"unorm8", {{2, 1}, {1, 1}}, std::vector<std::uint8_t>(12, 128)};
    }
};

} // namespace

const EditorServices& TestEditorServices()
{
    static const EditorServices services = [] {
        EditorServices made;
        made.Plugins = &TestPlugins();
        made.Environment = &TestEnvironment();
        made.Formats.emplace("cg", std::make_shared<CgFormat>());
        made.Pictures = std::make_shared<OneColourPainter>();
        return made;
    }();
    return services;
}

std::string TextAfterKill(const std::filesystem::path& file)
{
    const TemporaryFolder copy; // as the right to edit the document itself is taken
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path()))
        std::filesystem::copy(entry, copy.Path() / entry.path().filename());
    EditorSession restored(copy.Path() / file.filename(), TestEditorServices());
    if (restored.Document().Waiting())
        restored.Handle(0, R"({"do": "restore"})");
    return FormatMaterialDocument(restored.Document().Graph().Document());
}

void EditorMirror::TakeState(const Json& reply)
{
    const Json& state = reply.at("state");
    _nodes.clear();
    _edges.clear();
    for (const Json& node : state.at("nodes"))
        _nodes[node.at("number").get<std::size_t>()] = node;
    for (const Json& edge : state.at("edges"))
        _edges[edge.at("number").get<std::size_t>()] = edge;
    TakeOthers(state);
}

void EditorMirror::TakeChanges(const Json& message)
{
    if (!message.contains("changes"))
        return;
    const Json& changes = message.at("changes");
    for (const Json& node : changes.at("nodes"))
        _nodes[node.at("number").get<std::size_t>()] = node;
    for (const Json& edge : changes.at("edges"))
        _edges[edge.at("number").get<std::size_t>()] = edge;
    for (const Json& number : changes.at("goneNodes"))
        _nodes.erase(number.get<std::size_t>());
    for (const Json& number : changes.at("goneEdges"))
        _edges.erase(number.get<std::size_t>());
    if (changes.contains("bindings"))
        TakeOthers(changes);
}

std::string EditorMirror::Text() const
{
    std::string text;
    for (const auto& [number, node] : _nodes)
        text += FormatJson(node) + "\n";
    for (const auto& [number, edge] : _edges)
        text += FormatJson(edge) + "\n";
    return text + FormatJson(_others) + "\n";
}

void EditorMirror::TakeOthers(const Json& part)
{
    for (const char* name : {"description", "renderState", "bindings"})
        _others[name] = part.at(name);
}
