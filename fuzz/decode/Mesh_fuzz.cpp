// Arbitrary mesh files: the decoding process returns a mesh, or a message that names the file. The
// first byte of the input selects the extension.

#include "fuzz/support/Choices.h"
#include "mox/decode/FileDecoder.h"
#include "mox/host/HostError.h"
#include "tests/support/Claim.h"
#include "tests/support/TemporaryFolder.h"

using namespace Mox::Host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFolder folder;
    static const FileDecoder decoder({.Limits = {.Bytes = std::uint64_t(64) << 20, .Seconds = 10}});
    Choices choices(data, size);
    const char* extensions[] = {".obj", ".gltf", ".glb"};
    const std::string name = std::string("mesh") + extensions[choices.Below(3)];
    const std::filesystem::path file = folder.Write(name, choices.Rest());
    try {
        Claim(!decoder.ReadMesh(file).Indices.empty(), "a mesh has triangles");
    } catch (const HostError& error) {
        Claim(error.Where.File == file && !error.Message.empty(), "a failure names the file");
    }
    return 0;
}
