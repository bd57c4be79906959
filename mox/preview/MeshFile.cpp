#include "mox/preview/MeshFile.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/preview/MeshShapes.h"

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <array>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <locale>
#include <span>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr unsigned int preparation =
    aiProcess_Triangulate | aiProcess_SortByPType | aiProcess_GenSmoothNormals |
    aiProcess_CalcTangentSpace | aiProcess_PreTransformVertices | aiProcess_JoinIdenticalVertices |
    aiProcess_ValidateDataStructure;

bool IsMeshFile(const std::filesystem::path& file)
{
    constexpr std::array extensions = {".obj", ".gltf", ".glb"};
    return std::any_of(extensions.begin(), extensions.end(), [&](const char* extension) {
        return boost::iequals(file.extension().string(), extension, std::locale::classic());
    });
}

glm::vec3 ToVector(const aiVector3D& vector)
{
    return {vector.x, vector.y, vector.z};
}

/// Joins the parts of a scene.
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

Mesh ReadMesh(const std::filesystem::path& file)
{
    const Place where{file.string(), 0, {}, {}};
    if (!IsMeshFile(file))
        throw HostError(where,
                        "is neither sphere, plane nor cube, nor an .obj, .gltf or .glb file");
    if (!std::filesystem::exists(file))
        throw HostError(where, "cannot be read: there is no such file");
    Assimp::Importer importer;
    // Only triangles are drawn.
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    const aiScene* scene = importer.ReadFile(file.string(), preparation);
    if (!scene)
        throw HostError(where, Compose("cannot be read: ", importer.GetErrorString()));
    Mesh mesh = MeshJoiner(*scene).Join();
    if (mesh.Indices.empty())
        throw HostError(where, "the mesh has no triangles");
    mesh.Name = file.filename().string();
    mesh.ViewFrom = {0.5f, 0.4f, 1.0f};
    return mesh;
}

Mesh FindMesh(const std::string& nameOrFile)
{
    if (nameOrFile == "sphere")
        return MakeSphere();
    if (nameOrFile == "plane")
        return MakePlane();
    if (nameOrFile == "cube")
        return MakeCube();
    return ReadMesh(nameOrFile);
}

} // namespace Mox::Host
