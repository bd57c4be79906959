#include "Commands.h"
#include "DecodeOptions.h"
#include "DocumentSource.h"
#include "LoadEnvironment.h"
#include "LoadPlugins.h"
#include "NumberCheck.h"
#include "mox/Text.h"
#include "mox/document/DocumentTextures.h"
#include "mox/document/PropertyText.h"
#include "mox/host/File.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/MeshShapes.h"

#include <optional>
#include <utility>

namespace Mox::Tool {

namespace {

constexpr const char* previewFooter =
    R"(Relative file names of textures are resolved from the folder of the
material. With --set, the value of a constant is a list of numbers separated
by commas, and the last number also applies to all components that are left
out. The value of a texture is a file, and the value of a vertex stream is
the number of a uv set or vertex colour set of the mesh. If the mesh has no
such stream, the value is a list of numbers for all vertices. --set also
sets values and vertex streams that the environment reads, for example
lightDirection=0,1,0.

Examples:
  mox preview rim.xml -o rim.png
      Render a material on a sphere.
  mox preview brick.xml -o brick.png --mesh house.glb --set tint=1,0.5,0.5
      Render it on a mesh, with a different colour.
  mox preview paint.xml -o paint.png --light garage.hdr --set toneMapping=0
      Light a physical surface with a panorama, and clip colours brighter than white.
  mox preview brick.xml -o mask.png --node noise.out_red --mesh plane
      Show one output of a node.
  mox preview fire.xml -o fire.png --frames 0..7 --size 128
      Render eight frames side by side.
)";

struct PreviewArguments
{
    std::string File;
    std::string Output;
    std::string Size = "512x512";
    std::string Mesh = "sphere";
    float Frame = 0.0f;
    std::string Frames;
    std::string Light;
    std::string Node;
    std::vector<std::string> Values;
    std::string Environment;
    Host::DecodeSettings Files;
};

/// Parses two integers with a separator between them.
std::optional<std::pair<std::int32_t, std::int32_t>> ParsePair(const std::string& text,
                                                               const std::string& separator)
{
    const std::size_t position = text.find(separator);
    if (position == text.npos)
        return std::nullopt;
    const auto first = Host::ParseInteger(text.substr(0, position));
    const auto second = Host::ParseInteger(text.substr(position + separator.size()));
    if (!first || !second)
        return std::nullopt;
    return std::pair(*first, *second);
}

/// Parses a width and a height; a single number sets both.
std::optional<std::pair<std::int32_t, std::int32_t>> ParseSize(const std::string& text)
{
    if (const auto side = Host::ParseInteger(text))
        return std::pair(*side, *side);
    return ParsePair(text, "x");
}

Host::PreviewOptions ReadOptions(const PreviewArguments& arguments)
{
    Host::PreviewOptions options;
    const std::string ending = std::filesystem::path(arguments.Output).extension().string();
    if (!ending.empty() && ending != ".png" && ending != ".PNG")
        throw CLI::ValidationError("--output",
                                   "the output is a PNG file, so its name must end in .png");
    const auto size = ParseSize(arguments.Size);
    if (!size || size->first < 1 || size->second < 1)
        throw CLI::ValidationError("--size",
                                   "must be a width and a height, such as 640x480, or one number");
    options.Width = static_cast<std::uint32_t>(size->first);
    options.Height = static_cast<std::uint32_t>(size->second);
    options.FirstFrame = arguments.Frame;
    if (!arguments.Frames.empty()) {
        const auto frames = ParsePair(arguments.Frames, "..");
        if (!frames || frames->second < frames->first)
            throw CLI::ValidationError("--frames", "must be a range, such as 0..7");
        options.FirstFrame = static_cast<float>(frames->first);
        options.FrameCount = static_cast<std::uint32_t>(frames->second) -
                             static_cast<std::uint32_t>(frames->first) + 1;
    }
    try {
        Host::CheckSize(options);
    } catch (const Host::HostError& error) {
        throw CLI::ValidationError(arguments.Frames.empty() ? "--size" : "--size and --frames",
                                   error.Message);
    }
    options.Light = arguments.Light;
    options.Node = arguments.Node;
    for (const std::string& value : arguments.Values) {
        const std::size_t sign = value.find('=');
        if (sign == value.npos || sign == 0)
            throw CLI::ValidationError("--set", "must be a name and a value, such as tint=1,0,0");
        options.Values[value.substr(0, sign)] = value.substr(sign + 1);
    }
    return options;
}

void Preview(const PreviewArguments& arguments, const CommonOptions& common)
{
    const Host::PreviewOptions options = ReadOptions(arguments);
    Host::FileDecoder files(arguments.Files);
    const Host::Mesh mesh = Host::FindMesh(arguments.Mesh, files);
    const Host::PluginSet plugins = LoadPlugins(common);
    const Host::MaterialPreview preview(plugins, LoadEnvironment(arguments.Environment), files);
    Host::ProblemList problems;
    const Host::MaterialDocument document = ReadDocument(arguments.File, problems);
    Host::RequireNoInput(arguments.Output,
                         Host::TextureFiles(document, SourceName(arguments.File)));
    const Host::Picture picture = preview.RenderMaterial(document, mesh, options, problems);
    PrintProblems(problems);
    Host::WritePng(picture, arguments.Output);
    if (problems.HasErrors())
        throw CLI::RuntimeError(failureStatus);
}

} // namespace

void AddPreviewCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("preview", "Render an image of a material");
    const auto arguments = std::make_shared<PreviewArguments>();
    AddDocument(*command, "FILE", arguments->File);
    command->add_option("-o,--output", arguments->Output, "PNG file to write")
        ->type_name("FILE")
        ->required();
    command->add_option("--size", arguments->Size, "Size of the image, or of each frame")
        ->type_name("W[xH]")
        ->capture_default_str();
    command
        ->add_option("--mesh", arguments->Mesh,
                     "\"sphere\", \"plane\", \"cube\", or an .obj, .gltf or .glb file")
        ->type_name("MESH")
        ->capture_default_str();
    auto* frame = command->add_option("--frame", arguments->Frame, "Frame number")
                      ->type_name("N")
                      ->check(FiniteNumber())
                      ->capture_default_str();
    command
        ->add_option("--frames", arguments->Frames,
                     "Range of frames to render side by side, including the last one")
        ->type_name("A..B")
        ->excludes(frame);
    command
        ->add_option(
            "--light", arguments->Light,
            "Panorama image, twice as wide as high, that replaces the lights of a physical surface")
        ->type_name("FILE");
    command
        ->add_option("--node", arguments->Node, "Show an output of a node instead of the material")
        ->type_name("ID[.PORT]");
    command
        ->add_option(
            "--set", arguments->Values,
            "Set a binding; may be repeated. The file of a texture is relative to the folder of "
            "the material")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    AddEnvironmentOption(*command, arguments->Environment);
    AddDecodeOptions(*command, arguments->Files.Limits);
    command->footer(previewFooter);
    command->callback([arguments, &common] { Preview(*arguments, common); });
}

} // namespace Mox::Tool
