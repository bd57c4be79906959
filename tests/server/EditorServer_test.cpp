#include "tests/server/RunningServer.h"
#include "tests/support/Random.h"
#include "tests/support/TestEditor.h"

#include <boost/algorithm/string/replace.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <thread>
#include <unistd.h>

using namespace Mox::Host;

namespace {

/// A random edit, which may or may not be valid, or a step through the history.
Json MakeEdit(Random& random)
{
    const std::vector<std::string> history = {"undo", "redo", "layout"};
    const std::vector<std::string> steps = {
        R"({"do": "addNode", "id": "{a}", "type": "CoreMaths", "version": 0})",
        R"({"do": "addNode", "id": "{a}", "type": "CoreMaths", "version": 0})",
        R"({"do": "removeNode", "id": "{a}"})",
        R"({"do": "renameNode", "id": "{a}", "newId": "{b}"})",
        R"({"do": "setBinding", "stream": "float", "tag": "{a}", "values": {"default": "{b}"}})",
        R"({"do": "setProperties", "settings": [
            {"node": "{a}", "name": "Description", "kind": "string", "value": "{b}"}]})",
        R"({"do": "addEdge", "tail": "{a}", "tailPort": "out_value",
            "head": "{b}", "headPort": "in_value1"})",
        R"({"do": "addEdge", "tail": "{a}", "tailPort": "out_value",
            "head": "{b}", "headPort": "in_value2"})",
        R"({"do": "setPoints", "tail": "{a}", "tailPort": "out_value",
            "head": "{b}", "headPort": "in_value1", "points": [{"x": 1, "y": 2}]})",
        R"({"do": "addAnnotation", "id": "{a}", "kind": "note", "text": "{b}",
            "x": 0, "y": 0, "width": 50, "height": 50})",
        R"({"do": "removeAnnotation", "id": "{a}"})",
        R"({"do": "setDescription", "values": {"name": "{a}"}})",
    };
    const std::size_t choice = random.Below(history.size() + steps.size());
    if (choice < history.size())
        return {{"do", history[choice]}};
    std::string step = steps[choice - history.size()];
    for (const char* name : {"{a}", "{b}"})
        boost::algorithm::replace_all(step, name, "n" + std::to_string(random.Below(8)));
    return {{"do", "apply"},
            {"steps", Json::array({Json::parse(step)})},
            {"gesture", random.Below(2) ? "drag" : ""}};
}

/// A page whose copy of the document is updated only from messages.
class Window
{
public:
    explicit Window(const RunningServer& server) : _client(server.Port(), server.Token())
    {
        _mirror.TakeState(_client.Ask({{"id", 0}, {"do", "state"}}));
    }

    void Send(Json message)
    {
        message["id"] = ++_sent;
        _client.Send(message);
    }

    /// Processes incoming messages until all requests are answered.
    /// @returns how many requests had an effect
    int TakeAll()
    {
        int count = 0;
        while (_answered < _sent) {
            const Json message = _client.Receive();
            _mirror.TakeChanges(message);
            if (message.contains("event"))
                continue;
            EXPECT_EQ(message["id"], ++_answered) << "answers come in order";
            count += message.contains("changes");
        }
        return count;
    }

    std::string Shown() const { return _mirror.Text(); }

    std::string Truth()
    {
        EditorMirror truth;
        truth.TakeState(_client.Ask({{"do", "state"}}));
        return truth.Text();
    }

private:
    PageClient _client;
    EditorMirror _mirror;
    int _sent = 0;
    int _answered = 0;
};

