#include "mox/editor/EditorSession.h"
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

std::string SetScale(int value)
{
    const Json setting = {{"node", "n0"},
                          {"name", "Default Scalar"},
                          {"kind", "float"},
                          {"value", std::to_string(value)}};
    const Json step = {{"do", "setProperties"}, {"settings", Json::array({setting})}};
    return FormatJson({{"do", "apply"}, {"steps", Json::array({step})}});
}

/// Why a document cannot be opened.
std::string RefusalOf(const std::filesystem::path& file)
{
    try {
        const EditorSession session(file, TestEditorServices());
        return {};
    } catch (const HostError& error) {
        return error.Message;
    }
}

/// A material of one node, to be written to a file.
const char* const oneNode = R"(<material version="1"><nodes>
    <node id="n0" type="CoreConstant" version="0"/></nodes></material>)";

/// A limit on file size simulates a full disk.
TEST(EditorSession, RefusesWhatDoesNotFitOnTheDisk)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("m.xml", oneNode);
    EditorSession session(file, TestEditorServices());
    session.Handle(0, SetScale(2));
    session.Handle(0, SetScale(3));
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
        EXPECT_EQ(RefusalOf(file),
                  "is already being edited by process " + std::to_string(getpid()));
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
    EXPECT_EQ(RefusalOf(file),
              "cannot be edited, because the file .m.xml.mox-lock in its folder belongs to the "
              "user 65533; if nobody is editing the document, ask this user to remove the file");
    const int held = open(lock.c_str(), O_RDONLY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    EXPECT_EQ(RefusalOf(file), "is already being edited by process 123 of the user 65533");
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

} // namespace
