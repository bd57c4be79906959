#include "mox/preview/MaterialPreview.h"

#include "mox/Text.h"
#include "mox/bindings/DocumentKeys.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/NodeMaker.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/preview/Background.h"
#include "mox/preview/DrawBuilder.h"
#include "mox/preview/NodeProbe.h"
#include "mox/preview/Renderer.h"
#include "mox/program/FunctionBody.h"
#include "mox/program/MaterialProgram.h"

#include <algorithm>

namespace Mox::Host {

/// A material that is ready to be drawn.
struct PreparedMaterial
{
    CompiledProgram Program;
    PreviewBindings Bindings;
    bool IsPart; ///< the program shows single nodes, so some bindings may be missing
};

namespace {

using Materials::Compose;
namespace DocumentKeys = Materials::DocumentKeys;

constexpr ProblemRule materialRule = "material";
constexpr float framesPerSecond = 30.0f;
constexpr std::size_t bytesPerPixel = 4;

/// Makes the program to be rendered: that of the material, or of some nodes.
class PreviewJob
{
public:
    PreviewJob(const PluginSet& plugins, const Environment& environment,
               const ProgramCompiler& compiler, const MaterialDocument& document,
               ProblemList& problems)
        : _compiler(compiler), _environment(environment), _document(document), _problems(problems),
          _maker([&plugins](const std::string& type, const Place& where) {
              PluginNode probe = NodeProbe::Create(type, where);
              return probe ? probe : plugins.CreateNode(type, where);
          })
    {}

    /// @returns nothing if there is an error
    std::optional<PreparedMaterial> PrepareMaterial()
    {
        return Finish(Load(_document), _environment, false);
    }

    /// @param nodes each "id" or "id.port"
    /// @returns nothing if there is an error
    std::optional<PreparedMaterial> PrepareNodes(std::span<const std::string> nodes)
    {
        std::vector<ProbedOutput> outputs;
        outputs.reserve(nodes.size());
        for (const std::string& node : nodes)
            outputs.push_back(FindNodeOutput(_document, node));
        MaterialGraph graph = Load(CutUpstream(_document, outputs));
        GraphChange probes;
        for (std::size_t i = 0; i < outputs.size(); ++i)
            AddProbe(graph, outputs[i], i, probes);
        graph.Apply(probes);
        return Finish(std::move(graph), MakeProbeEnvironment(_environment, nodes.size()), true);
    }

private:
    MaterialGraph Load(const MaterialDocument& document)
    {
        return LoadMaterial(document, _maker, _problems);
    }

    static void AddProbe(const MaterialGraph& graph, const ProbedOutput& output, std::size_t number,
                         GraphChange& probes)
    {
        const GraphNode& node = graph.Nodes()[graph.FindNode(output.Node, {})];
        std::string port = output.Port;
        if (port.empty()) {
            if (node.Gui.OutputPorts().empty())
                throw HostError(node.Where, "the node has no output to show");
            port = node.Gui.OutputPorts().front().Name;
        }
        const std::string type = NodeProbe::TypeName(number);
        std::string id = type;
        while (graph.HasId(id))
            id += "_";
        probes.Steps.emplace_back(AddNode{{id, type, 0, {}}, {}});
        probes.Steps.emplace_back(AddEdge{{output.Node, port, id, NodeProbe::PortName()}, {}, {}});
    }

    std::optional<PreparedMaterial> Finish(MaterialGraph graph, const Environment& environment,
                                           bool isPart)
    {
        ResolveGraph(graph, _problems);
        ReportCountConflicts(graph, _problems);
        if (_problems.HasErrors())
            return std::nullopt;
        const CgProgram program = BuildMaterialProgram(graph, environment, {}, _problems);
        if (_problems.HasErrors())
            return std::nullopt;
        ProblemList found;
        CompiledProgram compiled =
            _compiler.Compile(program, {CompileTarget::Spirv}, _document.File, found);
        AppendWithLines(found, graph, _problems);
        if (_problems.HasErrors())
            return std::nullopt;
        return PreparedMaterial{std::move(compiled), PreviewBindings(graph), isPart};
    }

