#include "mox/editor/EditorJob.h"

#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/document/MaterialDiff.h"
#include "mox/editor/EditedDocument.h"
#include "mox/editor/ErrorJson.h"
#include "mox/editor/StateJson.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/ContentHash.h"
#include "mox/host/Excerpt.h"
#include "mox/json/RecordJson.h"
#include "mox/program/MaterialProgram.h"

#include <exception>
#include <new>
#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

/// Makes a program representable in JSON: source code is kept as it is; a SPIR-V module, which
/// starts with control characters, becomes hexadecimal digits.
Json DescribeProgram(const std::string& bytes)
{
    return IsXmlText(bytes) ? bytes : HexDigits(bytes);
}

} // namespace

EditorReply EditorJob::Run() const
{
    EditorReply answer;
    try {
        Json reply = {{"id", _id}, {"revision", _snapshot.Revision}};
        if (!IsOutOfDate())
            _work(_snapshot, reply, answer);
        answer.Text = FormatJson(reply);
    } catch (const HostError& error) {
        answer = Refuse(error);
    } catch (const std::bad_alloc&) {
        answer = Refuse(HostError({}, "there is not enough memory"));
    } catch (const std::exception& error) { // a bug in this program or in a plug-in
        answer = Refuse(HostError({}, Compose("internal error: ", error.what())));
    } catch (...) {
        answer = Refuse(HostError({}, "internal error"));
    }
    if (IsOutOfDate())
        return {FormatJson({{"id", _id}, {"revision", _snapshot.Revision}, {"outOfDate", true}}),
                {}};
    return answer;
}

EditorReply EditorJob::Refuse(const HostError& reason) const
{
    return {FormatJson(
                {{"id", _id}, {"revision", _snapshot.Revision}, {"error", DescribeError(reason)}}),
            {}};
}

EditorJob::Work FindProblems(const EditorServices& services, const std::string& file)
{
    return [services, file](const DocumentSnapshot& snapshot, Json& reply, EditorReply&) {
        ProblemList problems;
        const MaterialGraph graph = OpenMaterial(snapshot.Document(), *services.Plugins, problems);
        if (snapshot.IsOutOfDate())
            return;
        CheckMaterial(graph, file, *services.Environment, services.Proof.get(), problems);
        reply["problems"] = ToJson(problems.Problems());
    };
}

EditorJob::Work CompilePrograms(const EditorServices& services, const std::string& file,
                                const std::set<std::string>& targets)
{
    return [services, file, targets](const DocumentSnapshot& snapshot, Json& reply, EditorReply&) {
        ProblemList problems;
        const MaterialGraph graph = OpenMaterial(snapshot.Document(), *services.Plugins, problems);
        const CgProgram program = BuildMaterialProgram(graph, *services.Environment, {}, problems);
        Json programs = Json::object();
        Json lineNodes = Json::object();
        if (!problems.HasErrors()) {
            for (const std::string& target : targets) {
                if (snapshot.IsOutOfDate())
                    return;
                const ProgramFormat& format = *services.Formats.at(target);
                const std::vector<ProgramFile> files =
                    WriteProgram(format, program, graph, file, problems);
                for (std::size_t i = 0; i < files.size(); ++i) {
                    const std::string& ending = format.Endings()[i];
                    programs[target][ending] = DescribeProgram(files[i].Text);
                    if (!files[i].CgLines.empty())
                        lineNodes[target][ending] = FindNodesOfLines(files[i], program);
                }
            }
        }
        if (!problems.HasErrors()) {
            reply["programs"] = std::move(programs);
            reply["bindings"] = FormatBindings(CreateBindings(graph));
            reply["lineNodes"] = std::move(lineNodes);
        }
        reply["problems"] = ToJson(problems.Problems());
    };
}

EditorJob::Work DrawPicture(const EditorServices& services, const PictureRequest& request)
{
    return [services, request](const DocumentSnapshot& snapshot, Json& reply, EditorReply& answer) {
        ProblemList problems;
        Picture picture = services.Pictures->Draw(snapshot.Document(), request, problems);
        reply["picture"] = {{"width", picture.Width}, {"height", picture.Height}};
        reply["problems"] = ToJson(problems.Problems());
        answer.Bytes = std::move(picture.Pixels);
    };
}

EditorJob::Work LoadTexture(const EditorServices& services, const std::string& tag,
                            const std::string& sampler)
{
    return [services, tag, sampler](const DocumentSnapshot& snapshot, Json& reply,
                                    EditorReply& answer) {
        ProblemList problems;
        LoadedTexture texture =
            services.Pictures->Load(snapshot.Document(), tag, sampler, problems);
        Json levels = Json::array();
        for (const LoadedTexture::Level& level : texture.Levels) {
            levels.push_back({{"width", level.Width}, {"height", level.Height}});
            if (level.Layers > 1)
                levels.back()["layers"] = level.Layers;
        }
        reply["texture"] = {{"format", texture.Format}, {"levels", std::move(levels)}};
        reply["problems"] = ToJson(problems.Problems());
        answer.Bytes = std::move(texture.Bytes);
    };
}

EditorJob::Work LoadMesh(const EditorServices& services, const std::string& name,
                         std::shared_ptr<const std::string> bytes)
{
    return [services, name, bytes = std::move(bytes)](const DocumentSnapshot&, Json& reply,
                                                      EditorReply& answer) {
        LoadedMesh mesh = name.empty() ? *services.Mesh : services.Pictures->ReadMesh(name, *bytes);
        Json streams = Json::array();
        for (const LoadedMesh::Stream& stream : mesh.Streams)
            streams.push_back({{"stream", stream.Name}, {"components", stream.Components}});
        reply["mesh"] = {{"name", mesh.Name},
                         {"vertices", mesh.VertexCount},
                         {"indices", mesh.IndexCount},
                         {"streams", std::move(streams)},
                         {"viewFrom", mesh.ViewFrom}};
        answer.Bytes = std::move(mesh.Bytes);
    };
}

EditorJob::Work CompareWithText(const EditorServices& services, const std::string& file,
                                const std::string& text)
{
    return [services, file, text](const DocumentSnapshot& snapshot, Json& reply, EditorReply&) {
        const MaterialDocument before = ParseEdited(file, text);
        Json list = Json::array();
        std::set<std::string> removed;
        for (const MaterialDifference& difference :
             FindDifferences(before, snapshot.Document(), *services.Plugins)) {
            list.push_back(ToJson(difference));
            if (difference.Kind == DifferenceKind::Removed)
                removed.insert(difference.Node);
        }
        ProblemList problems; // problems of the file, not of the document
        const MaterialGraph graph = OpenMaterial(before, *services.Plugins, problems);
        reply["comparison"] = {{"differences", std::move(list)},
                               {"removedNodes", DescribeNodes(graph, removed)}};
    };
}

} // namespace Mox::Host
