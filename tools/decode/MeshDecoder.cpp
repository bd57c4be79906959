#include "tools/decode/MeshDecoder.h"

#include "mox/decode/DecodedFile.h"

#include <algorithm>
#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <assimp/Importer.hpp>
#include <assimp/MemoryIOWrapper.h>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <exception>
#include <map>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Mox::Host {

namespace {

/// All files that assimp can access: the mesh, and the buffers that a glTF file refers to.
class MeshInput : public Assimp::IOSystem
{
public:
    /// @param name of the mesh for assimp
    /// @param file must outlive the object
    MeshInput(std::string name, FileBytes file, ReadBeside readBeside)
        : _name(std::move(name)), _file(file), _readBeside(std::move(readBeside))
    {}

    bool Exists(const char* name) const override { return name == _name; }
    char getOsSeparator() const override { return '/'; }

    /// @returns null if the file cannot be opened; Failure returns the reason
    Assimp::IOStream* Open(const char* name, const char*) override
    {
        FileBytes bytes = _file;
        if (name != _name) {
            if (!_readBeside)
                return nullptr;
            try {
                auto buffer = _buffers.find(name);
                if (buffer == _buffers.end())
                    buffer = _buffers.emplace(name, _readBeside(name)).first;
                bytes = buffer->second;
            } catch (const DecodeError& error) {
                _failure = error.what();
                return nullptr;
            }
        }
        return new Assimp::MemoryIOStream(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                          bytes.size());
    }

    void Close(Assimp::IOStream* stream) override { delete stream; }

    /// The reason that a file could not be opened, or an empty string.
    const std::string& Failure() const { return _failure; }

private:
    std::string _name;
    FileBytes _file;
    ReadBeside _readBeside;
    std::map<std::string, std::vector<std::byte>> _buffers;
    std::string _failure;
};

constexpr unsigned int preparation =
    aiProcess_Triangulate | aiProcess_SortByPType | aiProcess_GenSmoothNormals |
    aiProcess_CalcTangentSpace | aiProcess_PreTransformVertices | aiProcess_JoinIdenticalVertices |
    aiProcess_ValidateDataStructure;

/// Unregisters all other importers, among which assimp would choose by a file's name and content.
void KeepImporters(Assimp::Importer& importer, std::string_view extension)
{
    for (std::size_t i = importer.GetImporterCount(); i-- > 0;) {
        const std::string_view extensions = importer.GetImporterInfo(i)->mFileExtensions;
        if (extensions.find(extension) == extensions.npos)
            importer.UnregisterLoader(importer.GetImporter(i));
    }
}

/// @returns a file name from which assimp detects the format
std::string NameMesh(FileBytes file, MeshFormat format)
{
    if (format == MeshFormat::Obj)
        return "mesh.obj";
    if (StartsWith(file, "glTF"))
        return "mesh.glb";
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == text.npos || text[first] != '{')
        throw DecodeError("it is not a glTF file");
    return "mesh.gltf";
}

[[noreturn]] void ThrowFailure(const Assimp::Importer& importer)
{
    if (importer.GetException()) {
        try {
            std::rethrow_exception(importer.GetException());
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception&) {
            // The importer has the same message.
        }
    }
    throw DecodeError(importer.GetErrorString());
}

glm::vec3 ToVector(const aiVector3D& vector)
{
    return {vector.x, vector.y, vector.z};
}

/// Merges the parts of a scene.
class MeshJoiner
{
public:
    explicit MeshJoiner(const aiScene& scene) : _parts(scene.mMeshes, scene.mNumMeshes)
    {
        for (const aiMesh* part : _parts) {
            _uvSets = std::max(_uvSets, part->GetNumUVChannels());
            _colourSets = std::max(_colourSets, part->GetNumColorChannels());
        }
        _mesh.UvSets.resize(_uvSets);
        _mesh.ColourSets.resize(_colourSets);
    }

