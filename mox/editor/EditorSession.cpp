#include "mox/editor/EditorSession.h"

#include "mox/Text.h"
#include "mox/document/Catalogue.h"
#include "mox/document/MaterialRules.h"
#include "mox/editor/Clipboard.h"
#include "mox/editor/ErrorJson.h"
#include "mox/editor/StateJson.h"
#include "mox/editor/TextureFolder.h"
#include "mox/host/Excerpt.h"
#include "mox/json/CatalogueJson.h"
#include "mox/json/JsonCursor.h"
#include "mox/json/RecordJson.h"
#include "mox/json/StepJson.h"
#include "mox/layout/MaterialLayout.h"

#include <algorithm>
#include <set>
#include <utility>
#include <variant>

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr JsonLimits messageLimits = {
    .Bytes = 8U << 20U, .Depth = 16, .Values = 500'000, .Members = 64};

std::vector<std::string> ReadTexts(const JsonCursor& array)
{
    std::vector<std::string> texts;
    for (const JsonCursor& item : array.Items())
        texts.push_back(item.Text());
    return texts;
}

/// Reads the "ids" and "annotations" members of a message; either may be missing.
GraphParts ReadParts(const JsonCursor& message)
{
    GraphParts parts;
    if (const auto ids = message.Find("ids"))
        parts.Nodes = ReadTexts(*ids);
    if (const auto ids = message.Find("annotations"))
        parts.Annotations = ReadTexts(*ids);
    return parts;
}

GraphParts AddedParts(const GraphChange& change)
{
    GraphParts added;
    for (const GraphStep& step : change.Steps) {
        if (const auto* node = std::get_if<AddNode>(&step))
            added.Nodes.push_back(node->Node.Id);
        else if (const auto* annotation = std::get_if<AddAnnotation>(&step))
            added.Annotations.push_back(annotation->Annotation.Id);
    }
    return added;
}

std::uint32_t ReadSide(const JsonCursor& message, std::string_view name)
{
    constexpr std::uint64_t largest = 4096;
    const auto side = message.Find(name);
    if (!side)
        return PictureRequest().Width;
    const std::uint64_t pixels = side->Count();
    if (pixels == 0 || pixels > largest)
        side->Refuse(Compose("expected 1 to ", largest, " pixels"));
    return static_cast<std::uint32_t>(pixels);
}

PictureRequest ReadPictureRequest(const JsonCursor& message)
{
    message.AllowOnly({"id", "do", "node", "mesh", "width", "height", "frame", "values"});
    PictureRequest request;
    request.Node = message.TextOf("node");
    request.Mesh = message.TextOf("mesh", request.Mesh);
    request.Width = ReadSide(message, "width");
    request.Height = ReadSide(message, "height");
    if (const auto frame = message.Find("frame"))
        request.Frame = frame->Number();
    if (const auto values = message.Find("values")) {
        for (const auto& [name, value] : values->Members())
            request.Values.emplace(name, value.Text());
    }
    return request;
}

/// Describes the attributes that an element may have, with their values where these are enumerated.
Json DescribeAttributes(const ElementRule& rule)
{
    Json list = Json::array();
    for (const AttributeRule& attribute : rule.Attributes) {
        Json json = {{"name", attribute.Name}};
        if (!attribute.Value.Words.empty())
            json["choices"] = attribute.Value.Words;
        list.push_back(std::move(json));
    }
    return list;
}

} // namespace

struct EditorSession::Request
{
    std::size_t Client;
    Json Id;
    JsonCursor Message;
    std::string_view Bytes; ///< binary data sent with the message
};

struct EditorSession::Command
{
    std::string_view Word;
    void (EditorSession::*Do)(const Request&, EditorAnswer&, Json&);
};

EditorSession::EditorSession(const std::filesystem::path& file, EditorServices services)
    : _services(std::move(services)), _document(file, *_services.Plugins),
      _revision(std::make_shared<std::atomic<std::uint64_t>>(_document.Revision())),
      _seenFile(_document.ReadText())
{}

EditorAnswer EditorSession::Handle(std::size_t client, std::string_view message,
                                   std::string_view bytes)
{
    EditorAnswer answer;
    Json reply = {{"id", nullptr}};
    try {
        const Json json = ParseJson(message, "message", messageLimits);
        const JsonCursor cursor(json, "message");
        const auto id = cursor.Find("id");
        if (id)
            reply["id"] = id->Count();
        Dispatch({client, reply["id"], cursor, bytes}, answer, reply);
    } catch (const HostError& error) {
        reply["error"] = DescribeError(error);
    }
    *_revision = _document.Revision();
    if (answer.Job)
        return answer;
    answer.Reply = FormatAnswer(std::move(reply));
    return answer;
}

