#include "mox/Text.h"
#include "mox/batch/Depfile.h"
#include "tests/support/GraphText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

using namespace Mox::Host;

namespace {

using Paths = std::vector<std::filesystem::path>;

bool IsPrintable(char c)
{
    return c > ' ' && c <= '~';
}

/// Names with each byte at the start, in the middle and at the end, all pairs of special
/// characters, and names with a special meaning in Make. NUL and slash cannot occur in a file name.
Paths HardNames()
{
    Paths names{"~root/x", ".PHONY",  "a(b)",   "x\\ y", "x\\\\ y",
                "x[y]z",   "include", "define", "./~",   "../x"};
    std::string signs = " ";
    for (int byte = 1; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (c == '/')
            continue;
        if (IsPrintable(c) && !std::isalnum(byte))
            signs += c;
        const std::string text(1, c);
        names.insert(names.end(), {"x" + text + "y", text + "y", "x" + text});
    }
    for (const char first : signs) {
        for (const char second : signs)
            names.push_back(std::string("x") + first + second + "y");
    }
    return names;
}

/// The distinct names that can be written in rules.
Paths WritableNames()
{
    Paths names = HardNames();
    std::erase_if(names, [](const auto& name) { return !IsDepfileName(name); });
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

/// Runs a command in a folder and returns its output.
std::string RunIn(const TemporaryFolder& folder, const std::string& command)
{
    const std::string all = "cd '" + folder.Path().string() + "' && { " + command + "; } >out 2>&1";
    EXPECT_EQ(std::system(all.c_str()), 0) << folder.Read("out");
    return folder.Read("out");
}

TEST(Depfile, LeavesOutNamesThatMakeAndNinjaReadDifferently)
{
    const TemporaryFolder folder;
    const auto file = folder.Path() / "d";
    Depfile depfile(file);
    std::string leftOut;
    for (int byte = 1; byte < 128; ++byte) {
        const std::string name = std::string("x") + static_cast<char>(byte) + "y";
        if (byte != '/' && !IsDepfileName(name) && IsPrintable(name[1]))
            leftOut += name[1];
        EXPECT_TRUE(IsDepfileName(name) || !std::isalnum(byte));
    }
    EXPECT_EQ(leftOut, "\"%&'*;<=>?[^`|");
    EXPECT_FALSE(IsDepfileName(""));

    ProblemList problems;
    depfile.Add({"out"}, {"a;b", "in", "line\nbreak"}, problems);
    depfile.Add({"out", "a|b"}, {"a;b", "in"}, problems);
    depfile.Add({"a|c"}, {"in", "alone"}, problems);
    depfile.Commit();
    EXPECT_EQ(folder.Read("d"), "out: \\\n  in\nin:\nout: \\\n  in\n");
    const std::string why = ": is left out of the dependency file, because Make and Ninja "
                            "interpret this name differently\n";
    EXPECT_EQ(FormatProblems(problems),
              "warning dependency-file: a;b" + why + "warning dependency-file: line break" + why +
                  "warning dependency-file: a|b" + why + "warning dependency-file: a|c" + why);
}

/// Each name is a target with an input of its own, and an input of the last target; none of the
/// files exists.
TEST(Depfile, MakeReadsEveryName)
{
    const TemporaryFolder folder;
    const Paths names = WritableNames();
    {
        Depfile depfile(folder.Path() / "d");
        ProblemList problems;
        for (std::size_t i = 0; i < names.size(); ++i)
            depfile.Add({names[i]}, {"in" + std::to_string(i)}, problems);
        depfile.Add({"all"}, names, problems);
        depfile.Commit();
        EXPECT_EQ(FormatProblems(problems), "");
    }
    folder.Write("xyz"); // matches the pattern "x[y]z"
    folder.Write("Makefile", "all:\ninclude d\nMakefile d: ;\n%: ; $(info <$@> <$^>)\n");
    std::string expected;
    std::string all;
    for (std::size_t i = 0; i < names.size(); ++i) {
        // Make strips a leading "./".
        std::string name = names[i].string();
        name = name.starts_with("./") ? name.substr(2) : name;
        const std::string input = "in" + std::to_string(i);
        expected += Mox::Materials::Compose("<", input, "> <>\n<", name, "> <", input, ">\n");
        all += (i > 0 ? " " : "") + name;
    }
    EXPECT_EQ(RunIn(folder, "make -rR all"),
              expected + "<all> <" + all + ">\nmake: 'all' is up to date.\n");
    EXPECT_EQ(folder.Count(), 4); // including the output
}

/// Ninja refuses outputs that the build does not know, and lists the inputs that it has read.
TEST(Depfile, NinjaReadsEveryName)
{
    const TemporaryFolder folder;
    const Paths names = WritableNames();
    Paths outputs;
    std::string build = "rule r\n  command = cp all d\n  depfile = d\n  deps = gcc\nbuild";
    std::string expected;
    for (const auto& name : names) {
        outputs.push_back("o/" + name.string());
        build += " ";
        for (const char c : outputs.back().string())
            build += (c == ' ' || c == ':' || c == '$' ? "$" : "") + std::string(1, c);
        expected += "    " + name.lexically_normal().string() + "\n";
    }
    folder.Write("build.ninja", build + ": r\n");
    ProblemList problems;
    Depfile depfile(folder.Path() / "all");
    depfile.Add(outputs, names, problems);
    depfile.Commit();
    EXPECT_EQ(FormatProblems(problems), "");
    RunIn(folder, "ninja");
    const std::string read = RunIn(folder, "ninja -t deps 'o/xAy'");
    EXPECT_EQ(read.substr(read.find('\n') + 1), expected + "\n");
}

} // namespace