/// Memory that this process currently occupies.
std::size_t ResidentBytes()
{
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// The environment variable MOX_RANDOM_EDITS increases the number of edits.
TEST(EditorServer, RandomEditsOfTwoPagesEndWithWhatBothShow)
{
    constexpr int batch = 100; // edits in flight at a time
    const char* wanted = std::getenv("MOX_RANDOM_EDITS");
    const int editCount = wanted ? std::stoi(wanted) : 600;
    Random random(DrawSeed());
    RunningServer server;
    const std::string start =
        FormatMaterialDocument(server.Session().Document().Graph().Document());
    Window windows[] = {Window(server), Window(server)};
    int doneCount = 0;
    std::size_t bytesAtHalf = 0;
    for (int i = 0; i < editCount; ++i) {
        windows[random.Below(2)].Send(MakeEdit(random));
        if (i % batch != batch - 1)
            continue;
        for (Window& window : windows)
            doneCount += window.TakeAll();
        if (i < editCount / 2)
            bytesAtHalf = ResidentBytes();
    }
    EXPECT_GT(doneCount, editCount / 8);
    // The history stores each edit; storing a copy of the document for each would take far more.
    constexpr std::size_t mostBytesPerEdit = 4096;
    constexpr std::size_t allocatorBytes = 16U << 20U;
    const auto laterEdits = static_cast<std::size_t>(editCount / 2);
    if (wanted) { // too few edits to measure otherwise
        EXPECT_LT(ResidentBytes(), bytesAtHalf + laterEdits * mostBytesPerEdit + allocatorBytes);
    }
    for (Window& window : windows) { // this reply follows all notices
        window.Send({{"do", "copy"}, {"ids", Json::array()}});
        window.TakeAll();
    }
    EXPECT_EQ(windows[0].Shown(), windows[1].Shown());
    EXPECT_EQ(windows[0].Shown(), windows[0].Truth());

    EXPECT_EQ(server.Stop(), ServerEnd::Stopped);
    EditorSession& session = server.Session();
    const auto text = [&] { return FormatMaterialDocument(session.Document().Graph().Document()); };
    const std::string end = text();
    EXPECT_EQ(TextAfterKill(session.Document().File()), end);
    int stepCount = 0;
    for (; !session.Document().UndoTitle().empty(); ++stepCount)
        session.Handle(0, R"({"do": "undo"})");
    EXPECT_EQ(text(), start);
    EXPECT_FALSE(session.Document().IsUnsaved());
    while (stepCount-- > 0) // only what was undone just now
        session.Handle(0, R"({"do": "redo"})");
    EXPECT_EQ(text(), end);
}

TEST(EditorServer, AnswersJobsInOrderAndDropsWhatIsOutOfDate)
{
    RunningServer server;
    PageClient page(server.Port(), server.Token());
    PageClient other(server.Port(), server.Token());
    std::string bytes;
    EXPECT_EQ(page.Ask({{"do", "texture"}, {"tag", "grey"}}, &bytes)["texture"]["levels"].size(),
              2);
    EXPECT_EQ(bytes, std::string(12, '\x80'));
    constexpr int count = 60;
    for (int id = 1; id <= count; ++id)
        page.Send({{"id", id}, {"do", "picture"}, {"width", 8}, {"height", id}});
    other.Send(Json::parse(R"({"do": "apply", "steps": [{"do": "removeNode", "id": "n0"}]})"));
    for (int id = 1; id <= count;) {
        const Json answer = page.Receive(&bytes);
        if (answer.contains("event"))
            continue;
        ASSERT_EQ(answer["id"], id);
        if (answer.contains("picture")) {
            EXPECT_EQ(bytes, std::string(std::size_t(4) * 8 * id, '\x80'));
        } else {
            EXPECT_EQ(answer.value("outOfDate", false), true);
        }
        ++id;
    }
}

TEST(EditorServer, AnswersAllJobsOfAPageThatSendsTooMany)
{
    ServerSettings settings = TestServerSettings();
    settings.JobCount = 4;
    settings.SilentTime = std::chrono::milliseconds(600); // all jobs together take longer
    RunningServer server(settings);
    PageClient page(server.Port(), server.Token());
    page.Send({{"id", 0}, {"do", "picture"}, {"node", "faulty"}});
    EXPECT_EQ(page.Receive()["error"]["message"], "internal error: a fault");
    for (int id = 1; id <= 6; ++id)
        page.Send({{"id", id}, {"do", "picture"}, {"node", "slow"}});
    page.Send({{"id", 7}, {"do", "state"}});
    std::string order;
    for (int i = 1; i <= 7; ++i) {
        const Json answer = page.Receive();
        order += std::to_string(answer["id"].get<int>());
        EXPECT_EQ(answer.contains("error"), answer["id"] == 5 || answer["id"] == 6) << answer;
    }
    EXPECT_EQ(order, "5671234");
}

TEST(EditorServer, ReadsOneMeshAtATime)
{
    RunningServer server;
    PageClient page(server.Port(), server.Token());
    const auto put = [&](const std::string& bytes) {
        page.Send({{"id", 1}, {"do", "mesh"}, {"name", "t.obj"}}, bytes);
    };
    page.Send({{"id", 0}, {"do", "picture"}, {"node", "slow"}}); // keeps the first mesh waiting
    put("triangle");
    put("triangle");
    EXPECT_TRUE(page.Receive().contains("error"));
    EXPECT_TRUE(page.Receive().contains("picture"));
    std::string bytes;
    EXPECT_EQ(page.Receive(&bytes)["mesh"]["streams"][0]["stream"], "position");
    EXPECT_EQ(bytes, std::string(48, '\7'));
    for (const char* wrong : {"", "square"}) {
        put(wrong);
        EXPECT_TRUE(page.Receive().contains("error")) << wrong;
    }
    EXPECT_TRUE(page.Ask({{"do", "mesh"}}).contains("error")) << "the host has none";
}

TEST(EditorServer, TellsAllPagesThatTheFileHasChanged)
{
    RunningServer server;
    PageClient page(server.Port(), server.Token());
    EXPECT_FALSE(page.Ask({{"do", "state"}}).contains("event")); // so the connection was accepted
    server.Folder().Write("m.xml", "<material version=\"1\"/>");
    const Json notice = page.Receive();
    EXPECT_EQ(notice["event"], "file");
    EXPECT_EQ(notice["differences"].size(), 1u);
}

TEST(EditorServer, EndsWhenItIsTime)
{
    using namespace std::chrono_literals;
    ServerSettings settings = TestServerSettings();
    settings.WithoutPage = 1ms;
    EXPECT_EQ(RunningServer(settings).Await(), ServerEnd::NoPage);

    settings.WithoutPage = 1h;
    settings.AfterGoodbye = 1ms;
    {
        RunningServer server(settings);
        PageClient first(server.Port(), server.Token());
        PageClient second(server.Port(), server.Token());
        EXPECT_TRUE(second.Ask({{"do", "state"}}).contains("state"));
        first.SayGoodbye();
        std::this_thread::sleep_for(20ms);
        EXPECT_TRUE(second.Ask({{"do", "state"}}).contains("state"));
        second.SayGoodbye();
        EXPECT_EQ(server.Await(), ServerEnd::Goodbye);
    }
    {
        RunningServer server(settings);
        PageClient page(server.Port(), server.Token());
        EXPECT_TRUE(page.Ask({{"do", "state"}}).contains("state"));
        page.Vanish();
        std::this_thread::sleep_for(50ms);
        EXPECT_FALSE(server.IsOver()) << "a page that was lost may come back";
        PageClient again(server.Port(), server.Token());
        EXPECT_TRUE(again.Ask({{"do", "state"}}).contains("state"));
        auto end = std::async(std::launch::async, [&] { return server.Stop(); });
        EXPECT_EQ(again.AwaitClose(), 1001u);
        EXPECT_EQ(end.get(), ServerEnd::Stopped);
    }
}

TEST(EditorServer, SilentPagesAreLost)
{
    using namespace std::chrono_literals;
    ServerSettings settings = TestServerSettings();
    settings.SilentTime = 40ms;
    settings.WithoutPage = 200ms;
    RunningServer server(settings);
    PageClient page(server.Port(), server.Token()); // reads nothing, so it does not answer pings
    EXPECT_EQ(server.Await(), ServerEnd::NoPage);
}

} // namespace