    /// The size of the merged mesh.
    std::uint64_t CountBytes() const
    {
        const std::size_t vectors = _uvSets > 0 ? 4 : 2;
        const std::uint64_t vertexSize = vectors * sizeof(glm::vec3) + _uvSets * sizeof(glm::vec2) +
                                         _colourSets * sizeof(glm::vec4);
        std::uint64_t bytes = 0;
        for (const aiMesh* part : _parts) {
            bytes += part->mNumVertices * vertexSize +
                     std::uint64_t(part->mNumFaces) * 3 * sizeof(std::uint32_t);
        }
        return bytes;
    }

    Mesh Join()
    {
        for (const aiMesh* part : _parts) {
            if ((part->mPrimitiveTypes & aiPrimitiveType_TRIANGLE) != 0)
                Append(*part);
        }
        return std::move(_mesh);
    }

private:
    void Append(const aiMesh& part)
    {
        const auto first = static_cast<std::uint32_t>(_mesh.Positions.size());
        for (unsigned int i = 0; i < part.mNumVertices; ++i) {
            _mesh.Positions.push_back(ToVector(part.mVertices[i]));
            _mesh.Normals.push_back(ToVector(part.mNormals[i]));
            if (_uvSets > 0)
                AppendTangents(part, i);
        }
        for (unsigned int set = 0; set < _uvSets; ++set) {
            for (unsigned int i = 0; i < part.mNumVertices; ++i) {
                _mesh.UvSets[set].emplace_back(part.HasTextureCoords(set)
                                                   ? ToVector(part.mTextureCoords[set][i])
                                                   : glm::vec3(0.0f));
            }
        }
        for (unsigned int set = 0; set < _colourSets; ++set) {
            for (unsigned int i = 0; i < part.mNumVertices; ++i) {
                const aiColor4D white(1.0f, 1.0f, 1.0f, 1.0f);
                const aiColor4D& colour = part.HasVertexColors(set) ? part.mColors[set][i] : white;
                _mesh.ColourSets[set].emplace_back(colour.r, colour.g, colour.b, colour.a);
            }
        }
        for (const aiFace& face : std::span(part.mFaces, part.mNumFaces)) {
            for (const unsigned int index : std::span(face.mIndices, face.mNumIndices))
                _mesh.Indices.push_back(first + index);
        }
    }

    void AppendTangents(const aiMesh& part, unsigned int vertex)
    {
        const bool hasTangents = part.HasTangentsAndBitangents();
        _mesh.Tangents.push_back(hasTangents ? ToVector(part.mTangents[vertex]) : glm::vec3(0.0f));
        _mesh.Binormals.push_back(hasTangents ? ToVector(part.mBitangents[vertex])
                                              : glm::vec3(0.0f));
    }

    std::span<const aiMesh* const> _parts;
    unsigned int _uvSets = 0;
    unsigned int _colourSets = 0;
    Mesh _mesh;
};

} // namespace

Mesh DecodeMesh(FileBytes file, MeshFormat format, const ReadBeside& readBeside,
                const DecodeLimits& limits)
{
    const std::string name = NameMesh(file, format);
    Assimp::Importer importer;
    KeepImporters(importer, format == MeshFormat::Obj ? "obj" : "gltf");
    auto* input = new MeshInput(name, file, readBeside);
    importer.SetIOHandler(input); // takes ownership
    // Removes points and lines, which are not drawn.
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    const aiScene* scene = importer.ReadFile(name, preparation);
    if (!input->Failure().empty())
        throw DecodeError(input->Failure());
    if (!scene)
        ThrowFailure(importer);
    MeshJoiner joiner(*scene);
    if (joiner.CountBytes() > limits.Bytes) {
        throw DecodeError("the mesh takes more memory than the limit of " +
                          std::to_string(limits.Bytes >> 20) + " MB");
    }
    Mesh mesh = joiner.Join();
    if (mesh.Indices.empty())
        throw DecodeError("the mesh has no triangles");
    return mesh;
}

} // namespace Mox::Host