std::string EditorSession::LookAtFile()
{
    Json notice = {{"event", "file"}};
    std::string seen;
    try {
        seen = _document.ReadText();
        if (seen == _seenFile)
            return {};
        const bool isChanged = _document.HasFileChanged();
        notice["changed"] = isChanged;
        if (isChanged)
            notice["differences"] = _document.CompareWithFile();
    } catch (const HostError& error) {
        notice["error"] = DescribeError(error);
        if (seen.empty())
            seen = error.what();
        if (seen == _seenFile)
            return {};
    }
    _seenFile = std::move(seen);
    return FormatAnswer(std::move(notice));
}

void EditorSession::Dispatch(const Request& request, EditorAnswer& answer, Json& reply)
{
    static constexpr Command commands[] = {
        {"apply", &EditorSession::Apply},        {"undo", &EditorSession::Undo},
        {"redo", &EditorSession::Redo},          {"layout", &EditorSession::LayOut},
        {"copy", &EditorSession::Copy},          {"paste", &EditorSession::Paste},
        {"state", &EditorSession::GetState},     {"catalogue", &EditorSession::GetCatalogue},
        {"save", &EditorSession::Save},          {"reload", &EditorSession::Reload},
        {"restore", &EditorSession::Restore},    {"discard", &EditorSession::Discard},
        {"problems", &EditorSession::Check},     {"compile", &EditorSession::Compile},
        {"picture", &EditorSession::Draw},       {"addTexture", &EditorSession::PutTexture},
        {"texture", &EditorSession::GetTexture}, {"text", &EditorSession::GetText},
        {"mesh", &EditorSession::GetMesh},       {"compare", &EditorSession::Compare},
    };
    const JsonCursor word = request.Message.Member("do");
    const std::string text = word.Text();
    const auto* command = std::find_if(std::begin(commands), std::end(commands),
                                       [&](const Command& known) { return known.Word == text; });
    if (command == std::end(commands))
        word.Refuse(Compose("unknown message ", Excerpt(text)));
    (this->*command->Do)(request, answer, reply);
}

/// Reports the changes to the client that made them and to all others.
void EditorSession::Publish(const ChangedRecords& records, EditorAnswer& answer, Json& reply)
{
    Json changes = DescribeChanges(_document.Graph(), records);
    if (!records.IsEmpty())
        answer.Notice = FormatAnswer({{"event", "changed"}, {"changes", changes}});
    reply["changes"] = std::move(changes);
}

/// Formats a reply or a notice with the members that each of them contains.
std::string EditorSession::FormatAnswer(Json json) const
{
    json["revision"] = _document.Revision();
    json["unsaved"] = _document.IsUnsaved();
    json["undo"] = _document.UndoTitle();
    json["redo"] = _document.RedoTitle();
    if (_document.Waiting())
        json["waiting"] = {{"changes", _document.Waiting()->Changes.size()}};
    if (!_document.JournalFailure().empty())
        json["waiting"] = {{"error", _document.JournalFailure()}};
    return FormatJson(json);
}

DocumentSnapshot EditorSession::TakeSnapshot()
{
    if (!_snapshot || _snapshot->Revision != _document.Revision()) {
        _snapshot.emplace(std::make_shared<const MaterialDocument>(_document.Graph().Document()),
                          _document.Revision(), _revision);
    }
    return *_snapshot;
}

void EditorSession::StartJob(const Request& request, EditorJob::Work work, EditorAnswer& answer)
{
    answer.Job.emplace(TakeSnapshot(), request.Id, std::move(work));
}

void EditorSession::RequirePainter(const Request& request) const
{
    if (!_services.Pictures)
        request.Message.Refuse("this server cannot render images");
}

void EditorSession::Apply(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do", "steps", "gesture"});
    std::string gesture = request.Message.TextOf("gesture");
    if (!gesture.empty())
        gesture = Compose(request.Client, " ", gesture); // different clients may choose the same
                                                         // name
    const GraphChange change = ReadSteps(request.Message.Member("steps"));
    Publish(_document.Apply(change, gesture), answer, reply);
}

void EditorSession::Undo(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    Publish(_document.Undo(), answer, reply);
}

void EditorSession::Redo(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    Publish(_document.Redo(), answer, reply);
}

void EditorSession::LayOut(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do", "ids", "annotations"});
    const GraphParts parts = ReadParts(request.Message);
    Publish(_document.Apply(LayOutMaterial(_document.Graph(), parts)), answer, reply);
}

void EditorSession::Copy(const Request& request, EditorAnswer&, Json& reply)
{
    request.Message.AllowOnly({"id", "do", "ids", "annotations"});
    reply["text"] = CopyAsText(_document.Graph(), ReadParts(request.Message), *_services.Plugins);
}

void EditorSession::Paste(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do", "text", "x", "y"});
    std::optional<LayoutPoint> corner;
    if (request.Message.Find("x"))
        corner = {request.Message.Member("x").Number(), request.Message.Member("y").Number()};
    const GraphChange change = PasteText(request.Message.Member("text").Text(), _document.Graph(),
                                         *_services.Plugins, corner);
    Publish(_document.Apply(change), answer, reply);
    const GraphParts added = AddedParts(change);
    reply["ids"] = added.Nodes;
    reply["annotations"] = added.Annotations;
}

