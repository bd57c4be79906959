#include "mox/program/Environment.h"
#include "tests/support/Failure.h"
#include "tests/support/Session.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Mox::Host;

TEST(Environment, EachFaultIsNamedWithItsLine)
{
    const TemporaryFolder folder;
    ExpectSession("program/environment_faults.txt", [&](const std::string& text) {
        const auto file = folder.Write("environment.xml", text);
        const std::string failure = HostFailureOf([&] { ReadEnvironment(folder.Path()); });
        return failure.substr(file.string().size() + 1) + "\n";
    });
}

TEST(Environment, OwnEntriesComeFirstAndOwnUniformsLast)
{
    const TemporaryFolder folder;
    const auto write = [&](const std::string& name, const std::string& includes,
                           const std::string& entry) {
        folder.Write(name, "<environment version='1'>" + includes + "<value name='" + entry +
                               "' type='float'><in name='i' type='float' uniform='" + entry +
                               "'/></value><output name='" + entry +
                               "' type='float4' register='FragmentColorOut'><body>b</body>"
                               "</output></environment>");
    };
    // The last file is included twice, by the first file without its outputs.
    write("environment.xml", "<include file='a.xml'/><include file='b.xml'/>", "own");
    write("a.xml", "<include file='c.xml' only='values'/>", "a");
    write("b.xml", "<include file='./c.xml'/>", "b");
    write("c.xml", "", "c");
    const Environment environment = ReadEnvironment(folder.Path());
    const auto join = [](const auto& list) {
        std::string names;
        for (const auto& item : list)
            names += item.Name + " ";
        return names;
    };
    EXPECT_EQ(join(environment.Values), "own a b c ");
    EXPECT_EQ(join(environment.Outputs), "own a b c ");
    EXPECT_EQ(join(environment.Uniforms), "c b a own ");
    EXPECT_EQ(environment.Files.size(), 4);
}

} // namespace
