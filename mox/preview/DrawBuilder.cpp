#include "mox/preview/DrawBuilder.h"

#include "mox/Text.h"
#include "mox/preview/MeshStreams.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr ProblemRule streamRule = "preview-stream";
constexpr ProblemRule uniformRule = "preview-uniform";

DrawShader TakeShader(const CompiledProgram& program, ProgramStage stage)
{
    for (const TargetProgram& target : program.Programs) {
        if (target.Target != CompileTarget::Spirv || target.Stage != stage)
            continue;
        DrawShader shader{SpirvWords(target.Bytes.size() / sizeof(std::uint32_t)),
                          target.EntryPoint};
        std::memcpy(shader.Module.data(), target.Bytes.data(), target.Bytes.size());
        return shader;
    }
    return {};
}

bool IsFloatVector(const ShaderType& type)
{
    const bool isFloat = type.Component == ComponentType::Float ||
                         type.Component == ComponentType::Half ||
                         type.Component == ComponentType::Fixed;
    return isFloat && type.Rows <= 1 && type.ArrayLength <= 1;
}

MeshStream ReadStream(const ProgramParameter& parameter, const DrawSources& sources)
{
    if (!IsFloatVector(parameter.Type)) {
        throw HostError({}, Compose("the vertex stream \"", parameter.Name, "\" has the type ",
                                    parameter.Type.Format(), ", which previews do not support"));
    }
    const PluginBinding* binding = sources.Bindings ? sources.Bindings->Find(parameter) : nullptr;
    if (binding)
        return ReadBoundStream(sources.Geometry, *binding, parameter.Type);
    const auto constant = sources.Streams.find(parameter.Name);
    return constant != sources.Streams.end()
               ? MakeConstantStream(sources.Geometry, constant->second)
               : ReadNamedStream(sources.Geometry, parameter.Name, parameter.Type);
}

SceneTexture LoadTexture(const ProgramParameter& parameter, const DrawSources& sources)
{
    if (const auto scene = sources.Scene.find(parameter.Name);
        !parameter.IsBinding && scene != sources.Scene.end())
        return scene->second;
    const PluginBinding* found = sources.Bindings ? sources.Bindings->Find(parameter) : nullptr;
    const auto binding = found ? found->Texture() : std::nullopt;
    if (!binding) {
        throw HostError({}, Compose("the environment reads the texture \"", parameter.Name,
                                    "\", which previews do not provide; set it with --set ",
                                    parameter.Name, "=FILE"));
    }
    const std::optional<TextureShape> shape = ShapeOf(parameter.Type.Component);
    if (!shape) {
        throw HostError({}, Compose("the texture \"", parameter.Name, "\" has the type ",
                                    parameter.Type.Format(), ", which previews do not support"));
    }
    return {sources.Textures->Load(*binding, *shape), parameter.Sampler};
}

std::vector<float> FindValues(const ProgramParameter& parameter, const PreviewBindings* bindings,
                              const UniformValues& scene)
{
    if (const PluginBinding* binding = bindings ? bindings->Find(parameter) : nullptr) {
        std::vector<float> values;
        for (std::uint32_t i = 0; i < binding->GetCount(); ++i)
            values.push_back(binding->GetDefault(i));
        return values;
    }
    const auto found = scene.find(parameter.Name);
    return found == scene.end() ? std::vector<float>() : found->second;
}

/// Converts a value to an integer: drops the fraction, clamps to the range of 32 bits, and maps NaN
/// to 0.
std::int32_t ToInteger(float value)
{
    constexpr float end = 2147483648.0f; // one above the maximum
    if (std::isnan(value))
        return 0;
    if (value >= end)
        return std::numeric_limits<std::int32_t>::max();
    return value < -end ? std::numeric_limits<std::int32_t>::min()
                        : static_cast<std::int32_t>(value);
}

