#include "tests/numbers/ValueRunner.h"

#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AttributeText.h"
#include "mox/preview/DrawBuilder.h"
#include "mox/program/MaterialProgram.h"
#include "tests/numbers/FeedNode.h"
#include "tests/numbers/SinkNode.h"
#include "tests/support/BuildTree.h"
#include "tests/support/MaterialText.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cstring>
#include <numeric>

using namespace Mox::Host;

namespace {

constexpr const char* positionStream = "clipPosition";
constexpr std::uint32_t caseColumns = 64;

PluginNode MakeNode(const std::string& type, const Place& where)
{
    const auto rest = [&](const std::string& prefix) { return type.substr(prefix.size()); };
    if (type.starts_with("Feed:")) {
        const std::string kind = rest("Feed:");
        if (const auto exact = ParseShaderType(kind))
            return PluginNode(boost::make_shared<FeedNode>(*exact));
        return PluginNode(boost::make_shared<FeedNode>(std::stoi(kind)));
    }
    if (type.starts_with("Sink:="))
        return PluginNode(boost::make_shared<SinkNode>(*ParseShaderType(rest("Sink:="))));
    if (type.starts_with("Sink:"))
        return PluginNode(boost::make_shared<SinkNode>(ParseShaderType(rest("Sink:"))->Component));
    return TestPlugins().CreateNode(type, where);
}

/// Builds a resolved graph in which feeds read the streams with their names.
MaterialGraph MakeGraph(const MaterialDocument& material, ProblemList& problems)
{
    MaterialGraph graph = LoadMaterial(material, NodeMaker(MakeNode), problems);
    std::vector<std::string> feeds;
    for (const GraphNode& node : graph.Nodes()) {
        if (dynamic_cast<const FeedNode*>(node.Gui.Handle().get()))
            feeds.push_back(node.Id);
    }
    for (const std::string& feed : feeds)
        graph.Apply(
            {{SetProperties{{{feed, {"Name", Mox::Materials::GuiPropertyKind::String, feed}}}}}});
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    return graph;
}

DrawShader FindShader(const CompiledProgram& program, ProgramStage stage)
{
    const auto found =
        std::find_if(program.Programs.begin(), program.Programs.end(),
                     [stage](const TargetProgram& other) { return other.Stage == stage; });
    DrawShader shader{SpirvWords(found->Bytes.size() / sizeof(std::uint32_t)), found->EntryPoint};
    std::memcpy(shader.Module.data(), found->Bytes.data(), found->Bytes.size());
    return shader;
}

DrawStream MakeStream(const StageVariable& input, const RunInputs& inputs)
{
    const auto components = static_cast<std::uint32_t>(input.Type.Columns);
    DrawStream stream{input.Location, components, {}};
    for (const Numbers& value : inputs.Streams.at(input.Name))
        stream.Values.insert(stream.Values.end(), value.begin(), value.begin() + components);
    return stream;
}

std::vector<DrawTexture> MakeTextures(const CompiledProgram& program, const RunInputs& inputs)
{
    std::vector<DrawTexture> textures;
    for (const SamplerSlot& slot : program.Fragment.Samplers) {
        textures.push_back(
            {slot.Binding, ShapeOf(slot.Type.Component).value(), {inputs.Textures.at(slot.Name)}});
    }
    return textures;
}

} // namespace

ValueRunner::ValueRunner() : _device(true), _environment(ReadEnvironment(MOX_NUMBERS_ENVIRONMENT))
{}

std::vector<Numbers> ValueRunner::Evaluate(const std::string& material, const RunInputs& inputs)
{
    return Evaluate(MaterialFromText(material), _environment, inputs);
}

