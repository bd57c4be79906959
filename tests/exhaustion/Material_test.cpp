#include "mox/Text.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/File.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramExporter.h"
#include "mox/program/ProgramFormat.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/BuildTree.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"

#include <filesystem>
#include <memory>
#include <utility>

using namespace Mox;
using Materials::Compose;

namespace {

const std::filesystem::path example = std::filesystem::path(MOX_EXAMPLES) / "rim_light.xml";

TEST(MaterialExhaustion, DocumentsAreReadAndWrittenWholeOrNotAtAll)
{
    std::string text = Host::ReadFile(MOX_TEST_DATA "/document/everything.xml");
    const std::string longer(3000, 'y');
    text.replace(text.find("Grey"), 4, longer);
    ExpectAllOrNothing([&] {
        Host::ProblemList problems;
        const auto document = Host::ParseMaterialDocument("x.xml", text, problems);
        problems.ThrowFirstError();
        return Host::FormatMaterialDocument(document);
    });
    ExpectAllOrNothing([] { return FormatDocument(Host::ReadMaterialDocument(example)); });
}

TEST(MaterialExhaustion, EnvironmentIsReadWholeOrNotAtAll)
{
    const auto read = [] {
        const Host::Environment environment =
            Host::ReadEnvironment(Host::DefaultEnvironmentFolder());
        std::string text;
        for (const auto& code : environment.Code)
            text += code.Text + Compose(code.Provides.size(), "\n");
        for (const auto* entries : {&environment.Values, &environment.Outputs}) {
            for (const auto& entry : *entries)
                text += Compose(entry.Name, " ", entry.Inputs.size(), entry.Body, "\n");
        }
        return text;
    };
    ExpectAllOrNothing(read);
}

TEST(MaterialExhaustion, MaterialsAreLoadedAndSaved)
{
    const Host::MaterialDocument document = Host::ReadMaterialDocument(example);
    ExpectText(
        [&] {
            Host::ProblemList problems;
            const auto graph = Host::LoadMaterial(document, TestPlugins(), problems);
            return FormatDocument(graph.Document()) +
                   Host::FormatBindings(Host::CreateBindings(graph)) +
                   Compose(problems.Problems().size());
        },
        Allocations::Owner::New);
}

/// An edit that runs out of memory leaves records and nodes unchanged and succeeds once memory is
/// available.
TEST(MaterialExhaustion, EditsAreDoneAndUndoneWholeOrNotAtAll)
{
    struct Subject
    {
        std::unique_ptr<Host::MaterialGraph> Graph;
        Host::DocumentChange Inverse;
    };
    using Materials::GuiPropertyKind;
    const std::string material = R"(
        a CoreMaths; Function=Lerp
        b CoreMaths
        c CoreMaths; PositionX=1
        t CoreTexture; Colour Type=Vector
        r CoreTexture; Reference=t
        x Alien; Twin:node=a
        c.out_value -> b.in_value2
        b.out_value -> a.in_blend
        r.out_alpha -> a.in_value1
        x.p -> a.in_value2
    )";
    const std::string circles = R"(
        u CoreTexture; Reference=v
        v CoreTexture; Reference=u
        d CoreMaths
        a.out_value -> d.in_value1
        d.out_value -> c.in_value1
    )";
    const Host::GraphChange change{{
        Host::AddNode{{"n", "CoreMaths", 0, {}}, "b"},
        Host::AddEdge{{"a", "out_value", "n", "in_value1"}, {}, {}},
        Host::AddEdge{{"n", "out_value", "b", "in_value1"}, "b", "in_value2"},
        Host::SetProperties{{{"a", {"Function", GuiPropertyKind::Enum, "Abs"}},
                             {"t", {"Colour Type", GuiPropertyKind::Enum, "Component"}},
                             {"c", {"PositionX", GuiPropertyKind::Float, "3"}}}},
        Host::RemoveEdge{{"c", "out_value", "b", "in_value2"}},
        Host::RenameNode{"t", "texture"},
        Host::RemoveNode{"x"},
        Host::SetBinding{{"texture", "paint", {{"default", "rock.png"}}}},
        Host::SetDescription{{{"name", "rock"}}},
    }};
    const auto describe = [](const Subject& subject) { return DescribeGraph(*subject.Graph); };
    const auto load = [](const std::string& text) {
        return Subject{std::make_unique<Host::MaterialGraph>(MaterialFromText(text),
                                                             Host::NodeMaker(TestPlugins())),
                       {}};
    };
    for (const std::string& text : {material, material + circles}) {
        ExpectSurvival(
            Allocations::Owner::New, [&] { return load(text); },
            [&](Subject& subject) { subject.Graph->Apply(change); }, describe, ExpectUnchanged);
    }
    ExpectSurvival(
        Allocations::Owner::New,
        [&] {
            Subject edited = load(material);
            edited.Inverse = edited.Graph->Apply(change);
            return edited;
        },
        [](Subject& subject) { subject.Graph->Undo(subject.Inverse); }, describe, ExpectUnchanged);
}

TEST(MaterialExhaustion, MaterialsAreExported)
{
    std::vector<std::unique_ptr<Host::ProgramFormat>> formats;
    formats.push_back(std::make_unique<Host::CgFormat>());
    const Host::ProgramExporter exporter(TestPlugins(), TestEnvironment(), {true},
                                         std::move(formats));
    ExpectText(
        [&] {
            const Host::ExportedMaterial exported = exporter.Export(example);
            exported.Problems.ThrowFirstError();
            std::string text;
            for (const auto& problem : exported.Problems.Problems())
                text += problem.Format() + "\n";
            for (const auto& program : exported.Texts)
                text += program;
            return text;
        },
        Allocations::Owner::New);
}

} // namespace