void EditorSession::GetState(const Request& request, EditorAnswer&, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    reply["state"] = DescribeState(_document.Graph());
    reply["file"] = _document.File().filename().string();
    if (_services.Mesh)
        reply["ownMesh"] = _services.Mesh->Name;
}

void EditorSession::GetText(const Request& request, EditorAnswer&, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    reply["text"] = FormatMaterialDocument(_document.Graph().Document());
}

void EditorSession::GetCatalogue(const Request& request, EditorAnswer&, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    ProblemList problems;
    reply["types"] = CatalogueToJson(DescribeCatalogue(*_services.Plugins, {}, problems),
                                     NodeFiles(*_services.Plugins));
    reply["material"] = {{"description", DescribeAttributes(DescriptionRule)},
                         {"renderState", DescribeAttributes(RenderStateRule)}};
    Json targets = Json::array();
    for (const auto& [name, format] : _services.Formats)
        targets.push_back(name);
    reply["targets"] = std::move(targets);
    reply["problems"] = ToJson(problems.Problems());
}

void EditorSession::Save(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do", "force"});
    const auto force = request.Message.Find("force");
    _document.Save(force && force->Flag());
    _seenFile = _document.ReadText();
    answer.Notice = FormatAnswer({{"event", "saved"}});
    reply["saved"] = true;
}

/// Reports that the whole document was replaced.
void EditorSession::Replace(EditorAnswer& answer, Json& reply)
{
    answer.Notice = FormatAnswer({{"event", "replaced"}});
    reply["state"] = DescribeState(_document.Graph());
}

void EditorSession::Reload(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    _document.Reload();
    _seenFile = _document.ReadText();
    Replace(answer, reply);
}

void EditorSession::Restore(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    _document.Restore();
    Replace(answer, reply);
}

void EditorSession::Discard(const Request& request, EditorAnswer& answer, Json& reply)
{
    request.Message.AllowOnly({"id", "do"});
    _document.Discard();
    Replace(answer, reply);
}

void EditorSession::Check(const Request& request, EditorAnswer& answer, Json&)
{
    request.Message.AllowOnly({"id", "do"});
    StartJob(request, FindProblems(_services, _document.File().string()), answer);
}

void EditorSession::Compile(const Request& request, EditorAnswer& answer, Json&)
{
    request.Message.AllowOnly({"id", "do", "targets"});
    std::set<std::string> targets;
    for (const JsonCursor& target : request.Message.Member("targets").Items()) {
        const std::string name = target.Text();
        if (!_services.Formats.contains(name))
            target.Refuse("this target is not available");
        targets.insert(name);
    }
    StartJob(request, CompilePrograms(_services, _document.File().string(), targets), answer);
}

void EditorSession::Draw(const Request& request, EditorAnswer& answer, Json&)
{
    const PictureRequest picture = ReadPictureRequest(request.Message);
    RequirePainter(request);
    StartJob(request, DrawPicture(_services, picture), answer);
}

void EditorSession::PutTexture(const Request& request, EditorAnswer&, Json& reply)
{
    request.Message.AllowOnly({"id", "do", "name"});
    reply["file"] = AddTexture(_document.File().parent_path(),
                               request.Message.Member("name").Text(), request.Bytes);
}

void EditorSession::GetTexture(const Request& request, EditorAnswer& answer, Json&)
{
    request.Message.AllowOnly({"id", "do", "tag", "sampler"});
    const std::string tag = request.Message.Member("tag").Text();
    const auto sampler = request.Message.Find("sampler");
    RequirePainter(request);
    StartJob(request, LoadTexture(_services, tag, sampler ? sampler->Text() : "sampler2D"), answer);
}

/// The mesh belongs to the page that shows it, not to the document.
void EditorSession::GetMesh(const Request& request, EditorAnswer& answer, Json&)
{
    request.Message.AllowOnly({"id", "do", "name"});
    const auto name = request.Message.Find("name");
    if (!name && !_services.Mesh)
        request.Message.Refuse("the server has no mesh; send a mesh file together with its name");
    std::shared_ptr<const std::string> bytes;
    if (name) {
        RequirePainter(request);
        if (name->Text().empty() || request.Bytes.empty())
            name->Refuse("the mesh file or its name is empty");
        if (!_meshFile.expired()) // several at a time could use too much memory
            name->Refuse("another mesh is being read");
        bytes = std::make_shared<const std::string>(request.Bytes);
        _meshFile = bytes;
    }
    answer.Job.emplace(DocumentSnapshot::Lasting(_document.Revision()), request.Id,
                       LoadMesh(_services, name ? name->Text() : "", std::move(bytes)));
}

/// Compares the document with the current content of its file.
void EditorSession::Compare(const Request& request, EditorAnswer& answer, Json&)
{
    request.Message.AllowOnly({"id", "do"});
    StartJob(request, CompareWithText(_services, _document.File().string(), _document.ReadText()),
             answer);
}

} // namespace Mox::Host
