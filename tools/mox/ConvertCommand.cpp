#include "Commands.h"
#include "DocumentSource.h"
#include "LoadPlugins.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/interchange/CompleteMaterial.h"
#include "mox/interchange/ReadMaterial.h"

#include <filesystem>

namespace Mox::Tool {

namespace {

constexpr const char* convertFooter =
    R"(The extension of the output selects its format: ".mtlx" is MaterialX 1.39, and
".xml" is a material document, as is an output without an extension. Other
extensions are rejected. Warnings with locations in FILE report everything that
is changed or dropped. Relative file names of textures are adjusted so that they
refer to the same files from the folder of the output.

A MaterialX document may include other documents. Only documents in the same
folder and its subfolders are read.

Examples:
  mox convert brass.mtlx -o brass.xml
  mox convert metals.mtlx --material Brass -o brass.xml
  mox convert rim.xml -o rim.mtlx
)";

struct ConvertOptions
{
    std::string File;
    std::string Output;
    std::string Material;
};

/// Rewrites relative texture paths so that they refer to the same files from the output's folder.
void MoveTextures(Host::MaterialDocument& document, const ConvertOptions& options)
{
    const auto folder = [](const std::string& file) {
        return std::filesystem::absolute(file).parent_path().lexically_normal();
    };
    const auto before = folder(SourceName(options.File));
    const auto after = folder(options.Output);
    if (before == after)
        return;
    for (Host::DocumentBinding& binding : document.Bindings) {
        if (binding.Stream != "texture")
            continue;
        for (Host::DocumentValue& value : binding.Values) {
            if (value.Name == "default" && !value.Value.empty() &&
                std::filesystem::path(value.Value).is_relative())
                value.Value = (before / value.Value).lexically_normal().lexically_relative(after);
        }
    }
}

std::string Convert(Host::MaterialDocument document, const ConvertOptions& options,
                    const CommonOptions& common, Host::ProblemList& problems)
{
    MoveTextures(document, options);
    if (std::filesystem::path(options.Output).extension() != ".mtlx")
        return Host::FormatMaterialDocument(document);
    const Host::PluginSet plugins = LoadPlugins(common);
    Host::MaterialGraph graph = Host::LoadMaterial(std::move(document), plugins, problems);
    Host::ResolveGraph(graph, problems);
    if (problems.HasErrors())
        return {};
    return Host::WriteMaterialX(Host::DescribeMaterial(graph, plugins), problems);
}

/// @throws CLI::ValidationError if the extension belongs to neither format
void CheckOutput(const std::filesystem::path& output)
{
    const std::string extension = output.extension().string();
    if (!extension.empty() && extension != ".xml" && extension != ".mtlx") {
        throw CLI::ValidationError("--output", "the name of the output must end in .xml for a "
                                               "material, or in .mtlx for MaterialX");
    }
}

void ConvertMaterial(const ConvertOptions& options, const CommonOptions& common)
{
    CheckOutput(options.Output);
    Host::ProblemList problems;
    Host::RequireNoInput(options.Output, {options.File});
    Host::MaterialDocument document = ReadDocument(options.File, problems, options.Material);
    std::string text;
    if (!problems.HasErrors())
        text = Convert(std::move(document), options, common, problems);
    PrintProblems(problems);
    if (problems.HasErrors())
        throw CLI::RuntimeError(failureStatus);
    Host::WriteIfChanged(options.Output, text);
}

} // namespace

void AddConvertCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("convert", "Convert a material to or from MaterialX");
    const auto options = std::make_shared<ConvertOptions>();
    command
        ->add_option("FILE", options->File,
                     "Material document or MaterialX document; - for standard input")
        ->type_name("")
        ->required();
    command->add_option("-o,--output", options->Output, "Document to write")
        ->type_name("FILE")
        ->required();
    command
        ->add_option("--material", options->Material,
                     "Name of the material to read if a MaterialX document contains several; by "
                     "default, the first one")
        ->type_name("NAME");
    command->footer(convertFooter);
    command->callback([options, &common] { ConvertMaterial(*options, common); });
}

} // namespace Mox::Tool
