#include "EditorPainter.h"

#include "mox/Text.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/Excerpt.h"
#include "mox/preview/MeshShapes.h"
#include "mox/preview/PreviewBindings.h"
#include "mox/preview/TextureLoader.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <glm/gtc/packing.hpp>
#include <optional>
#include <utility>

namespace Mox::Tool {

namespace {

using Materials::Compose;

/// The maximum width and height of a texture that common browsers support.
constexpr std::uint32_t largestSide = 8192;
constexpr std::uint32_t largestVolume = 2048;

/// Maps a sampler type to a texture shape. Browsers do not support 1D textures, so programs sample
/// 2D textures instead.
Host::TextureShape ShapeOf(const std::string& sampler)
{
    if (sampler == "sampler1D" || sampler == "sampler2D")
        return Host::TextureShape::Plane;
    if (sampler == "samplerCUBE")
        return Host::TextureShape::Cube;
    if (sampler == "sampler3D")
        return Host::TextureShape::Volume;
    throw Host::HostError(
        {}, Compose("the editor does not support textures of the type ", Host::Excerpt(sampler)));
}

std::optional<Host::TextureSettings> FindTexture(const Host::MaterialDocument& document,
                                                 const std::string& tag,
                                                 const Host::PluginSet& plugins)
{
    Host::ProblemList problems; // not reported, since they do not concern the texture
    Host::MaterialGraph graph = Host::LoadMaterial(document, plugins, problems);
    Host::ResolveGraph(graph, problems);
    for (const Host::PluginBinding& binding : Host::CreateBindings(graph)) {
        if (binding.Tag() == tag && binding.Texture())
            return *binding.Texture();
    }
    return std::nullopt;
}

/// Appends the texels; 32-bit floats are converted to 16-bit floats.
void Append(const Host::TextureImage& image, std::vector<std::uint8_t>& bytes)
{
    const auto* begin = reinterpret_cast<const std::uint8_t*>(image.Bytes.data());
    if (image.Format == Host::TexelFormat::Unorm8) {
        bytes.insert(bytes.end(), begin, begin + image.Bytes.size());
        return;
    }
    for (std::size_t at = 0; at < image.Bytes.size(); at += sizeof(float)) {
        float value = 0;
        std::memcpy(&value, begin + at, sizeof value);
        const std::uint16_t half = glm::packHalf1x16(value);
        bytes.push_back(static_cast<std::uint8_t>(half & 0xff));
        bytes.push_back(static_cast<std::uint8_t>(half >> 8));
    }
}

Host::DecodeSettings LimitMeshes(Host::DecodeSettings settings)
{
    constexpr std::uint64_t mostBytes = 64U << 20U;
    settings.Limits.Bytes = std::min(settings.Limits.Bytes, mostBytes);
    return settings;
}

template <class Value>
void AppendValues(const std::vector<Value>& values, std::vector<std::uint8_t>& bytes)
{
    const auto* begin = reinterpret_cast<const std::uint8_t*>(values.data());
    bytes.insert(bytes.end(), begin, begin + values.size() * sizeof(Value));
}

template <class Vector>
void AddStream(const char* name, const std::vector<Vector>& values, Host::LoadedMesh& mesh)
{
    if (values.empty())
        return;
    mesh.Streams.push_back({name, static_cast<std::uint32_t>(Vector::length())});
    AppendValues(values, mesh.Bytes);
}

} // namespace

EditorPainter::EditorPainter(const Host::PluginSet& plugins, Host::Environment environment,
                             const Host::DecodeSettings& settings)
    : _plugins(plugins), _environment(std::move(environment)), _files(settings),
      _meshes(LimitMeshes(settings))
{}

Host::Picture EditorPainter::Draw(const Host::MaterialDocument& document,
                                  const Host::PictureRequest& request, Host::ProblemList& problems)
{
    const std::optional<Host::Mesh> mesh = Host::FindShape(request.Mesh);
    if (!mesh) {
        throw Host::HostError({}, Compose("unknown mesh ", Host::Excerpt(request.Mesh),
                                          "; expected \"sphere\", \"plane\" or \"cube\""));
    }
    for (const auto& [name, value] : request.Values) {
        if (!Host::ParseNumbers(value)) {
            throw Host::HostError({}, Compose(Host::Excerpt(value), " is not a valid value for \"",
                                              name, "\"; expected numbers separated by commas"));
        }
    }
    Host::PreviewOptions options;
    options.Width = request.Width;
    options.Height = request.Height;
    options.FirstFrame = request.Frame;
    options.Values = request.Values;
    options.Node = request.Node;
    if (!_preview)
        _preview = std::make_unique<Host::MaterialPreview>(_plugins, _environment, _files);
    return _preview->RenderMaterial(document, *mesh, options, problems);
}

Host::LoadedTexture EditorPainter::Load(const Host::MaterialDocument& document,
                                        const std::string& tag, const std::string& sampler,
                                        Host::ProblemList& problems)
{
    Host::LoadedTexture texture;
    for (const Host::TextureImage& level : LoadLevels(document, tag, ShapeOf(sampler), problems)) {
        texture.Format = level.Format == Host::TexelFormat::Unorm8 ? "unorm8" : "half";
        texture.Levels.push_back({level.Width, level.Height, level.Layers});
        Append(level, texture.Bytes);
    }
    return texture;
}

Host::LoadedMesh EditorPainter::ReadMesh(const std::string& name, std::string_view bytes)
{
    Host::Mesh mesh = _meshes.ReadMesh(name, bytes);
    mesh.ViewFrom = Host::meshFileView;
    return PackMesh(mesh);
}

Host::LoadedMesh PackMesh(const Host::Mesh& mesh)
{
    Host::LoadedMesh packed;
    packed.Name = mesh.Name;
    packed.VertexCount = mesh.Positions.size();
    packed.IndexCount = mesh.Indices.size();
    AddStream("position", mesh.Positions, packed);
    AddStream("normal", mesh.Normals, packed);
    AddStream("tangent", mesh.Tangents, packed);
    AddStream("binormal", mesh.Binormals, packed);
    for (const auto& set : mesh.UvSets)
        AddStream("uv", set, packed);
    for (const auto& set : mesh.ColourSets)
        AddStream("colour", set, packed);
    AppendValues(mesh.Indices, packed.Bytes);
    std::copy_n(&mesh.ViewFrom.x, 3, packed.ViewFrom);
    return packed;
}

std::vector<Host::TextureImage> EditorPainter::LoadLevels(const Host::MaterialDocument& document,
                                                          const std::string& tag,
                                                          Host::TextureShape shape,
                                                          Host::ProblemList& problems)
{
    const auto settings = FindTexture(document, tag, _plugins);
    if (!settings && tag == "lightPanorama") { // provided by the environment
        if (_studio.empty())
            _studio = Host::PrepareLight(Host::MakeStudioImage(), false).Levels;
        return _studio;
    }
    if (!settings) {
        throw Host::HostError({},
                              Compose("the material has no texture binding ", Host::Excerpt(tag)));
    }
    Host::TextureLoader loader(_files, std::filesystem::path(document.File).parent_path(),
                               {largestSide, largestVolume}, problems);
    return loader.Load(*settings, shape);
}

} // namespace Mox::Tool
