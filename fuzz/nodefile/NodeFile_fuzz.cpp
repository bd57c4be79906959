// Arbitrary node files: each is refused with a place and a one-line message, or defines a type
// whose nodes build their ports and write functions that end where they should.

#include "mox/cg/Module.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFileReader.h"
#include "mox/program/CgWriter.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "plugins/library/FileNode.h"
#include "tests/support/Claim.h"

#include <algorithm>
#include <memory>

using namespace Mox::Host;
using namespace Mox::Materials;

namespace {

void ClaimClear(const HostError& error)
{
    const std::string line = error.what();
    Claim(line.starts_with("fuzz.xml") && !error.Message.empty(), "a failure names the file");
    Claim(MessageLine(line).size() < 5000, "a failure is one line of bearable length");
}

/// A function that is valid Cg must remain a single function, whatever its body contains.
void ClaimClosed(const ShaderNode& function)
{
    const auto module = Mox::Cg::ReadModule(
        Compose(FormatSignature(function.Name, function.Inputs, function.Outputs), "\n{\n",
                function.Code, "}\n"));
    Claim(!module->Errors.empty() || (module->Functions.size() == 1 && module->Uniforms.empty() &&
                                      module->Structs.empty()),
          "a body stays in its function");
}

void ClaimWrites(GuiNode& node)
{
    for (GuiPort& port : node.InputPorts)
        port.Connected = true;
    node.ResolveComponentCounts();
    node.ResolvePrecisions();
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    try {
        CallLibrary(Place("fuzz.xml"), [&] { node.GenerateShader(generator); });
    } catch (const HostError& error) {
        ClaimClear(error); // such as a value that no source provides
        return;
    }
    for (const ShaderNodeHandle& shader : graph.Nodes) {
        if (shader->Kind == ShaderNodeKind::Function && !shader->Outputs.empty())
            ClaimClosed(*shader);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::shared_ptr<const NodeFile> file;
    try {
        file = std::make_shared<const NodeFile>(
            ParseNodeFile("fuzz.xml", {reinterpret_cast<const char*>(data), size}));
    } catch (const HostError& error) {
        ClaimClear(error);
        return 0;
    }
    if (file->IsCompiled)
        return 0;
    const auto all = ListSettings(*file);
    Claim(!all.empty(), "a node has settings that can be listed");
    FileNode node(file);
    for (std::size_t i = 0; i < std::min<std::size_t>(all.size(), 16); ++i) {
        for (const auto& [name, value] : all[i]) {
            GuiProperty& property = *node.Properties->Get(name);
            if (property.Kind == GuiPropertyKind::Enum)
                property.SetEnum(value);
            else
                property.SetBool(value == "true");
        }
        node.UpdatePorts({});
        ClaimWrites(node);
    }
    return 0;
}
