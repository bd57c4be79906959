#include "mox/document/MaterialDocument.h"
#include "tests/support/RunMox.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace Mox::Host;

namespace {

constexpr const char* examples[] = {"flip_book",  "layers_by_vertex_colour", "one_texture_twice",
                                    "rim_light",  "tinted_texture",          "two_maths",
                                    "waving_flag"};

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true; // which takes address space of its own
#else
constexpr bool isSanitized = false;
#endif

/// The program with bounds to its time and memory.
std::string Bounded(int megabytes)
{
    const std::string memory =
        isSanitized ? "" : "ulimit -v " + std::to_string(megabytes) + "000 && ";
    return memory + "timeout 120 '" MOX_PROGRAM "' ";
}

std::string Quote(const std::filesystem::path& path)
{
    return "'" + path.string() + "'";
}

std::string ExampleText(const std::string& name)
{
    std::ifstream stream(std::string(MOX_EXAMPLES "/") + name + ".xml", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// ASCII text in an encoding that has a number of bytes for each character, this byte of which is
/// the character's own.
std::string Widen(const std::string& text, std::size_t width, std::size_t place)
{
    std::string wide(text.size() * width, '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        wide[i * width + place] = text[i];
    return wide;
}

std::string Repeat(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(HostileFiles, EachGivesAClearLine)
{
    const std::string rim = ExampleText("rim_light");
    const std::string head = "<material version=\"1\">";
    const std::string noUtf8 = ": the text is no UTF-8, the one encoding that is read\n";
    const std::string noType = ": document type declarations are not allowed\n";
    const auto declare = [&rim](const std::string& encoding) {
        std::string text = rim;
        return text.replace(text.find("UTF-8"), 5, encoding);
    };
    const auto withId = [&rim](const std::string& bytes) {
        std::string text = rim;
        return text.insert(text.find("id=\"") + 4, bytes);
    };
    struct Case
    {
        std::string Content;
        std::string Message; ///< behind the name of the file
    };
    const Case cases[] = {
        {"<!DOCTYPE m [<!ENTITY a \"ha\"><!ENTITY b \"" + Repeat("&a;", 1000) + "\"><!ENTITY c \"" +
             Repeat("&b;", 1000) + "\">]>\n" + head + "&c;</material>",
         ":1" + noType},
        {"<!DOCTYPE m SYSTEM \"file:///etc/passwd\">\n" + head + "</material>", ":1" + noType},
        {"<!DOCTYPE m [<!ENTITY x SYSTEM \"/etc/passwd\">]>\n" + head + "&x;</material>",
         ":1" + noType},
        {"<!DOCTYPE m [<!ENTITY % p SYSTEM \"http://nowhere.invalid/p\">%p;]>\n" + head,
         ":1" + noType},
        {head + "&nothing;</material>", ":1:32: not well-formed: Entity 'nothing' not defined\n"},
        {Widen(rim, 2, 0), noUtf8},
        {Widen(rim, 2, 1), noUtf8},
        {"\xFF\xFE" + Widen(rim, 2, 0), noUtf8},
        {"\xFE\xFF" + Widen(rim, 2, 1), noUtf8},
        {Widen(rim, 4, 0), noUtf8},
        {declare("ISO-8859-1"), ":1: the encoding is \"ISO-8859-1\", expected \"UTF-8\"\n"},
        {declare("UTF-7"), ":1: the encoding is \"UTF-7\", expected \"UTF-8\"\n"},
        {declare("nonsense"), ":1: the encoding is \"nonsense\", expected \"UTF-8\"\n"},
        {withId("\xE9t\xE9"), ":5:15" + noUtf8},
        {withId("\xC0\xAF"), ":5:15" + noUtf8}, // a slash in too many bytes
        {withId("\xED\xA0\x80"),
         ":5:15: not well-formed: Char 0xD800 out of allowed range\n"}, // half of a pair
        {withId("\xF8\x88\x80\x80\x80"), ":5:15" + noUtf8},
        {withId(std::string(1, '\0')), ":5:15: not well-formed: Char 0x0 out of allowed range\n"},
        {head + Repeat("<a>", 1'000'000),
         ":1:23: unexpected element <a>, expected <description>, <renderState>, <nodes>, <edges> "
         "or <bindings>\n"
         "mox: <file>:1: elements are nested more than 32 deep\n"},
        {head + "<description " + Repeat("a='' ", 1000) + "/></material>",
         ":1: an element has more than 256 attributes\n"},
        {std::string(100'000, '\0'), noUtf8},
        {std::string(100'000, '<'), ":1:2: not well-formed: StartTag: invalid element name\n"},
    };
    const TemporaryFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.Content.substr(0, 150));
        const auto file = folder.Write("hostile.xml", c.Content);
        std::string expected = "mox: " + file.string() + c.Message;
        if (const std::size_t place = expected.find("<file>"); place != std::string::npos)
            expected.replace(place, 6, file.string());
        const Outcome outcome = RunShell(Bounded(1000) + "export " + Quote(file));
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_EQ(outcome.Text, expected);
    }
}

/// What comes without end or in one piece of very many bytes is refused in bounded time and memory.
TEST(HostileFiles, HugeTextsAreRefused)
{
    const auto exportFrom = [](const std::string& producer) {
        return RunShell("{ " + producer + "; } 2>/dev/null | { " + Bounded(6000) +
                        "export /dev/stdin; }");
    };
    const std::string many = "head -c 100000000 /dev/zero | tr '\\0' a";
    struct Case
    {
        std::string Producer;
        std::string Message;
    };
    const Case cases[] = {
        {"printf '<material version=\"1\"><description desc=\"'; " + many,
         "1:41: not well-formed: AttValue length too long"},
        {"printf '<material version=\"1\"><!--'; " + many,
         "not well-formed: Comment too big found"},
        {"printf '<material version=\"1\"><'; " + many,
         "something is too long, such as a name or a tag"},
        {"yes", "is larger than 1 GiB, the most that is read"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = exportFrom(c.Producer);
        EXPECT_EQ(outcome.Status, 1) << c.Message;
        EXPECT_NE(outcome.Text.find(c.Message), std::string::npos) << outcome.Text.substr(0, 500);
        EXPECT_EQ(std::count(outcome.Text.begin(), outcome.Text.end(), '\n'), 1) << c.Message;
    }
}

/// Names and values of any length and with any characters leave each message one line.
TEST(HostileFiles, MessagesStayLines)
{
    const TemporaryFolder folder;
    const std::string longText = "tex2D" + std::string(3'000'000, 'a');
    for (const std::string& name :
         {longText, std::string("a&#10;mox: b&#13;"), longText + "&#10;"}) {
        const auto file = folder.Write(
            "names.xml", "<material version=\"1\"><nodes><node id=\"" + name + "\" type=\"" + name +
                             "\" version=\"0\"/><node id=\"t\" type=\"CoreTexture\" version=\"0\">"
                             "<property name=\"Name\" kind=\"string\" value=\"" +
                             name + "\"/><property name=\"" + name +
                             "\" kind=\"float\" value=\"1e99\"/></node></nodes>"
                             "<edges/></material>");
        for (const std::string command : {"export", "check"}) {
            const Outcome outcome = RunShell(Bounded(1000) + command + " " + Quote(file));
            EXPECT_EQ(outcome.Status, 1);
            std::size_t begin = 0;
            for (std::size_t end; (end = outcome.Text.find('\n', begin)) != std::string::npos;
                 begin = end + 1) {
                const std::string line = outcome.Text.substr(begin, end - begin);
                EXPECT_NE(line.find("names.xml:"), std::string::npos) << line.substr(0, 200);
                EXPECT_LT(line.size(), 5000u);
            }
        }
    }
}

/// A write that was interrupted leaves any beginning of a document.
TEST(HostileFiles, TruncatedAtEveryLength)
{
    for (const char* example : examples) {
        const std::string text = ExampleText(example);
        const std::size_t whole = text.rfind('>') + 1;
        for (std::size_t length = 0; length < whole; ++length) {
            ProblemList problems;
            const MaterialDocument document =
                ParseMaterialDocument("a.xml", text.substr(0, length), problems);
            ASSERT_EQ(problems.Problems().size(), 1u) << example << " " << length;
            EXPECT_TRUE(problems.HasErrors());
            EXPECT_TRUE(document.Nodes.empty());
            const std::string line = problems.Problems().front().Format();
            EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 0);
            EXPECT_TRUE(line.starts_with("a.xml:")) << line;
        }
    }
}

TEST(HostileFiles, FoldersWhereFilesShouldBe)
{
    const TemporaryFolder folder;
    const auto document = folder.Write("rim.xml", ExampleText("rim_light"));
    std::filesystem::create_directory(folder.Path() / "folder.xml");
    const auto file = folder.Write("file", "kept");
    std::filesystem::create_directories(folder.Path() / "out/rim.vertex.cg");
    const std::string mox = Quote(MOX_PROGRAM);
    struct Case
    {
        std::string Arguments;
        std::string Message;
    };
    const Case cases[] = {
        {"export folder.xml", "mox: folder.xml: holds no material\n"},
        {"check folder.xml", "mox: folder.xml: holds no material\n"},
        {"export rim.xml -o file", "cannot be created: "},
        {"export rim.xml -o out",
         "mox: out/rim.vertex.cg: cannot be written: something else than a regular file has this "
         "name\n"},
        {"export rim.xml --environment file",
         "mox: file/environment.xml: cannot be read: Not a directory\n"},
        {"bindings --read folder.xml", "mox: folder.xml: cannot be read: Is a directory\n"},
    };
    for (const Case& c : cases) {
        const Outcome outcome =
            RunShell("cd " + Quote(folder.Path()) + " && " + mox + " " + c.Arguments);
        EXPECT_EQ(outcome.Status, 1) << c.Arguments;
        EXPECT_NE(outcome.Text.find(c.Message), std::string::npos) << outcome.Text;
    }
    EXPECT_EQ(folder.Read("file"), "kept");
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "out/rim.fragment.cg"));
}

/// root may read everything, so the program runs as somebody else then.
TEST(HostileFiles, NoPermission)
{
    const std::string nobody = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    const bool isRoot = RunShell("id -u").Text == "0\n";
    const std::string mox = (isRoot ? nobody : "") + Quote(MOX_PROGRAM);
    if (RunShell(mox + " --version").Status != 0)
        GTEST_SKIP() << "nobody may not run the program here";
    const TemporaryFolder folder;
    const std::string rim = ExampleText("rim_light");
    folder.Write("rim.xml", rim);
    folder.Write("mixed/a.xml", rim);
    folder.Write("locked/a.xml", rim);
    folder.Write("kept/rim.vertex.cg", "old");
    EXPECT_EQ(RunShell("cd " + Quote(folder.Path()) +
                       " && chmod 755 . && chmod 0 mixed/a.xml locked && chmod 555 kept")
                  .Status,
              0);
    struct Case
    {
        std::string Arguments;
        std::string Message;
    };
    const Case cases[] = {
        {"export mixed/a.xml", "mox: mixed/a.xml: cannot be read: Permission denied\n"},
        {"export mixed", "mox: mixed/a.xml: cannot be read: Permission denied\n"},
        {"export locked/a.xml", "mox: locked/a.xml: cannot be read: Permission denied\n"},
        {"export locked", "mox: locked: cannot be searched for materials: Permission denied\n"},
        {"export rim.xml -o kept",
         "mox: kept/rim.vertex.cg: cannot be written: Permission denied\n"},
        {"export rim.xml -o kept/new", "mox: kept/new: cannot be created: Permission denied\n"},
    };
    for (const Case& c : cases) {
        const Outcome outcome =
            RunShell("cd " + Quote(folder.Path()) + " && " + mox + " " + c.Arguments);
        EXPECT_EQ(outcome.Status, 1) << c.Arguments;
        EXPECT_TRUE(outcome.Text.starts_with(c.Message)) << outcome.Text;
    }
    EXPECT_EQ(folder.Read("kept/rim.vertex.cg"), "old");
    RunShell("chmod -R u+rwx " + Quote(folder.Path()));
}

TEST(HostileFiles, NamesWithBlanksAndAnyLetters)
{
    const TemporaryFolder folder;
    const std::string plain = RunMox("export ../examples/rim_light.xml --plain").Text;
    const std::string names[] = {"two words",
                                 "\xC3\xBC"
                                 "n\xC3\xAF c\xC3\xB6"
                                 "d\xC3\xA9",
                                 "\xE6\x9D\x90\xE8\xB4\xA8",
                                 "quote ' \" $HOME",
                                 "-dash",
                                 "no\xFFutf8"};
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        folder.Write("in put/" + name + ".xml", ExampleText("rim_light"));
    }
    const Outcome outcome = RunShell("cd " + Quote(folder.Path()) + " && " + Quote(MOX_PROGRAM) +
                                     " export 'in put' -o '\xC3\xA0 out' --plain --depfile d"
                                     " --depfile-target stamp");
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_EQ(outcome.Text, "mox: 6 exported, 1 distinct, 0 failed, 0 warnings\n");
    for (const std::string& name : names) {
        const std::string stem = "\xC3\xA0 out/" + name;
        EXPECT_EQ(folder.Read(stem + ".vertex.cg") + "\n// ------\n" +
                      folder.Read(stem + ".fragment.cg"),
                  plain)
            << name;
    }
    folder.Write("in put/bro\xFF\nken.xml", "<material");
    const Outcome check = RunShell("cd " + Quote(folder.Path()) + " && " + Quote(MOX_PROGRAM) +
                                   " check --json 'in put/'bro*");
    EXPECT_EQ(check.Status, 1);
    EXPECT_NE(check.Text.find("bro\xEF\xBF\xBD\\nken.xml"), std::string::npos) << check.Text;
    const Outcome text = RunShell("cd " + Quote(folder.Path()) + " && " + Quote(MOX_PROGRAM) +
                                  " export 'in put/'bro*");
    EXPECT_EQ(std::count(text.Text.begin(), text.Text.end(), '\n'), 1) << text.Text;
}

/// The first document is a pipe, so the program waits for it while the second one goes.
TEST(HostileFiles, DocumentThatDisappearsDuringExport)
{
    const TemporaryFolder folder;
    folder.Write("b.xml", ExampleText("rim_light"));
    folder.Write("out/b.vertex.cg", "old");
    const Outcome outcome =
        RunShell("cd " + Quote(folder.Path()) + " && mkfifo a.xml && { " + Quote(MOX_PROGRAM) +
                 " export a.xml b.xml -j 1 -o out & exec 3>a.xml; rm b.xml; cat " +
                 Quote(MOX_EXAMPLES "/rim_light.xml") + " >&3; exec 3>&-; wait $!; }");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Text, "mox: b.xml: cannot be read: No such file or directory\n"
                            "mox: 1 exported, 1 distinct, 1 failed, 0 warnings\n");
    EXPECT_EQ(folder.Read("out/b.vertex.cg"), "old");
    EXPECT_NE(folder.Read("out/a.vertex.cg"), "");
    EXPECT_EQ(RunShell("find " + Quote(folder.Path()) + " -name '.mox-*'").Text, "");
}

/// Where a small file system of its own can be had.
TEST(HostileFiles, FullDisk)
{
    const TemporaryFolder folder;
    const auto disk = folder.Path() / "disk";
    std::filesystem::create_directory(disk);
    const std::string mount = "mount -t tmpfs -o size=12k none " + Quote(disk);
    if (RunShell("unshare -m sh -c \"" + mount + "\"").Status != 0)
        GTEST_SKIP() << "no file system can be mounted here";
    const Outcome outcome = RunShell(
        "unshare -m sh -c \"" + mount + " && echo old >" + Quote(disk / "waving_flag.vertex.cg") +
        " && head -c 6000 /dev/zero >" + Quote(disk / "ballast") + "; " + Quote(MOX_PROGRAM) +
        " export " + Quote(MOX_EXAMPLES "/waving_flag.xml") + " -o " + Quote(disk) + "; cat " +
        Quote(disk / "waving_flag.vertex.cg") + "; ls -A " + Quote(disk) + "\"");
    EXPECT_EQ(outcome.Text, "mox: " + (disk / "waving_flag.vertex.cg").string() +
                                ": cannot be written: No space left on device\n"
                                "mox: 0 exported, 0 distinct, 1 failed, 0 warnings\n"
                                "old\n"
                                "ballast\nwaving_flag.vertex.cg\n");
}

} // namespace
