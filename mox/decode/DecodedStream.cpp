#include "mox/decode/DecodedStream.h"

#include "mox/decode/DecodedFile.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Mox::Host {

namespace {

constexpr std::array<char, 8> magic = {'m', 'o', 'x', 'd', 'e', 'c', '0', '1'};
constexpr std::size_t longestMessage = 1000;
constexpr std::uint32_t mostSets = 8; ///< limit for uv sets, and for colour sets

enum class AnswerKind : std::uint32_t
{
    Failure = 1,
    Image = 2,
    Mesh = 3,
};

struct AnswerHeader
{
    std::array<char, 8> Magic = magic;
    AnswerKind Kind = AnswerKind::Failure;
    std::uint32_t MessageLength = 0;
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    TexelFormat Format = TexelFormat::Unorm8;
    std::uint32_t VertexCount = 0;
    std::uint32_t IndexCount = 0;
    std::uint32_t UvSetCount = 0;
    std::uint32_t ColourSetCount = 0;
    std::uint32_t HasTangents = 0; ///< 0 or 1
};
static_assert(std::has_unique_object_representations_v<AnswerHeader>);

template <class Value>
void WriteAll(const std::vector<Value>& values, const WriteBytes& write)
{
    write(std::as_bytes(std::span(values)));
}

void WriteHeader(const AnswerHeader& header, const WriteBytes& write)
{
    write(std::as_bytes(std::span(&header, 1)));
}

template <class Value>
std::vector<Value> ReadAll(std::size_t count, const ReadBytes& read)
{
    std::vector<Value> values(count);
    read(std::as_writable_bytes(std::span(values)));
    return values;
}

void Require(bool holds)
{
    if (!holds)
        throw DecodeError("the output of the decoder is invalid");
}

/// A decoder's message may contain parts of the file, so unprintable characters are replaced.
std::string ReadMessage(const AnswerHeader& header, const ReadBytes& read)
{
    Require(header.MessageLength <= longestMessage);
    std::string message(header.MessageLength, ' ');
    read(std::as_writable_bytes(std::span(message)));
    const auto isPlain = [](char letter) { return letter >= ' ' && letter <= '~'; };
    std::replace_if(message.begin(), message.end(), std::not_fn(isPlain), '?');
    return message;
}

/// @throws DecodeError unless the response is of this kind
AnswerHeader ReadHeader(const ReadBytes& read, AnswerKind kind)
{
    AnswerHeader header;
    read(std::as_writable_bytes(std::span(&header, 1)));
    Require(header.Magic == magic);
    if (header.Kind == AnswerKind::Failure)
        throw DecodeError(ReadMessage(header, read));
    Require(header.Kind == kind);
    return header;
}

/// The size of a mesh, computed from numbers that cannot overflow 64 bits.
std::uint64_t CountBytes(const AnswerHeader& header)
{
    const std::uint64_t vectors = header.HasTangents == 1 ? 4 : 2;
    return header.VertexCount *
               (vectors * sizeof(glm::vec3) + header.UvSetCount * sizeof(glm::vec2) +
                header.ColourSetCount * sizeof(glm::vec4)) +
           std::uint64_t(header.IndexCount) * sizeof(std::uint32_t);
}

bool IsFinite(const glm::vec3& vector)
{
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

} // namespace

void WriteImage(const TextureImage& image, const WriteBytes& write)
{
    AnswerHeader header;
    header.Kind = AnswerKind::Image;
    header.Width = image.Width;
    header.Height = image.Height;
    header.Format = image.Format;
    WriteHeader(header, write);
    WriteAll(image.Bytes, write);
}

void WriteMesh(const Mesh& mesh, const WriteBytes& write)
{
    AnswerHeader header;
    header.Kind = AnswerKind::Mesh;
    header.VertexCount = static_cast<std::uint32_t>(mesh.Positions.size());
    header.IndexCount = static_cast<std::uint32_t>(mesh.Indices.size());
    header.UvSetCount = static_cast<std::uint32_t>(mesh.UvSets.size());
    header.ColourSetCount = static_cast<std::uint32_t>(mesh.ColourSets.size());
    header.HasTangents = mesh.Tangents.empty() ? 0 : 1;
    WriteHeader(header, write);
    WriteAll(mesh.Positions, write);
    WriteAll(mesh.Normals, write);
    WriteAll(mesh.Tangents, write);
    WriteAll(mesh.Binormals, write);
    for (const auto& set : mesh.UvSets)
        WriteAll(set, write);
    for (const auto& set : mesh.ColourSets)
        WriteAll(set, write);
    WriteAll(mesh.Indices, write);
}

void WriteFailure(const std::string& message, const WriteBytes& write)
{
    const std::string text = message.substr(0, longestMessage);
    AnswerHeader header;
    header.MessageLength = static_cast<std::uint32_t>(text.size());
    WriteHeader(header, write);
    write(std::as_bytes(std::span(text)));
}

TextureImage ReadImage(const ReadBytes& read, const DecodeLimits& limits)
{
    const AnswerHeader header = ReadHeader(read, AnswerKind::Image);
    Require(header.Format == TexelFormat::Unorm8 || header.Format == TexelFormat::Float);
    Require(header.Width > 0 && header.Width <= limits.Side);
    Require(header.Height > 0 && header.Height <= limits.Side);
    const std::uint64_t texels = std::uint64_t(header.Width) * header.Height;
    Require(texels <= limits.Bytes / SizeOfTexel(header.Format));
    return {header.Width, header.Height, header.Format,
            ReadAll<std::byte>(texels * SizeOfTexel(header.Format), read)};
}

Mesh ReadMesh(const ReadBytes& read, const DecodeLimits& limits)
{
    const AnswerHeader header = ReadHeader(read, AnswerKind::Mesh);
    Require(header.UvSetCount <= mostSets && header.ColourSetCount <= mostSets);
    Require(header.HasTangents <= 1);
    Require(header.IndexCount > 0 && header.IndexCount % 3 == 0);
    Require(CountBytes(header) <= limits.Bytes);
    const std::size_t count = header.VertexCount;
    Mesh mesh;
    mesh.Positions = ReadAll<glm::vec3>(count, read);
    mesh.Normals = ReadAll<glm::vec3>(count, read);
    if (header.HasTangents == 1) {
        mesh.Tangents = ReadAll<glm::vec3>(count, read);
        mesh.Binormals = ReadAll<glm::vec3>(count, read);
    }
    for (std::uint32_t i = 0; i < header.UvSetCount; ++i)
        mesh.UvSets.push_back(ReadAll<glm::vec2>(count, read));
    for (std::uint32_t i = 0; i < header.ColourSetCount; ++i)
        mesh.ColourSets.push_back(ReadAll<glm::vec4>(count, read));
    mesh.Indices = ReadAll<std::uint32_t>(header.IndexCount, read);
    Require(std::all_of(mesh.Indices.begin(), mesh.Indices.end(),
                        [count](std::uint32_t index) { return index < count; }));
    if (!std::all_of(mesh.Positions.begin(), mesh.Positions.end(), IsFinite))
        throw DecodeError("a vertex position is not finite");
    return mesh;
}

} // namespace Mox::Host