/// Writes values to a member, column by column. If there are too few, the last one is repeated.
void WriteMember(const UniformMember& member, const std::vector<float>& values,
                 std::vector<std::byte>& block)
{
    // The components of a vector are stored like the columns of a single row.
    const bool isMatrix = member.Type.Rows > 1;
    const std::int32_t columns = isMatrix ? member.Type.Columns : 1;
    const std::int32_t rows = isMatrix ? member.Type.Rows : member.Type.Columns;
    std::size_t next = 0;
    for (std::int32_t element = 0; element < member.Type.ArrayLength; ++element) {
        for (std::int32_t column = 0; column < columns; ++column) {
            for (std::int32_t row = 0; row < rows; ++row) {
                const float value = values[std::min(next++, values.size() - 1)];
                const std::size_t offset = member.Offset +
                                           static_cast<std::size_t>(element) * member.ArrayStride +
                                           static_cast<std::size_t>(column) * member.MatrixStride +
                                           static_cast<std::size_t>(row) * sizeof(value);
                if (member.Type.Component == ComponentType::Int ||
                    member.Type.Component == ComponentType::Bool) {
                    const std::int32_t whole = ToInteger(value);
                    std::memcpy(block.data() + offset, &whole, sizeof(whole));
                } else {
                    std::memcpy(block.data() + offset, &value, sizeof(value));
                }
            }
        }
    }
}

} // namespace

DrawCall BuildDraw(const CompiledProgram& program, const DrawSources& sources,
                   ProblemList& problems)
{
    DrawCall draw;
    draw.Vertex = TakeShader(program, ProgramStage::Vertex);
    draw.Fragment = TakeShader(program, ProgramStage::Fragment);
    draw.Indices = sources.Geometry.Indices;
    draw.WritesColour = !program.Fragment.Outputs.empty();
    if (!draw.WritesColour) {
        problems.Warn("preview-colour", {},
                      "the environment writes no colour for this material, so the image shows only "
                      "the background");
    }
    for (const StageVariable& input : program.Vertex.Inputs) {
        try {
            MeshStream stream = ReadStream(program.Parameters[*input.Parameter], sources);
            draw.Streams.push_back({input.Location, stream.Components, std::move(stream.Values)});
        } catch (const HostError& error) {
            problems.Fail(streamRule, error);
        }
    }
    for (const StageInterface* stage : {&program.Vertex, &program.Fragment}) {
        for (const SamplerSlot& slot : stage->Samplers) {
            const auto isSame = [&](const auto& texture) {
                return texture.Binding == slot.Binding;
            };
            if (std::any_of(draw.Textures.begin(), draw.Textures.end(), isSame))
                continue;
            try {
                SceneTexture texture = LoadTexture(program.Parameters[slot.Parameter], sources);
                draw.Textures.push_back({slot.Binding,
                                         ShapeOf(slot.Type.Component).value_or(TextureShape::Plane),
                                         std::move(texture.Levels), texture.Sampler});
            } catch (const HostError& error) {
                problems.Fail(uniformRule, error);
            }
        }
    }
    return draw;
}

std::vector<DrawUniforms> FillUniforms(const CompiledProgram& program,
                                       const PreviewBindings* bindings, const UniformValues& scene,
                                       ProblemList& problems)
{
    std::vector<DrawUniforms> blocks;
    for (const UniformBlock& block : program.Blocks) {
        DrawUniforms& uniforms = blocks.emplace_back();
        uniforms.Set = NumberOf(block.Rate);
        uniforms.Bytes.resize(block.Size);
        for (const UniformMember& member : block.Members) {
            if (!member.IsRead())
                continue;
            const std::vector<float> values =
                FindValues(program.Parameters[member.Parameter], bindings, scene);
            if (values.empty()) {
                problems.Fail(uniformRule, {},
                              Compose("the environment reads the value \"", member.Name,
                                      "\", which previews do not provide; set it with --set ",
                                      member.Name, "=NUMBERS"));
                continue;
            }
            WriteMember(member, values, uniforms.Bytes);
        }
    }
    return blocks;
}

} // namespace Mox::Host
