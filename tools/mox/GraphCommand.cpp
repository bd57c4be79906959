#include "Commands.h"
#include "DocumentSource.h"
#include "LoadEnvironment.h"
#include "LoadPlugins.h"
#include "OneOf.h"
#include "Targets.h"
#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/document/DocumentTextures.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/nodefile/NodeFiles.h"
#include "mox/pictures/Graphviz.h"
#include "mox/pictures/MaterialPicture.h"
#include "mox/pictures/ShaderPicture.h"
#include "mox/program/MaterialProgram.h"
#include "mox/program/ProgramExporter.h"
#ifdef MOX_HAS_PREVIEW
#include "DecodeOptions.h"
#include "Thumbnails.h"
#endif

#include <filesystem>
#include <iostream>
#include <utility>

namespace Mox::Tool {

namespace {

constexpr const char* graphFooter =
    R"(A material with errors is drawn as far as possible. Errors are red and warnings
are amber.

Examples:
  mox graph rim.xml -o rim.svg
      Draw the nodes and edges of a material, with the types of the ports.
  mox graph rim.xml --thumbnails -o rim.png
      Show an image of the output of each node.
  mox graph rim.xml --shader -o rim.png
      Draw the functions of its programs, grouped by stage.
  mox graph rim.xml | dot -Tpdf -o rim.pdf
      Use any other format that Graphviz supports, without icons.
)";

struct GraphOptions
{
    std::string File;
    std::string Output; ///< empty for standard output
    std::string Format; ///< if empty, determined by the output's extension
    std::string Environment;
    bool IsShader = false;
    bool HasThumbnails = false;
#ifdef MOX_HAS_PREVIEW
    Host::DecodeLimits Limits;
#endif
};

/// Returns the format from the options, or the default for the output file.
std::string FormatOf(const GraphOptions& options)
{
    if (!options.Format.empty())
        return options.Format;
    if (options.Output.empty())
        return "dot";
    const std::string extension = std::filesystem::path(options.Output).extension();
    for (const char* format : {"svg", "png", "dot"}) {
        if (extension == std::string(".") + format)
            return format;
    }
    throw CLI::ValidationError(
        "--output",
        "the name of the file must end in .svg, .png or .dot, unless --format is given");
}

std::map<std::string, Host::Picture> MakeImages(const GraphOptions& options,
                                                const Host::MaterialGraph& graph,
                                                const Host::PluginSet& plugins,
                                                const Host::Environment& environment,
                                                Host::ProblemList& problems)
{
#ifdef MOX_HAS_PREVIEW
    if (options.HasThumbnails) {
        return DrawThumbnails(graph, plugins, environment, options.Limits, problems);
    }
#else
    static_cast<void>(options);
    static_cast<void>(environment);
    static_cast<void>(problems);
#endif
    return Host::IconsOfNodes(graph, plugins, Host::NodeFiles(plugins));
}

Host::Drawing DrawFunctions(const Host::MaterialGraph& graph, const Host::Environment& environment,
                            Host::ProblemList& problems)
{
    Host::GeneratedShader shader;
    Host::CompleteShader(graph, environment, shader, problems);
    return Host::DrawShader(shader, problems);
}

/// @throws HostError if the output is one of the input files
void RequireSeparateOutput(const GraphOptions& options, const Host::MaterialGraph& graph,
                           const Host::Environment& environment, const Host::PluginSet& plugins)
{
    std::vector<std::filesystem::path> inputs = Host::ExportInputs(environment, plugins);
    for (std::filesystem::path& texture :
         Host::TextureFiles(graph.Document(), SourceName(options.File)))
        inputs.push_back(std::move(texture));
    if (!IsStandardInput(options.File))
        inputs.emplace_back(options.File);
    Host::RequireNoInput(options.Output, inputs);
}

void Write(const std::string& bytes, const std::string& output)
{
    if (output.empty())
        std::cout << bytes;
    else
        Host::WriteIfChanged(output, bytes);
}

void PrintGraph(const GraphOptions& options, const CommonOptions& common)
{
    const std::string format = FormatOf(options);
    const Host::PluginSet plugins = LoadPlugins(common);
    const Host::Environment environment = LoadEnvironment(options.Environment);
    Host::ProblemList problems;
    Host::MaterialDocument document = ReadDocument(options.File, problems);
    const Host::MaterialGraph graph = Host::OpenMaterial(std::move(document), plugins, problems);
    if (graph.Nodes().size() == 0)
        problems.ThrowFirstError(); // nothing to draw
    RequireSeparateOutput(options, graph, environment, plugins);
    if (!options.IsShader) {
        const auto targetCheck = MakeTargetCheck();
        Host::CheckMaterial(graph, SourceName(options.File), environment, targetCheck.get(),
                            problems);
    }
    // DOT output has no images, because it could only refer to files that do not exist.
    std::map<std::string, Host::Picture> images;
    if (!options.IsShader && format != "dot")
        images = MakeImages(options, graph, plugins, environment, problems);
    const Host::Drawing picture = options.IsShader ? DrawFunctions(graph, environment, problems)
                                                   : Host::DrawMaterial(graph, problems, images);
    PrintProblems(problems);
    Write(format == "dot"
              ? picture.Dot
              : Host::RenderPicture(picture, format == "svg" ? Host::PictureFormat::Svg
                                                             : Host::PictureFormat::Png),
          options.Output);
    if (problems.HasErrors())
        throw CLI::RuntimeError(failureStatus);
}

} // namespace

void AddGraphCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("graph", "Draw a diagram of a material, with errors in red");
    const auto options = std::make_shared<GraphOptions>();
    AddDocument(*command, "FILE", options->File);
    command->add_option("-o,--output", options->Output, "Output file; by default standard output")
        ->type_name("FILE");
    command
        ->add_option("--format", options->Format,
                     "\"svg\", \"png\" or \"dot\"; by default, the extension of the output file, "
                     "or \"dot\" for standard output")
        ->type_name("FORMAT")
        ->check(OneOf({"svg", "png", "dot"}).description(""));
    auto* shader = command->add_flag("--shader", options->IsShader,
                                     "Draw the finished shader graph with its stages");
#ifdef MOX_HAS_PREVIEW
    command
        ->add_flag("--thumbnails", options->HasThumbnails,
                   "Show an image of the output of each node instead of its icon")
        ->excludes(shader);
    AddDecodeOptions(*command, options->Limits);
#else
    static_cast<void>(shader);
#endif
    AddEnvironmentOption(*command, options->Environment);
    command->footer(graphFooter);
    command->callback([options, &common] { PrintGraph(*options, common); });
}

} // namespace Mox::Tool