    const ProgramCompiler& _compiler;
    const Environment& _environment;
    const MaterialDocument& _document;
    ProblemList& _problems;
    NodeMaker _maker;
};

/// Finds a parameter of a program that belongs to the environment; null if there is none.
const ProgramParameter* FindSceneParameter(const CompiledProgram& program, ParameterKind kind,
                                           const std::string& name)
{
    for (const ProgramParameter& parameter : program.Parameters) {
        if (!parameter.IsBinding && parameter.Kind == kind && parameter.Name == name)
            return &parameter;
    }
    return nullptr;
}

/// Returns the number of components of an environment value; 0 if nothing reads it.
std::size_t CountNumbers(const CompiledProgram& program, const UniformValues& scene,
                         const std::string& name)
{
    if (const auto entry = scene.find(name); entry != scene.end())
        return entry->second.size();
    const ProgramParameter* parameter = FindSceneParameter(program, ParameterKind::Uniform, name);
    return parameter ? ComponentCount(parameter->Type) : 0;
}

/// Parses the caller's value of something that the environment reads.
std::vector<float> RequireNumbers(const std::string& name, const std::string& value,
                                  std::size_t count)
{
    const auto numbers = ParseNumbers(value);
    if (!numbers || numbers->size() != count) {
        throw HostError({}, Compose("\"", value, "\" is not a valid value for \"", name,
                                    "\"; expected ", count, " numbers separated by commas"));
    }
    return *numbers;
}

/// Assigns the caller's values to bindings or, failing that, to what the environment reads.
void SetValues(const PreviewOptions& options, PreparedMaterial& material, UniformValues& scene,
               StreamConstants& streams)
{
    const CompiledProgram& program = material.Program;
    for (const auto& [name, value] : options.Values) {
        if (material.Bindings.Set(name, value))
            continue;
        if (FindSceneParameter(program, ParameterKind::Sampler, name))
            continue;
        if (const ProgramParameter* stream =
                FindSceneParameter(program, ParameterKind::VertexStream, name)) {
            streams[name] = RequireNumbers(name, value, ComponentCount(stream->Type));
        } else if (const std::size_t count = CountNumbers(program, scene, name); count > 0) {
            scene[name] = RequireNumbers(name, value, count);
        } else if (!material.IsPart) {
            const std::string known = material.Bindings.ListNames();
            throw HostError({}, Compose("the material has no binding \"", name,
                                        "\"; available: ", known.empty() ? "none" : known));
        }
    }
}

/// Returns the render state of a document, without the alpha test, which is part of the program.
DrawState ReadDrawState(const MaterialDocument& document)
{
    DrawState state;
    for (const DocumentValue& value : document.RenderState) {
        const bool isYes = value.Value == "Yes";
        if (value.Name == DocumentKeys::AlphaBlend)
            state.BlendsAlpha = isYes;
        else if (value.Name == DocumentKeys::SourceBlend)
            state.SourceBlend = value.Value;
        else if (value.Name == DocumentKeys::DestBlend)
            state.DestBlend = value.Value;
        else if (value.Name == DocumentKeys::ZTest)
            state.TestsDepth = isYes;
        else if (value.Name == DocumentKeys::ZTestFunc)
            state.DepthFunc = value.Value;
        else if (value.Name == DocumentKeys::ZWriteEnabled)
            state.WritesDepth = isYes;
        else if (value.Name == DocumentKeys::BackFaceCullEnabled)
            state.CullsBack = isYes;
    }
    return state;
}

void SetTime(UniformValues& scene, const PreviewOptions& options, std::uint32_t index)
{
    const auto offset = static_cast<float>(index);
    const float frame = options.FirstFrame + offset;
    const float start = options.Time.value_or(options.FirstFrame / framesPerSecond);
    scene["frame"] = {frame};
    scene["time"] = {start + offset / framesPerSecond};
}

CompiledProgram CompileBackground(const ProgramCompiler& compiler)
{
    return WithoutErrors([&](ProblemList& problems) {
        return compiler.Compile(MakeBackgroundProgram(), {CompileTarget::Spirv}, "background",
                                problems);
    });
}

DrawCall MakeBackground(const CompiledProgram& program, const UniformValues& scene,
                        ProblemList& problems)
{
    const Mesh mesh = MakeBackgroundMesh();
    DrawCall background = BuildDraw(program, {mesh, nullptr, nullptr, {}, {}}, problems);
    background.Uniforms = FillUniforms(program, nullptr, scene, problems);
    background.State.TestsDepth = false;
    background.State.WritesDepth = false;
    return background;
}

Picture JoinPictures(const std::vector<Picture>& pictures)
{
    Picture strip{0, pictures.front().Height, {}};
    for (const Picture& picture : pictures)
        strip.Width += picture.Width;
    for (std::uint32_t row = 0; row < strip.Height; ++row) {
        for (const Picture& picture : pictures) {
            const std::size_t size = picture.Width * bytesPerPixel;
            const auto begin = picture.Pixels.begin() + static_cast<std::ptrdiff_t>(row * size);
            strip.Pixels.insert(strip.Pixels.end(), begin,
                                begin + static_cast<std::ptrdiff_t>(size));
        }
    }
    return strip;
}

} // namespace

void CheckSize(const PreviewOptions& options)
{
    constexpr std::uint64_t mostPixels = 1u << 28;
    const std::uint64_t row = std::uint64_t(options.Width) * options.FrameCount;
    if (options.FrameCount == 0 || row == 0 || options.Height == 0 ||
        options.Height > mostPixels / row) {
        throw HostError({}, Compose("an image must have 1 to ", mostPixels, " pixels"));
    }
    if (row > maxPngSide || options.Height > maxPngSide) {
        throw HostError({}, Compose("an image of ", row, " by ", options.Height,
                                    " pixels is larger than the PNG limit of ", maxPngSide,
                                    " pixels on a side"));
    }
}

MaterialPreview::MaterialPreview(const PluginSet& plugins, Environment environment,
                                 FileDecoder& files, bool withValidation)
    : _plugins(plugins), _environment(std::move(environment)), _files(files),
      _background(CompileBackground(_compiler)),
      _device(std::make_unique<VulkanDevice>(withValidation))
{}

MaterialPreview::~MaterialPreview() = default;

std::string MaterialPreview::DeviceName() const
{
    return _device->Name();
}

const std::vector<std::string>& MaterialPreview::ValidationMessages() const
{
    return _device->ValidationMessages();
}

Picture MaterialPreview::RenderMaterial(const MaterialDocument& document, const Mesh& mesh,
                                        const PreviewOptions& options, ProblemList& problems) const
{
    CheckSize(options);
    std::optional<PreparedMaterial> material;
    try {
        PreviewJob job(_plugins, _environment, _compiler, document, problems);
        material = options.Node.empty() ? job.PrepareMaterial()
                                        : job.PrepareNodes(std::span(&options.Node, 1));
    } catch (const HostError& error) {
        problems.Fail(materialRule, error);
    }
    std::vector<Picture> frames;
    if (material) {
        const auto set = [&](UniformValues& scene, std::uint32_t index) {
            SetTime(scene, options, index);
            scene[NodeProbe::ChoiceUniform()] = {0.0f};
        };
        frames =
            RenderFrames(*material, document, mesh, options, options.FrameCount, set, problems);
    }
    if (problems.HasErrors())
        return MakeLoudPattern(options.Width * options.FrameCount, options.Height);
    return JoinPictures(frames);
}

std::vector<Picture> MaterialPreview::RenderNodes(const MaterialDocument& document,
                                                  const Mesh& mesh, const PreviewOptions& options,
                                                  std::span<const std::string> nodes,
                                                  ProblemList& problems) const
{
    if (nodes.empty())
        return {};
    CheckSize(options);
    ProblemList found;
    std::vector<Picture> pictures;
    try {
        PreviewJob job(_plugins, _environment, _compiler, document, found);
        const auto set = [&](UniformValues& scene, std::uint32_t index) {
            SetTime(scene, options, 0);
            scene[NodeProbe::ChoiceUniform()] = {static_cast<float>(index)};
        };
        if (auto material = job.PrepareNodes(nodes)) {
            pictures = RenderFrames(*material, document, mesh, options,
                                    static_cast<std::uint32_t>(nodes.size()), set, found);
        }
    } catch (const HostError& error) {
        found.Fail(materialRule, error);
    }
    if (found.HasErrors() && nodes.size() > 1) {
        // Either one of the nodes has an error, or there are too many for one program.
        const std::size_t half = nodes.size() / 2;
        pictures = RenderNodes(document, mesh, options, nodes.first(half), problems);
        for (Picture& picture : RenderNodes(document, mesh, options, nodes.subspan(half), problems))
            pictures.push_back(std::move(picture));
        return pictures;
    }
    problems.Append(found);
    if (found.HasErrors())
        return {MakeLoudPattern(options.Width, options.Height)};
    return pictures;
}

std::vector<Picture> MaterialPreview::RenderFrames(PreparedMaterial& material,
                                                   const MaterialDocument& document,
                                                   const Mesh& mesh, const PreviewOptions& options,
                                                   std::uint32_t count, const SetFrame& set,
                                                   ProblemList& problems) const
{
    const CompiledProgram& program = material.Program;
    UniformValues scene = MakeSceneValues(mesh, static_cast<float>(options.Width) /
                                                    static_cast<float>(options.Height));
    if (!options.Light.empty())
        std::fill(scene["lightColours"].begin(), scene["lightColours"].end(), 0.0f);
    StreamConstants streams;
    SetValues(options, material, scene, streams);
    set(scene, 0);

    const vk::PhysicalDeviceLimits& limits = _device->Limits();
    TextureLoader textures(_files, std::filesystem::path(document.File).parent_path(),
                           {std::min({limits.maxImageDimension1D, limits.maxImageDimension2D,
                                      limits.maxImageDimensionCube}),
                            limits.maxImageDimension3D},
                           problems);
    const SceneTextures sceneTextures = LoadSceneTextures(program, options, textures, scene);
    DrawCall surface =
        BuildDraw(program, {mesh, &material.Bindings, &textures, sceneTextures, streams}, problems);
    surface.Uniforms = FillUniforms(program, &material.Bindings, scene, problems);
    if (!material.IsPart)
        surface.State = ReadDrawState(document);
    const DrawCall background = MakeBackground(_background, scene, problems);
    if (problems.HasErrors())
        return {};

    Renderer renderer(*_device, options.Width, options.Height, {background, surface});
    constexpr std::size_t surfaceDraw = 1;
    std::vector<Picture> frames;
    for (std::uint32_t i = 0; i < count; ++i) {
        set(scene, i);
        for (const DrawUniforms& uniforms :
             FillUniforms(program, &material.Bindings, scene, problems))
            renderer.SetUniforms(surfaceDraw, uniforms);
        frames.push_back(renderer.Render());
    }
    return frames;
}

SceneTextures MaterialPreview::LoadSceneTextures(const CompiledProgram& program,
                                                 const PreviewOptions& options,
                                                 TextureLoader& textures,
                                                 UniformValues& scene) const
{
    constexpr const char* panorama = "lightPanorama";
    SceneTextures loaded;
    if (FindSceneParameter(program, ParameterKind::Sampler, panorama) || !options.Light.empty()) {
        LightPanorama light = LoadLight(options.Light);
        scene["lightLevels"] = {light.RoughestLevel};
        SceneTexture& texture = loaded[panorama];
        texture.Levels = std::move(light.Levels);
        texture.Sampler.WrapV = "clamp";
    }
    for (const auto& [name, value] : options.Values) {
        const ProgramParameter* sampler = FindSceneParameter(program, ParameterKind::Sampler, name);
        const auto shape = sampler ? ShapeOf(sampler->Type.Component) : std::nullopt;
        if (name == panorama || !shape)
            continue;
        TextureSettings settings;
        settings.File = value;
        loaded[name] = {textures.Load(settings, *shape)};
    }
    return loaded;
}

LightPanorama MaterialPreview::LoadLight(const std::filesystem::path& file) const
{
    if (!file.empty()) {
        const std::shared_ptr<const TextureImage> image = _files.ReadTexture(file);
        return PrepareLight(*image, image->Format == TexelFormat::Unorm8);
    }
    if (!_studio)
        _studio = PrepareLight(MakeStudioImage(), false);
    return *_studio;
}

Picture MakeLoudPattern(std::uint32_t width, std::uint32_t height)
{
    constexpr std::uint32_t checkSize = 16;
    Picture picture{width, height, {}};
    picture.Pixels.reserve(std::size_t(width) * height * bytesPerPixel);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const bool isMagenta = (x / checkSize + y / checkSize) % 2 == 0;
            const std::uint8_t light = isMagenta ? 255 : 0;
            picture.Pixels.insert(picture.Pixels.end(), {light, 0, light, 255});
        }
    }
    return picture;
}

} // namespace Mox::Host
