// Responses of a decoding program: each yields a valid image or mesh, or a message.

#include "mox/decode/DecodedFile.h"
#include "mox/decode/DecodedStream.h"
#include "tests/support/Claim.h"
#include "tests/support/Tape.h"

#include <algorithm>

using namespace Mox::Host;

namespace {

const DecodeLimits limits = {.Side = 256, .Bytes = 1 << 20};

void ClaimMesh(const Mesh& mesh)
{
    const std::size_t count = mesh.Positions.size();
    Claim(mesh.Normals.size() == count, "each vertex has a normal");
    Claim(mesh.Tangents.size() == mesh.Binormals.size() &&
              (mesh.Tangents.empty() || mesh.Tangents.size() == count),
          "all vertices have tangents and binormals, or none has");
    for (const auto& set : mesh.UvSets)
        Claim(set.size() == count, "each vertex has its uv");
    for (const auto& set : mesh.ColourSets)
        Claim(set.size() == count, "each vertex has its colours");
    Claim(!mesh.Indices.empty() && mesh.Indices.size() % 3 == 0, "there are triangles");
    Claim(std::ranges::all_of(mesh.Indices, [&](std::uint32_t index) { return index < count; }),
          "triangles have vertices of the mesh");
}

void ClaimImage(const TextureImage& image)
{
    Claim(image.Width > 0 && image.Width <= limits.Side && image.Height > 0 &&
              image.Height <= limits.Side,
          "an image is within its limits");
    Claim(image.Bytes.size() == std::size_t(image.Width) * image.Height * SizeOfTexel(image.Format),
          "an image has all its texels");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (const bool isMesh : {false, true}) {
        Tape tape(std::as_bytes(std::span(data, size)));
        try {
            if (isMesh)
                ClaimMesh(ReadMesh(tape.Reader(), limits));
            else
                ClaimImage(ReadImage(tape.Reader(), limits));
        } catch (const DecodeError&) {
            continue; // not of this kind
        }
    }
    return 0;
}
