#include "mox/editor/EditorSession.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Session.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestEditor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <set>

using namespace Mox::Host;

namespace {

/// Abbreviates nodes and edges, and omits parts of the state that the tests of nodes cover.
Json Shorten(Json json)
{
    for (const char* part : {"changes", "state"}) {
        if (!json.contains(part))
            continue;
        for (Json& node : json[part]["nodes"]) {
            const Json record = node["record"];
            Json properties = Json::object();
            for (const Json& property : record["properties"])
                properties[property["name"].get<std::string>()] = property["value"];
            node = Json::array({node["number"], record["id"], node["title"], properties});
        }
        for (Json& edge : json[part]["edges"]) {
            const Json record = edge["record"];
            edge = record["tail"].get<std::string>() + "." + record["tailPort"].get<std::string>() +
                   " -> " + record["head"].get<std::string>() + "." +
                   record["headPort"].get<std::string>() +
                   (record.contains("points") ? " " + FormatJson(record["points"]) : "");
        }
    }
    if (json.contains("types")) {
        for (Json& type : json["types"])
            type = type["type"];
    }
    return json;
}

/// Executes the commands of a session on the file material.xml: "1 {...}" is a message of client 1;
/// the other commands do what hosts and other programs do.
class Stage
{
public:
    std::string Do(const std::string& line)
    {
        const std::size_t space = line.find_first_of(" \n");
        const std::string word = line.substr(0, space);
        const std::string rest = space == line.npos ? "" : line.substr(space + 1);
        if (word == "material") { // sets the content of the file
            _folder.Write("material.xml", FormatMaterialDocument(MaterialFromText(rest)));
            return {};
        }
        if (word == "write") { // sets the content of another file
            const std::size_t end = rest.find('\n');
            _folder.Write(rest.substr(0, end), end == rest.npos ? "" : rest.substr(end + 1));
            return {};
        }
        if (word == "read")
            return _folder.Read(rest) + "\n";
        if (word == "files")
            return ListFiles();
        if (word == "open") // as if the previous process had been killed
            return Open();
        if (word == "look")
            return Print("notice", _session->LookAtFile());
        if (word == "hold") { // postpones the job of a message
            _held = _session->Handle(1, rest).Job;
            return {};
        }
        if (word == "run")
            return Print("reply", _held->Run().Text);
        EditorAnswer answer = _session->Handle(std::stoul(word), rest);
        std::string text;
        if (answer.Job) {
            const EditorReply reply = answer.Job->Run();
            text = Print("reply", reply.Text);
            if (!reply.Bytes.empty())
                text += std::to_string(reply.Bytes.size()) + " bytes of pixels\n";
        }
        return text + Print("reply", answer.Reply) + Print("notice", answer.Notice);
    }

private:
    std::string Open()
    {
        _session.reset();
        try {
            _session = std::make_unique<EditorSession>(_folder.Path() / "material.xml",
                                                       TestEditorServices());
        } catch (const HostError& error) {
            return error.Message + "\n";
        }
        return {};
    }

    /// Prints JSON without the path of the test's folder.
    std::string Print(const std::string& word, const std::string& json) const
    {
        if (json.empty())
            return {};
        std::string text = word + " " + FormatJson(Shorten(Json::parse(json))) + "\n";
        const std::string folder = _folder.Path().string() + "/";
        for (auto at = text.find(folder); at != text.npos; at = text.find(folder))
            text.erase(at, folder.size());
        return text;
    }

    std::string ListFiles() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(_folder.Path()))
            names.insert(entry.path().filename().string() + "\n");
        return std::accumulate(names.begin(), names.end(), std::string());
    }

    TemporaryFolder _folder;
    std::unique_ptr<EditorSession> _session;
    std::optional<EditorJob> _held;
};

class EditorSessions : public testing::TestWithParam<std::string>
{};

TEST_P(EditorSessions, GoAsWritten)
{
    Stage stage;
    ExpectSession("editor/sessions/" + GetParam() + ".txt",
                  [&](const std::string& line) { return stage.Do(line); });
}

INSTANTIATE_TEST_SUITE_P(Mox, EditorSessions, testing::ValuesIn(SessionNames("editor")),
                         [](const auto& session) { return session.param; });

} // namespace
