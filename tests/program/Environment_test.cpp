#include "mox/program/Environment.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Mox::Host;

TEST(Environment, EachFaultIsNamedWithItsLine)
{
    static constexpr struct
    {
        const char* Content; ///< of the root element
        const char* Failure;
    } cases[] = {
        {"words", "1: text is not allowed here"},
        {"\n<node/>", "2: only <include>, <code>, <value> and <output> are allowed here"},
        {"<code\n/>", "1: attribute \"file\" is missing"},
        {"\n<include file='environment.xml'/>", "2: the file includes itself"},
        {"<include file='a.xml' only='code'/>", "1: attribute \"only\" is not \"values\""},
        {"\n\n<value name=''/>", "3: attribute \"name\" is missing"},
        {"<value name='a' type='float5'/>", "1: \"float5\" is not a Cg type"},
        {"<value name='a' type='half' level='pixel'/>",
         "1: attribute \"level\" is neither \"vertex\" nor \"fragment\""},
        {"<value name='a' type='half'/>", "1: an element without a <body> needs exactly one <in>"},
        {"<value name='a' type='half'>\n<out/></value>",
         "2: only <in> and <body> are allowed here"},
        {"<value name='a' type='half'><body>b\n<c/></body></value>",
         "2: only text is allowed here"},
        {"<value name='a' type='half'><in name='2' type='half' value='b'/></value>",
         "1: \"2\" is not a valid Cg name"},
        {"<value name='a' type='half'><in name='b' type='half' value='c' stream='d'/></value>",
         "1: exactly one of \"stream\", \"uniform\", \"value\" and \"state\" is required"},
        {"<value name='a' type='float[1025]'/>", "1: \"float[1025]\" is not a Cg type"},
        {"<value name='a' type='half' when='b;; c'/>",
         "1: attribute \"when\" contains an empty condition"},
        {"<value name='a' type='half' when='alphaTest=Maybe'/>",
         "1: render state: attribute \"alphaTest\" is \"Maybe\", expected \"Yes\" or \"No\""},
        {"<value name='a' type='half'><in name='b' type='half' state='alphaRef'/></value>",
         "1: render state: attribute \"alphaRef\" is \"\", expected a number from 0 to 1"},
        {"<value name='a' type='half'><in name='b' type='half' uniform='c' per='day'/></value>",
         "1: attribute \"per\" is neither \"frame\" nor \"object\""},
        {"<value name='a' type='half'><in name='b' type='half' value='c' per='frame'/></value>",
         "1: \"per\" is allowed only with a \"uniform\" that is not a texture"},
        {"<value name='a' type='half'><in name='b' type='half' uniform='c' per='frame'/></value>\n"
         "<value name='d' type='half'><in name='b' type='half' uniform='c'/></value>",
         "2: the uniform \"c\" is declared as half per frame elsewhere"},
        {"<value name='a' type='half'><in name='b' type='half' uniform='c'/></value>\n"
         "<value name='d' type='half'><in name='b' type='half2' uniform='c'/></value>",
         "2: the uniform \"c\" is declared as half per object elsewhere"},
        {"<value name='a' type='float4x1'><body>b</body></value>",
         "1: \"float4x1\" is not a Cg type"},
        {"<output name='a' type='half' register='X'><body>b</body></output>",
         "1: attribute \"register\" is not one of \"VertexPosition\", \"FragmentColorOut\" or "
         "\"FragmentDepth\""},
    };
    const TemporaryFolder folder;
    const auto failure = [&](const std::string& text) {
        const auto file = folder.Write("environment.xml", text);
        return HostFailureOf([&] { ReadEnvironment(folder.Path()); })
            .substr(file.string().size() + 1);
    };
    for (const auto& [content, expected] : cases)
        EXPECT_EQ(failure(std::string("<environment version='1'>") + content + "</environment>"),
                  expected);
    EXPECT_EQ(failure("<material version='1'/>"), "1: the root element is not <environment>");
    EXPECT_EQ(failure("<environment version='2'/>"),
              "1: only version 1 of the environment format is supported");
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
