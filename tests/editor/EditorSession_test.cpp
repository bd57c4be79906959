#include "mox/editor/EditorSession.h"
#include "mox/json/StepJson.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"
#include "tests/support/GraphEditor.h"
#include "tests/support/Random.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestEditor.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Mox::Host;

namespace {

Json StateOf(EditorSession& session)
{
    return Json::parse(session.Handle(9, R"({"id": 0, "do": "state"})").Reply);
}

std::string TextOf(EditorSession& session)
{
    EditorMirror mirror;
    mirror.TakeState(StateOf(session));
    return mirror.Text();
}

std::string ApplyMessage(const GraphChange& change, const std::string& gesture = {})
{
    Json message = {{"id", 1}, {"do", "apply"}, {"steps", StepsToJson(change)}};
    if (!gesture.empty())
        message["gesture"] = gesture;
    return FormatJson(message);
}

std::string SetScale(int value, const std::string& gesture = "drag")
{
    return ApplyMessage({{SetProperties{{{"n0",
                                          {"Default Scalar", Mox::Materials::GuiPropertyKind::Float,
                                           std::to_string(value)}}}}}},
                        gesture);
}

/// Two clients of one document, each with a copy that is updated only from messages.
class TwoClients
{
public:
    explicit TwoClients(EditorSession& session) : _session(session)
    {
        for (EditorMirror& mirror : _mirrors)
            mirror.TakeState(StateOf(session));
    }

    /// @returns the reply
    Json Send(std::size_t client, const std::string& message)
    {
        const EditorAnswer answer = _session.Handle(client, message);
        const Json reply = Json::parse(answer.Reply);
        _mirrors[client].TakeChanges(reply);
        if (!answer.Notice.empty())
            _mirrors[1 - client].TakeChanges(Json::parse(answer.Notice));
        return reply;
    }

    void ExpectAgreement() const
    {
        const std::string text = TextOf(_session);
        ASSERT_EQ(_mirrors[0].Text(), text);
        ASSERT_EQ(_mirrors[1].Text(), text);
    }

private:
    EditorSession& _session;
    EditorMirror _mirrors[2];
};

TEST(EditorSession, RandomEditsOfTwoClientsEndWithWhatBothShow)
{
    constexpr int editCount = 400;
    Random random(DrawSeed());
    const TemporaryFolder folder;
    const auto file =
        folder.Write("flip.xml", ReadText(std::filesystem::path(MOX_EXAMPLES) / "flip_book.xml"));
    EditorSession session(file, TestEditorServices());
    const std::string start = FormatMaterialDocument(session.Document().Graph().Document());
    TwoClients clients(session);
    GraphEditor editor(session.Document().Graph(),
                       [&](std::size_t end) { return random.Below(end); });
    int doneCount = 0;
    for (int i = 0; i < editCount; ++i) {
        const std::size_t client = random.Below(2);
        const std::string revert[] = {R"({"do": "undo"})", R"({"do": "redo"})",
                                      R"({"do": "layout"})"};
        const std::size_t fate = random.Below(8);
        const bool isEmpty = session.Document().Graph().Document().Nodes.empty();
        const Json reply = clients.Send(
            client, isEmpty    ? revert[0]
                    : fate < 3 ? revert[fate]
                               : ApplyMessage(editor.Next(), random.Below(2) ? "g" : ""));
        doneCount += !reply.contains("error");
        if (i % 20 == 0)
            clients.ExpectAgreement();
    }
    clients.ExpectAgreement();
    EXPECT_GT(doneCount, editCount / 8);
    const std::string end = FormatMaterialDocument(session.Document().Graph().Document());

    EXPECT_EQ(TextAfterKill(file), end);

    int stepCount = 0;
    for (; !session.Document().UndoTitle().empty(); ++stepCount)
        clients.Send(0, R"({"do": "undo"})");
    clients.ExpectAgreement();
    EXPECT_EQ(FormatMaterialDocument(session.Document().Graph().Document()), start);
    EXPECT_FALSE(session.Document().IsUnsaved());

    while (stepCount-- > 0) // only what was undone just now
        clients.Send(1, R"({"do": "redo"})");
    clients.ExpectAgreement();
    EXPECT_EQ(FormatMaterialDocument(session.Document().Graph().Document()), end);
    EXPECT_FALSE(clients.Send(0, R"({"do": "save"})").contains("error"));
    EXPECT_EQ(folder.Read("flip.xml"), end);
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / ".flip.xml.mox-journal"));
}

/// A material of one node, to be written to a file.
const char* const oneNode = R"(<material version="1"><nodes>
    <node id="n0" type="CoreConstant" version="0"/></nodes></material>)";

TEST(EditorSession, LosesNothingThatItAcknowledgedWhenItIsKilled)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        EditorSession session(file, TestEditorServices());
        for (char value = 1; value < 100; ++value) {
            session.Handle(0, SetScale(value));
            if (write(pipes[1], &value, 1) != 1) // acknowledgement
                _exit(1);
            if (value == 60)
                kill(getpid(), SIGKILL);
        }
        _exit(0);
    }
    close(pipes[1]);
    char acknowledged = 0;
    while (read(pipes[0], &acknowledged, 1) == 1) {
    }
    close(pipes[0]);
    waitpid(child, nullptr, 0);
    ASSERT_EQ(acknowledged, 60);

    EditorSession session(file, TestEditorServices());
    ASSERT_TRUE(session.Document().Waiting());
    session.Handle(0, R"({"do": "restore"})");
    EXPECT_TRUE(session.Document().IsUnsaved());
    session.Handle(0, R"({"do": "save"})");
    EXPECT_NE(folder.Read("m.xml").find("value=\"60\""), std::string::npos);
}