std::vector<Numbers> ValueRunner::Evaluate(const MaterialDocument& material,
                                           const Environment& environment, const RunInputs& inputs)
{
    // Each case has a triangle around the centre of its pixel.
    constexpr std::array<std::array<float, 2>, 3> corners = {
        {{0.0f, 0.0f}, {1.0f, 0.0f}, {0.5f, 1.0f}}};
    RunInputs vertices = inputs;
    for (auto& [name, values] : vertices.Streams) {
        std::vector<Numbers> repeated;
        for (const Numbers& value : values)
            repeated.insert(repeated.end(), corners.size(), value);
        values = std::move(repeated);
    }
    const std::size_t count = inputs.Streams.empty() ? 1 : inputs.Streams.begin()->second.size();
    const auto rows = static_cast<std::uint32_t>((count + caseColumns - 1) / caseColumns);
    std::vector<Numbers>& places = vertices.Streams[positionStream];
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t caseRow = i / caseColumns;
        const auto column = static_cast<float>(i % caseColumns);
        const auto row = static_cast<float>(caseRow);
        for (const auto& [x, y] : corners) {
            places.push_back({2.0f * (column + x) / caseColumns - 1.0f,
                              2.0f * (row + y) / static_cast<float>(rows) - 1.0f});
        }
    }
    Image image{std::vector<std::uint32_t>(places.size()), caseColumns, rows};
    std::iota(image.Indices.begin(), image.Indices.end(), 0u);
    std::vector<Numbers> pixels =
        Draw(material, environment, StageCopies::HandedOn, vertices, image);
    pixels.resize(count);
    return pixels;
}

std::vector<Numbers> ValueRunner::DrawMaterial(const MaterialDocument& material,
                                               const Environment& environment, StageCopies copies,
                                               const RunInputs& inputs, const GridSize& grid)
{
    RunInputs vertices = inputs;
    std::vector<Numbers>& places = vertices.Streams[positionStream];
    for (const auto& [x, y] : GridPlaces(grid.Squares))
        places.push_back({2.0f * x - 1.0f, 2.0f * y - 1.0f});
    Image image{{}, grid.Pixels, grid.Pixels};
    for (std::uint32_t y = 0; y < grid.Squares; ++y) {
        for (std::uint32_t x = 0; x < grid.Squares; ++x) {
            const std::uint32_t corner = y * (grid.Squares + 1) + x;
            const std::uint32_t above = corner + grid.Squares + 1;
            image.Indices.insert(image.Indices.end(),
                                 {corner, corner + 1, above, above, corner + 1, above + 1});
        }
    }
    return Draw(material, environment, copies, vertices, image);
}

std::vector<Numbers> ValueRunner::Draw(const MaterialDocument& material,
                                       const Environment& environment, StageCopies copies,
                                       const RunInputs& inputs, const Image& image)
{
    ProblemList problems;
    const MaterialGraph graph = MakeGraph(material, problems);
    problems.ThrowFirstError();
    const CgProgram program =
        WriteCg(PlanMaterialProgram(graph, environment, copies, problems), {});
    problems.ThrowFirstError();
    const CompiledProgram compiled =
        _compiler.Compile(program, {CompileTarget::Spirv}, "test.xml", problems);
    problems.ThrowFirstError();

    PreviewBindings bindings(graph);
    for (const auto& [name, value] : inputs.Values)
        bindings.Set(name, value);
    DrawCall call;
    call.Vertex = FindShader(compiled, ProgramStage::Vertex);
    call.Fragment = FindShader(compiled, ProgramStage::Fragment);
    for (const StageVariable& input : compiled.Vertex.Inputs)
        call.Streams.push_back(MakeStream(input, inputs));
    call.Textures = MakeTextures(compiled, inputs);
    call.Uniforms = FillUniforms(compiled, &bindings, inputs.Scene, problems);
    problems.ThrowFirstError();
    call.Indices = image.Indices;
    call.State.TestsDepth = false;
    call.State.WritesDepth = false;
    call.State.WritesAlpha = true;
    return FloatTarget(_device, image.Width, image.Height).Draw(call);
}

std::vector<std::array<float, 2>> GridPlaces(std::uint32_t squares)
{
    std::vector<std::array<float, 2>> places;
    for (std::uint32_t y = 0; y <= squares; ++y) {
        for (std::uint32_t x = 0; x <= squares; ++x) {
            places.push_back({static_cast<float>(x) / static_cast<float>(squares),
                              static_cast<float>(y) / static_cast<float>(squares)});
        }
    }
    return places;
}
