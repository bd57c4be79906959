#include "tests/support/TestEditor.h"

#include "mox/program/ProgramFormat.h"
#include "tests/support/BuildTree.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <stdexcept>
#include <thread>

using namespace Mox::Host;

namespace {

class OneColourPainter : public Painter
{
public:
    Picture Draw(const MaterialDocument&, const PictureRequest& request, ProblemList&) override
    {
        if (request.Mesh != "sphere")
            throw HostError({}, "there is no such mesh");
        if (request.Node == "slow")
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        if (request.Node == "faulty")
            throw std::logic_error("a fault");
        return {request.Width, request.Height,
                std::vector<std::uint8_t>(std::size_t(4) * request.Width * request.Height, 128)};
    }

    LoadedTexture Load(const MaterialDocument&, const std::string& tag, const std::string& sampler,
                       ProblemList&) override
    {
        if (tag != "grey" || sampler != "sampler2D")
            throw HostError({}, "there is no such texture");
        return {"unorm8", {{2, 1, 1}, {1, 1, 1}}, std::vector<std::uint8_t>(12, 128)};
    }

    LoadedMesh ReadMesh(const std::string& name, std::string_view bytes) override
    {
        if (bytes != "triangle")
            throw HostError({}, "this is not a triangle");
        return {name, 3, 3, {{"position", 3}}, {0, 0, 1}, std::vector<std::uint8_t>(48, 7)};
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
    const TemporaryFolder copy; // because the lock on the document itself is taken
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
    for (auto* records : {&_nodes, &_edges, &_annotations})
        records->clear();
    TakeRecords(state);
    TakeOthers(state);
}

void EditorMirror::TakeChanges(const Json& message)
{
    if (!message.contains("changes"))
        return;
    const Json& changes = message.at("changes");
    TakeRecords(changes);
    if (changes.contains("bindings"))
        TakeOthers(changes);
}

std::string EditorMirror::Text() const
{
    std::string text;
    for (const auto* records : {&_nodes, &_edges, &_annotations}) {
        for (const auto& [number, record] : *records)
            text += FormatJson(record) + "\n";
    }
    return text + FormatJson(_others) + "\n";
}

void EditorMirror::TakeRecords(const Json& part)
{
    const auto take = [&](const char* name, const char* goneName, auto& records) {
        for (const Json& record : part.value(name, Json::array()))
            records[record.at("number").get<std::size_t>()] = record;
        for (const Json& number : part.value(goneName, Json::array()))
            records.erase(number.get<std::size_t>());
    };
    take("nodes", "goneNodes", _nodes);
    take("edges", "goneEdges", _edges);
    take("annotations", "goneAnnotations", _annotations);
}

void EditorMirror::TakeOthers(const Json& part)
{
    for (const char* name : {"description", "renderState", "bindings"})
        _others[name] = part.at(name);
}
