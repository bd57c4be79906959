#include "mox/editor/EditorJob.h"

#include "mox/check/MaterialCheck.h"
#include "mox/editor/ErrorJson.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/HexDigits.h"
#include "mox/json/RecordJson.h"
#include "mox/program/MaterialProgram.h"
#include "mox/xml/XmlWriter.h"

#include <utility>

namespace Mox::Host {

namespace {

MaterialGraph Open(const MaterialDocument& document, const PluginSet& plugins,
                   ProblemList& problems)
{
    MaterialGraph graph = LoadMaterial(document, plugins, problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    return graph;
}

/// A program in a form that JSON can hold: source as it is, and a SPIR-V module, which begins with
/// control characters, as hexadecimal digits.
Json DescribeProgram(const std::string& bytes)
{
    return IsXmlText(bytes) ? bytes : HexDigits(bytes);
}

/// The id of the node that each line of a program comes from.
Json DescribeLines(const StageProgram& program)
{
    Json lines = Json::array();
    for (const LineOrigin& line : program.Lines)
        lines.push_back(line.Node);
    return lines;
}

} // namespace

EditorReply EditorJob::Run() const
{
    EditorReply answer;
    Json reply = {{"id", _id}, {"revision", _snapshot.Revision}};
    try {
        if (!IsOutOfDate())
            _work(_snapshot, reply, answer);
    } catch (const HostError& error) {
        reply["error"] = DescribeError(error);
    }
    if (IsOutOfDate()) {
        reply = {{"id", _id}, {"revision", _snapshot.Revision}, {"outOfDate", true}};
        answer.Bytes.clear();
    }
    answer.Text = FormatJson(reply);
    return answer;
}

EditorJob::Work FindProblems(const EditorServices& services, const std::string& file)
{
    return [services, file](const DocumentSnapshot& snapshot, Json& reply, EditorReply&) {
        ProblemList problems;
        const MaterialGraph graph = Open(snapshot.Document, *services.Plugins, problems);
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
        const MaterialGraph graph = Open(snapshot.Document, *services.Plugins, problems);
        const CgProgram program = BuildMaterialProgram(graph, *services.Environment, {}, problems);
        Json programs = Json::object();
        if (!problems.HasErrors()) {
            for (const std::string& target : targets) {
                if (snapshot.IsOutOfDate())
                    return;
                const ProgramFormat& format = *services.Formats.at(target);
                const std::vector<std::string> texts =
                    WriteProgram(format, program, graph, file, problems);
                Json files = Json::object();
                for (std::size_t i = 0; i < texts.size(); ++i)
                    files[format.Endings()[i]] = DescribeProgram(texts[i]);
                programs[target] = std::move(files);
            }
        }
        if (!problems.HasErrors()) {
            reply["programs"] = std::move(programs);
            reply["bindings"] = FormatBindings(CreateBindings(graph));
            reply["lineNodes"] = {{"vertex", DescribeLines(program.Vertex)},
                                  {"fragment", DescribeLines(program.Fragment)}};
        }
        reply["problems"] = ToJson(problems.Problems());
    };
}

EditorJob::Work DrawPicture(const EditorServices& services, const PictureRequest& request)
{
    return [services, request](const DocumentSnapshot& snapshot, Json& reply, EditorReply& answer) {
        ProblemList problems;
        Picture picture = services.Pictures->Draw(snapshot.Document, request, problems);
        reply["picture"] = {{"width", picture.Width}, {"height", picture.Height}};
        reply["problems"] = ToJson(problems.Problems());
        answer.Bytes = std::move(picture.Pixels);
    };
}

EditorJob::Work LoadTexture(const EditorServices& services, const std::string& tag)
{
    return [services, tag](const DocumentSnapshot& snapshot, Json& reply, EditorReply& answer) {
        ProblemList problems;
        LoadedTexture texture = services.Pictures->Load(snapshot.Document, tag, problems);
        Json levels = Json::array();
        for (const auto& [width, height] : texture.Sides)
            levels.push_back({{"width", width}, {"height", height}});
        reply["texture"] = {{"format", texture.Format}, {"levels", std::move(levels)}};
        reply["problems"] = ToJson(problems.Problems());
        answer.Bytes = std::move(texture.Bytes);
    };
}

} // namespace Mox::Host
