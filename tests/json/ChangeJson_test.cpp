#include "mox/Text.h"
#include "mox/json/ChangeJson.h"
#include "mox/json/JsonText.h"
#include "tests/support/DocumentMaker.h"
#include "tests/support/Failure.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

/// Steps of every kind, built from the records of a document.
GraphChange ChangeFrom(const MaterialDocument& document)
{
    GraphChange change;
    SetProperties set;
    for (const DocumentNode& node : document.Nodes) {
        change.Steps.emplace_back(AddNode{node, "b\"e\tfore"});
        for (const DocumentProperty& property : node.Properties)
            set.Settings.push_back({node.Id, property});
        change.Steps.emplace_back(RenameNode{node.Id, "ünï"});
        change.Steps.emplace_back(RemoveNode{node.Id});
    }
    change.Steps.emplace_back(set);
    for (const DocumentEdge& edge : document.Edges) {
        change.Steps.emplace_back(AddEdge{edge, edge.Head, "/~"});
        change.Steps.emplace_back(SetPoints{edge});
        change.Steps.emplace_back(RemoveEdge{edge});
    }
    for (const DocumentBinding& binding : document.Bindings) {
        change.Steps.emplace_back(SetBinding{binding});
        change.Steps.emplace_back(RemoveBinding{binding.Stream, binding.Tag});
    }
    for (const DocumentAnnotation& annotation : document.Annotations) {
        change.Steps.emplace_back(AddAnnotation{annotation});
        change.Steps.emplace_back(SetAnnotation{annotation});
        change.Steps.emplace_back(RemoveAnnotation{annotation.Id});
    }
    change.Steps.emplace_back(SetDescription{document.Description});
    change.Steps.emplace_back(SetRenderState{document.RenderState});
    return change;
}

/// A test file contains invalid changes as JSON with the expected message for each.
TEST(ChangeJson, RefusesWhatItDoesNotExpect)
{
    ExpectSession("json/refusals.txt", [](const std::string& text) {
        return HostFailureOf([&] { ParseChangeJson(text, "c.json"); }) + "\n";
    });
}

TEST(ChangeJson, ReadsBackWhatItWrites)
{
    Random random(DrawSeed());
    for (int i = 0; i < 50; ++i) {
        ProblemList problems;
        const std::string text = FormatMaterialDocument(DocumentMaker(random).Make());
        const GraphChange change = ChangeFrom(ParseMaterialDocument("x", text, problems));
        const std::string json = FormatChangeAsJson(change);
        const GraphChange again = ParseChangeJson(json, "c.json");
        ASSERT_EQ(FormatChangeAsJson(again), json);
        ASSERT_EQ(again.Format(), change.Format());
    }
}

TEST(ChangeJson, RefusesWhatWouldTakeTooMuch)
{
    const auto repeat = [](const std::string& text, std::size_t count) {
        std::string all;
        for (std::size_t i = 0; i < count; ++i)
            all += text;
        return all;
    };
    std::string members;
    for (int i = 0; i < 65; ++i)
        members += Compose(i == 0 ? "{" : ",", "\"", i, "\":0");
    const JsonLimits limits = {.Bytes = 1'000'000, .Depth = 16, .Values = 1000, .Members = 64};
    const std::pair<std::string, std::string> cases[] = {
        {repeat("[", 100'000), "x: arrays and objects are nested more than 16 levels deep"},
        {repeat("{\"a\":", 100'000), "x: arrays and objects are nested more than 16 levels deep"},
        {"[" + repeat("0,", 1001), "x: more than 1000 values"},
        {members + "}", "x: an object has more than 64 members"},
        {std::string(1'000'001, ' '), "x: more than 1000000 bytes"},
        {"[\n \"\xff\"]", "x:2:3: invalid JSON: syntax error while parsing value - invalid "
                          "string: ill-formed UTF-8 byte; last read: '\"\xff'"},
        {std::string("[1]\0[", 5), "x:1:4: invalid JSON: it contains a null byte"},
    };
    for (const auto& example : cases)
        EXPECT_EQ(HostFailureOf([&] { ParseJson(example.first, "x", limits); }), example.second);
}

} // namespace
