#include "Programs.h"

#include "Errors.h"
#include "Targets.h"
#include "mox/Text.h"
#include "mox/batch/Depfile.h"
#include "mox/batch/ExportBatch.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/document/DocumentTextures.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/Excerpt.h"
#include "mox/host/File.h"
#include "mox/host/NearestName.h"
#include "mox/interchange/CompleteMaterial.h"
#include "mox/interchange/MaterialXWriter.h"
#include "mox/interchange/ReadMaterial.h"
#include "mox/program/CgWriter.h"
#include "mox/program/EnvironmentNodes.h"
#include "mox/program/MaterialProgram.h"
#include "mox/program/ProgramExporter.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"
#include "mox/targets/CompileTarget.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <set>

namespace Mox::Python {

namespace {

using Materials::Compose;

using Formats = std::vector<std::unique_ptr<Host::ProgramFormat>>;

[[noreturn]] void RefuseWord(const char* what, const std::string& word,
                             const std::vector<std::string>& words)
{
    std::vector<Host::RightName> names;
    names.reserve(words.size());
    for (const std::string& right : words)
        names.push_back({right});
    throw Host::HostError(
        {}, Compose("unknown ", what, " ", Host::Excerpt(word), Host::SuggestName(word, names)));
}

Formats MakeFormats(const ProgramSettings& settings)
{
    const std::vector<std::string> words = Tool::TargetWords();
    for (const std::string& target : settings.Targets) {
        if (std::ranges::find(words, target) == words.end())
            RefuseWord("target", target, words);
    }
    const bool isRelaxed = settings.Precision == "relaxed";
    if (!isRelaxed && settings.Precision != "full")
        RefuseWord("precision", settings.Precision, {"full", "relaxed"});
    return Tool::MakeFormats(settings.Targets,
                             isRelaxed ? Languages::Precision::Relaxed : Languages::Precision::Full,
                             settings.IsOptimised);
}

Host::ProgramOptions MakeOptions(const ProgramSettings& settings, bool isByContent)
{
    Host::ProgramOptions options{!settings.IsPlain};
    if (!settings.IsPlain && !isByContent)
        options.Version = MOX_VERSION;
    return options;
}

Program Compile(const OpenedCopy& copy, const Library& library, const Formats& formats,
                const ProgramSettings& settings)
{
    Program program{copy.Problems, settings.Targets, {}};
    Host::ProblemList& problems = program.Problems;
    if (problems.HasErrors())
        return program;
    Host::WarnOfMissingTextures(copy.Graph.Document(), copy.File, problems);
    const Host::CgProgram cg = Host::BuildMaterialProgram(copy.Graph, library.Environment(),
                                                          MakeOptions(settings, false), problems);
    if (problems.HasErrors())
        return program;
    for (const auto& format : formats) {
        std::vector<Host::ProgramFile> files =
            Host::WriteProgram(*format, cg, copy.Graph, copy.File, problems);
        for (std::size_t i = 0; i < files.size(); ++i) {
            std::vector<std::string> nodes = Host::FindNodesOfLines(files[i], cg);
            program.Files.push_back(
                {format->Endings()[i], std::move(files[i].Text), std::move(nodes)});
        }
    }
    return program;
}

std::unique_ptr<Host::Exporter> MakeExporter(const Library& library, const ExportSettings& settings)
{
    if (settings.IsShaderGraph)
        return std::make_unique<Host::ShaderGraphExporter>(library.Plugins(),
                                                           library.Environment());
    return std::make_unique<Host::ProgramExporter>(
        library.Plugins(), library.Environment(),
        MakeOptions(settings.Programs, settings.IsByContent), MakeFormats(settings.Programs));
}

std::vector<Host::ExportJob> MakeJobs(const Paths& files, const std::filesystem::path& folder,
                                      unsigned threads)
{
    std::vector<Host::ExportJob> jobs;
    for (Host::MaterialFile& material : Host::FindMaterials(files, threads))
        jobs.push_back({std::move(material.Document), (folder / material.Name).string()});
    return jobs;
}

} // namespace

const Program::File& Program::Find(const std::string& extension) const
{
    if (Problems.HasErrors())
        throw FaultyMaterial(Problems);
    const auto file = std::ranges::find(Files, extension, &File::Extension);
    if (file == Files.end())
        throw Host::HostError({}, Compose("the program has no file ", Host::Excerpt(extension)));
    return *file;
}

Program Compile(const Material& material, const ProgramSettings& settings)
{
    const OpenedCopy copy = material.OpenCopy();
    const py::gil_scoped_release release;
    return Compile(copy, material.GetLibrary(), MakeFormats(settings), settings);
}

std::vector<Program> CompileMany(const Library& library, const Paths& files,
                                 const ProgramSettings& settings, std::size_t threads)
{
    const Formats formats = MakeFormats(settings);
    std::vector<Program> programs(files.size());
    ForEachParallel(files.size(), threads, [&](std::size_t i) {
        Host::ProblemList problems;
        Host::MaterialGraph graph =
            Host::OpenMaterial(Host::ReadMaterial(files[i], problems), library.Plugins(), problems);
        programs[i] =
            Compile({std::move(graph), std::move(problems), files[i]}, library, formats, settings);
    });
    return programs;
}

std::string ExtensionOf(const std::string& target, const std::string& stage)
{
    std::string_view extension = target == "cg" ? "cg" : "";
    for (const Host::CompileTarget known : Host::AllCompileTargets()) {
        if (Host::GetTargetName(known) == target)
            extension = Host::GetTargetEnding(known);
    }
    if (extension.empty())
        RefuseWord("target", target, Tool::TargetWords());
    return Compose(".", stage, ".", extension);
}

std::string FormatShaderGraph(const Material& material)
{
    OpenedCopy copy = material.OpenCopy();
    const py::gil_scoped_release release;
    if (!copy.Problems.HasErrors()) {
        Host::GeneratedShader shader;
        shader.Graph.Providers.push_back(
            boost::make_shared<Host::EnvironmentProvider>(material.GetLibrary().Environment()));
        Host::GenerateShaderGraph(copy.Graph, shader, copy.Problems);
        if (!copy.Problems.HasErrors())
            return Host::FormatShaderGraph(shader.Graph);
    }
    throw FaultyMaterial(copy.Problems);
}

std::pair<std::string, std::vector<Host::Problem>> FormatMaterialX(const Material& material)
{
    OpenedCopy copy = material.OpenCopy();
    const py::gil_scoped_release release;
    if (copy.Problems.HasErrors())
        throw FaultyMaterial(copy.Problems);
    std::string text = Host::WriteMaterialX(
        Host::DescribeMaterial(copy.Graph, material.GetLibrary().Plugins()), copy.Problems);
    return {std::move(text), copy.Problems.Problems()};
}

ExportSummary Export(const Library& library, const Paths& files,
                     const std::filesystem::path& folder, const ExportSettings& settings)
{
    const auto threads = static_cast<unsigned>(ThreadCount(settings.Threads));
    if (!settings.DepfileTarget.empty() && !Host::IsDepfileName(settings.DepfileTarget))
        throw Host::HostError(Host::Place(settings.DepfileTarget),
                              "Make and Ninja interpret this name differently");
    const std::unique_ptr<Host::Exporter> exporter = MakeExporter(library, settings);
    const Host::ExportLayout layout =
        settings.IsByContent ? Host::ExportLayout::ByContent : Host::ExportLayout::ByMaterial;
    const Host::ExportBatch batch(*exporter, MakeJobs(files, folder, threads), layout, folder);
    Host::OutputRecord record(folder, layout);
    std::optional<Host::Depfile> depfile;
    if (!settings.Depfile.empty()) {
        if (settings.Depfile.has_parent_path())
            Host::CreateFolder(settings.Depfile.parent_path());
        depfile.emplace(settings.Depfile);
    }

    ExportSummary summary;
    Host::ProblemList problems;
    std::set<std::string> contents;
    batch.Run(threads, [&](const Host::ExportJob& job, const Host::ExportOutcome& outcome) {
        problems.Append(outcome.Problems);
        if (outcome.Problems.HasErrors()) {
            ++summary.Failed;
            return;
        }
        ++summary.Exported;
        contents.insert(outcome.Content);
        Paths outputs;
        for (const Host::ExportedFile& output : outcome.Outputs)
            outputs.push_back(output.File);
        summary.Outputs.insert(summary.Outputs.end(), outputs.begin(), outputs.end());
        record.Add(job.Document, outcome.Outputs);
        if (depfile)
            depfile->Add(settings.DepfileTarget.empty() ? outputs : Paths{settings.DepfileTarget},
                         outcome.Inputs, problems);
    });
    summary.Distinct = contents.size();
    summary.Left = record.Update(settings.Prunes, problems);
    summary.Problems = problems.Problems();
    if (summary.Failed == 0) {
        if (summary.Exported > 0)
            Host::FlushFolder(folder);
        if (depfile)
            depfile->Commit();
    }
    return summary;
}

} // namespace Mox::Python
