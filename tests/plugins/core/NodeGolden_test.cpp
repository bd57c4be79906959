#include "mox/Text.h"
#include "mox/host/AttributeText.h"
#include "mox/host/Plugin.h"
#include "tests/support/Failure.h"
#include "tests/support/NodeText.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <locale>

using namespace Mox;
using namespace Mox::Materials;

namespace {

/// Describes what a new node generates with the given settings and edges.
/// @param line settings, connected ports or "*" for all, and the type that the edges carry
std::string DescribeNode(const Host::Plugin& plugin, const std::string& type,
                         const std::string& line)
{
    const std::size_t edges = line.find(" | edges: ");
    const std::size_t width = line.rfind(" | ");
    const std::string settings = line.substr(0, edges);
    const auto brought = Host::ParseShaderType(line.substr(width + 3));
    const auto node = plugin.CreateNode(type).Handle();
    if (settings != "as created")
        ApplySettings(*node, settings);
    const std::string failure = FailureOf([&] { node->UpdatePorts({}); });
    ResolveAlone(*node, line.substr(edges + 10, width - edges - 10), brought->Columns,
                 brought->Component);
    const bool isGrey = node->ForegroundColour[0] != 0.0f;
    const std::string head =
        Compose("  title ", node->GetTitle(), isGrey ? ", grey" : "", "\n", DescribeState(*node));
    if (failure != "no failure")
        return Compose(head, "failure: ", failure, "\n\n");
    return Compose(head, DescribeShader(*node), node->HasBinding() ? DescribeBindings(*node) : "",
                   "\n");
}

void ExpectNodes()
{
    const Host::Plugin plugin(MOX_CORE_PLUGIN);
    for (const auto& row : plugin.Types()) {
        if (row.TypeName != "CoreDefault")
            ExpectSession("plugins/core/" + row.TypeName + ".txt", [&](const std::string& line) {
                return DescribeNode(plugin, row.TypeName, line);
            });
    }
}

TEST(NodeGolden, WhatEveryNodeWritesInEveryMode)
{
    ExpectNodes();
    const std::locale before = std::locale::global(std::locale("de_DE.UTF-8"));
    ExpectNodes(); // in this locale, numbers have a decimal comma and grouped digits
    std::locale::global(before);
}

} // namespace