/// A limit on file size simulates a full disk.
TEST(EditorSession, RefusesWhatDoesNotFitOnTheDisk)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    EditorSession session(file, TestEditorServices());
    session.Handle(0, SetScale(2, ""));
    session.Handle(0, SetScale(3, ""));
    const std::string before = TextOf(session);

    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit full = {100, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    std::vector<Json> replies;
    for (const std::string& message :
         {SetScale(4), std::string(R"({"do": "undo"})"), std::string(R"({"do": "save"})")})
        replies.push_back(Json::parse(session.Handle(0, message).Reply));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);

    for (const Json& reply : replies) {
        ASSERT_TRUE(reply.contains("error"));
        EXPECT_EQ(reply["error"]["message"], "cannot be written: File too large");
    }
    EXPECT_EQ(TextOf(session), before);
    EXPECT_EQ(folder.Read("m.xml"), oneNode);
    EXPECT_FALSE(Json::parse(session.Handle(0, SetScale(5)).Reply).contains("error"));
    EXPECT_EQ(TextAfterKill(file), FormatMaterialDocument(session.Document().Graph().Document()));
}

TEST(EditorSession, HasOneLockAndOneJournalForAllNamesOfADocument)
{
    const TemporaryFolder folder;
    const auto file = folder.Path() / "m.xml"; // does not exist yet
    const auto link = folder.Path() / "link.xml";
    std::filesystem::create_symlink("m.xml", link);
    {
        EditorSession session(link, TestEditorServices());
        EXPECT_THROW(EditorSession(file, TestEditorServices()), HostError);
        session.Handle(0, R"({"do": "apply", "steps": [
            {"do": "addNode", "id": "a", "type": "CoreUv", "version": 0}]})");
    }
    EXPECT_TRUE(EditorSession(file, TestEditorServices()).Document().Waiting());
}

/// Only root can give a file to another user.
TEST(EditorSession, LeavesTheLockFileOfAnotherUser)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs to be the administrator";
    constexpr uid_t other = 65533;
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    const auto lock = folder.Write(".m.xml.mox-lock", "123");
    ASSERT_EQ(chown(lock.c_str(), other, other), 0);
    const auto refusal = [&]() -> std::string {
        try {
            const EditorSession session(file, TestEditorServices());
            return {};
        } catch (const HostError& error) {
            return error.Message;
        }
    };
    EXPECT_EQ(refusal(),
              "cannot be edited, because the file .m.xml.mox-lock in its folder belongs to the "
              "user 65533; if nobody is editing the document, ask this user to remove the file");
    const int held = open(lock.c_str(), O_RDONLY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    EXPECT_EQ(refusal(), "is already being edited by process 123 of the user 65533");
    close(held);
    EXPECT_EQ(folder.Read(".m.xml.mox-lock"), "123");
}

TEST(EditorSession, KeepsTheDocumentWhenItsFileIsNoDocumentAnyMore)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    EditorSession session(file, TestEditorServices());
    const std::string before = TextOf(session);
    const std::function<void()> fates[] = {
        [] {}, [&] { folder.Write("m.xml", ""); }, [&] { std::filesystem::create_directory(file); },
        [&] { mkfifo(file.c_str(), 0600); }, // reading it would never end
    };
    for (const auto& fate : fates) {
        std::filesystem::remove(file);
        fate();
        const std::string notice = session.LookAtFile();
        ASSERT_NE(notice, "");
        EXPECT_TRUE(Json::parse(notice).contains("error")) << notice;
        EXPECT_EQ(session.LookAtFile(), "") << "it was reported already";
        EXPECT_NE(session.Handle(0, R"({"do": "reload"})").Reply.find("error"), std::string::npos);
        EXPECT_EQ(TextOf(session), before);
    }
    EXPECT_THROW(EditorSession(folder.Path() / "no" / "m.xml", TestEditorServices()), HostError);
}

TEST(EditorSession, NamesTheMeshOfItsHost)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    EditorServices services = TestEditorServices();
    LoadedMesh mesh;
    mesh.Name = "house.glb";
    services.Mesh = std::make_shared<const LoadedMesh>(mesh);
    EditorSession session(file, services);
    EXPECT_EQ(StateOf(session)["ownMesh"], "house.glb");
}

/// A drag uses a bounded amount of memory and journal space.
TEST(EditorSession, RemembersADragAsOneStep)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    EditorSession session(file, TestEditorServices());
    const std::string start = TextOf(session);
    for (int value = 1; value < 50; ++value)
        session.Handle(0, SetScale(value));
    session.Handle(1, SetScale(7)); // another client's gesture with the same name
    session.Handle(0, R"({"do": "undo"})");
    EXPECT_NE(TextOf(session), start);
    session.Handle(0, R"({"do": "undo"})");
    EXPECT_EQ(TextOf(session), start);
    EXPECT_EQ(session.Document().UndoTitle(), "");
}

} // namespace
