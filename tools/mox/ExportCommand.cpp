#include "Commands.h"
#include "DocumentSource.h"
#include "LoadEnvironment.h"
#include "LoadPlugins.h"
#include "NumberCheck.h"
#include "OneOf.h"
#include "ProgressBar.h"
#include "Signals.h"
#include "Targets.h"
#include "mox/Text.h"
#include "mox/batch/Depfile.h"
#include "mox/batch/ExportBatch.h"
#include "mox/batch/OutputRecord.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/Excerpt.h"
#include "mox/host/File.h"
#include "mox/json/RecordJson.h"
#include "mox/program/ProgramExporter.h"

#include <iostream>
#include <optional>
#include <thread>
#include <unordered_set>

namespace Mox::Tool {

namespace {

using Materials::Compose;

constexpr const char* exportFooter =
    R"(A folder stands for all materials (.xml and .mtlx files) in it and in its
subfolders. The programs of a material are named after the material. For a
material in a folder, the names also contain its path relative to that
folder. A file is not written again if its content has not changed.

The file .mox-outputs in the output folder lists the files that exports have
written there. Later exports use it to find and report outputs whose material no
longer exists. --prune removes them unless they have been modified.

Examples:
  mox export rim.xml
      Print the programs of one material.
  make_material.py | mox export - --target essl
      Do the same for a document that another program generates.
  mox export materials extra/rim.xml -o shaders -j 8
      Export all materials in a folder and one more, on eight threads.
  mox export materials -o shaders --target cg,glsl,spirv
      Write programs in several languages, with a reflection file that lists
      locations and bindings.
  mox export materials -o shaders --prune
      Export all materials, and remove the outputs of those that were deleted.
  mox export rim.xml -o shaders --depfile rim.d
      Write a dependency file for Make or Ninja for the two programs.
  mox export materials -o shaders --depfile all.d --depfile-target all.stamp && touch all.stamp
      Do the same for a whole folder with one stamp file. The build rule should list
      the materials too, because a dependency file cannot list new ones.
)";

constexpr const char* relaxedWord = "relaxed";

struct ExportOptions
{
    std::vector<std::string> Files;
    std::string Folder;
    unsigned Workers = std::max(1U, std::thread::hardware_concurrency());
    std::string Depfile;
    std::string DepfileTarget;
    std::vector<std::string> Targets{"cg"};
    std::string Precision = "full";
    bool IsOptimised = false;
    bool IsPlain = false;
    bool IsByContent = false;
    bool IsShaderGraph = false;
    bool IsQuiet = false;
    bool IsJson = false;
    bool Prunes = false;
    std::string Environment;
};

void ExportToOutput(const Host::MaterialExporter& exporter, const std::string& file)
{
    Host::ProblemList found;
    Host::MaterialDocument document = ReadDocument(file, found);
    const Host::ExportedMaterial exported = exporter.Export(std::move(document), std::move(found));
    PrintProblems(exported.Problems);
    if (exported.Problems.HasErrors())
        throw CLI::RuntimeError(failureStatus);
    for (std::size_t i = 0; i < exported.Texts.size(); ++i)
        std::cout << (i > 0 ? "\n// ------\n" : "") << exported.Texts[i];
}

struct Tally
{
    std::size_t Exported = 0;
    std::size_t Failed = 0;
    std::size_t Warnings = 0;
    std::unordered_set<std::string> Contents;

    void Add(const Host::ExportOutcome& outcome)
    {
        ++(outcome.Problems.HasErrors() ? Failed : Exported);
        if (!outcome.Problems.HasErrors())
            Contents.insert(outcome.Content);
    }

    /// @param left number of materials that were not exported
    std::string Format(std::size_t left) const
    {
        return Compose("mox: ", Exported, " exported, ", Contents.size(), " distinct, ", Failed,
                       " failed, ", Warnings, Warnings == 1 ? " warning" : " warnings",
                       left > 0 ? Compose("; stopped before exporting ", left, " more") : "");
    }

    std::string FormatAsJson(std::size_t left) const
    {
        return Host::FormatJsonLines({{"version", Host::RecordJsonVersion},
                                      {"exported", Exported},
                                      {"distinct", Contents.size()},
                                      {"failed", Failed},
                                      {"warnings", Warnings},
                                      {"left", left}});
    }
};

std::optional<Host::Depfile> OpenDepfile(const std::filesystem::path& file)
{
    if (file.empty())
        return {};
    if (file.has_parent_path())
        Host::CreateFolder(file.parent_path());
    return std::optional<Host::Depfile>(std::in_place, file);
}

std::vector<std::filesystem::path> FilesOf(const std::vector<Host::ExportedFile>& outputs)
{
    std::vector<std::filesystem::path> files;
    files.reserve(outputs.size());
    for (const Host::ExportedFile& output : outputs)
        files.push_back(output.File);
    return files;
}

/// Exports all materials and prints the results. After a signal, it stops without waiting for
/// unfinished materials, since only complete ones are written to disk.
Tally RunBatch(const Host::ExportBatch& batch, std::optional<Host::Depfile>& depfile,
               Host::OutputRecord& record, const ExportOptions& options)
{
    const std::vector<std::filesystem::path> stamp{options.DepfileTarget};
    Tally tally;
    ProgressBar bar(batch.Size(), !options.IsQuiet);
    const auto print = [&](const Host::ProblemList& problems) {
        for (const Host::Problem& problem : problems.Problems()) {
            tally.Warnings += problem.Level == Host::Severity::Warning ? 1 : 0;
            bar.Print(FormatMessage(problem));
        }
    };
    const auto report = [&](const Host::ExportJob& job, const Host::ExportOutcome& outcome) {
        tally.Add(outcome);
        print(outcome.Problems);
        if (!outcome.Problems.HasErrors())
            record.Add(job.Document, outcome.Outputs);
        if (depfile && !outcome.Problems.HasErrors()) {
            Host::ProblemList problems;
            depfile->Add(options.DepfileTarget.empty() ? FilesOf(outcome.Outputs) : stamp,
                         outcome.Inputs, problems);
            print(problems);
        }
        bar.Advance();
    };
    const auto updateRecord = [&](bool prunes) {
        Host::ProblemList problems;
        for (const Host::LeftOutput& output : record.Update(prunes, problems)) {
            if (!options.IsQuiet)
                bar.Print(Host::MessageLine(
                    Compose("mox: ", output.File.string(), ": ", output.Reason,
                            output.IsRemoved ? "; removed" : "; --prune removes it")));
        }
        print(problems);
    };
    const auto printSummary = [&] {
        const std::size_t left = batch.Size() - tally.Exported - tally.Failed;
        if (options.IsJson)
            std::cout << tally.FormatAsJson(left)
                      << std::flush; // in case a signal ends the program
        else if (!options.IsQuiet)
            bar.Print(tally.Format(left));
    };
    StopOnSignal stop;
    try {
        batch.Run(options.Workers, report, stop.Token(), [&] {
            updateRecord(false);
            printSummary();
            EndBySignal(stop.Signal());
        });
        updateRecord(options.Prunes);
    } catch (...) {
        printSummary();
        throw;
    }
    printSummary();
    if (stop.Signal() != 0)
        EndBySignal(stop.Signal());
    return tally;
}

void ExportToFolder(const Host::Exporter& exporter, std::vector<Host::MaterialFile> materials,
                    const ExportOptions& options)
{
    const std::filesystem::path folder = options.Folder;
    std::vector<Host::ExportJob> jobs;
    jobs.reserve(materials.size());
    for (Host::MaterialFile& material : materials)
        jobs.push_back({std::move(material.Document), (folder / material.Name).string()});
    const Host::ExportLayout layout =
        options.IsByContent ? Host::ExportLayout::ByContent : Host::ExportLayout::ByMaterial;
    const Host::ExportBatch batch(exporter, std::move(jobs), layout, folder);
    Host::OutputRecord record(folder, layout);
    std::optional<Host::Depfile> depfile = OpenDepfile(options.Depfile);
    const Tally tally = RunBatch(batch, depfile, record, options);
    if (tally.Failed > 0)
        throw CLI::RuntimeError(failureStatus);
    // Both the dependency file and status 0 indicate that the programs are on disk.
    if (tally.Exported > 0)
        Host::FlushFolder(folder);
    if (depfile)
        depfile->Commit();
}

std::unique_ptr<Host::MaterialExporter> MakeExporter(const ExportOptions& options,
                                                     const Host::PluginSet& plugins)
{
    Host::Environment environment = LoadEnvironment(options.Environment);
    if (options.IsShaderGraph)
        return std::make_unique<Host::ShaderGraphExporter>(plugins, std::move(environment));
    Host::ProgramOptions programs{!options.IsPlain};
    if (!options.IsPlain && !options.IsByContent)
        programs.Version = MOX_VERSION;
    return std::make_unique<Host::ProgramExporter>(plugins, std::move(environment), programs,
                                                   MakeFormats(options.Targets,
                                                               options.Precision == relaxedWord
                                                                   ? Languages::Precision::Relaxed
                                                                   : Languages::Precision::Full,
                                                               options.IsOptimised));
}

void Export(const ExportOptions& options, const CommonOptions& common)
{
    auto materials = FindDocuments(options.Files, options.Workers);
    if (!options.Folder.empty() && IsStandardInput(materials.front().Document)) {
        throw CLI::ValidationError(
            "export",
            "a document from standard input has no name, so it cannot be exported to a folder");
    }
    if (options.Folder.empty() && materials.size() > 1)
        throw CLI::ValidationError("export",
                                   "--output is required to export more than one material");
    for (const std::string& word : options.Targets) {
        if (options.Folder.empty() && IsBinaryTarget(word))
            throw CLI::ValidationError("--target",
                                       word + " is a binary format and requires --output");
    }
    if (!options.DepfileTarget.empty() && !Host::IsDepfileName(options.DepfileTarget)) {
        throw CLI::ValidationError("--depfile-target",
                                   "Make and Ninja interpret this name differently");
    }
    const Host::PluginSet plugins = LoadPlugins(common);
    const std::unique_ptr<Host::MaterialExporter> exporter = MakeExporter(options, plugins);
    if (options.Folder.empty())
        ExportToOutput(*exporter, materials.front().Document);
    else
        ExportToFolder(*exporter, std::move(materials), options);
}

} // namespace

void AddExportCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command = program.add_subcommand("export", "Write the shader programs of materials");
    const auto options = std::make_shared<ExportOptions>();
    AddDocuments(*command, options->Files)->required();
    auto* output =
        command
            ->add_option(
                "-o,--output", options->Folder,
                "Output folder; without it, the programs of one material go to standard output")
            ->type_name("DIR");
    command
        ->add_option("-j,--jobs", options->Workers,
                     "Number of threads; by default, the number of processors")
        ->type_name("N")
        ->transform(IntegerIn(1, 1024));
    auto* depfile =
        command
            ->add_option(
                "--depfile", options->Depfile,
                "Write the dependencies of the outputs to this file, as rules for Make and Ninja")
            ->type_name("FILE")
            ->needs(output);
    command
        ->add_option("--depfile-target", options->DepfileTarget,
                     "Target of these rules, instead of the outputs")
        ->type_name("FILE")
        ->needs(depfile);
    auto* target = command
                       ->add_option("--target", options->Targets,
                                    "Languages to write, separated by commas; by default cg")
                       ->type_name("LIST")
                       ->delimiter(',')
                       ->allow_extra_args(false)
                       ->check(OneOf(TargetWords()));
    command
        ->add_option("--precision", options->Precision,
                     "\"full\" (the default) computes half as float, and \"relaxed\" uses the "
                     "reduced-precision type of each language")
        ->type_name("WORD")
        ->check(OneOf({"full", relaxedWord}).description(""));
    command->add_flag("--optimise", options->IsOptimised,
                      "Also optimise SPIR-V, which takes much longer than generating it");
    command->add_flag("--plain", options->IsPlain, "Write programs without comments");
    command
        ->add_flag("--by-content", options->IsByContent,
                   "Store identical programs once, in the subfolder \"programs\", and write a file "
                   "for each material that lists its programs")
        ->needs(output);
    command
        ->add_flag("--shader-graph", options->IsShaderGraph,
                   "Write the finished shader graph as text instead of programs")
        ->excludes(target);
    command
        ->add_flag(
            "--prune", options->Prunes,
            "Remove unmodified outputs of earlier exports whose material no longer exists; no "
            "other export may write to the folder at the same time")
        ->needs(output);
    command->add_flag("-q,--quiet", options->IsQuiet,
                      "Print only errors and warnings, without progress or a summary");
    command->add_flag("--json", options->IsJson, "Print the summary as JSON on standard output")
        ->needs(output);
    AddEnvironmentOption(*command, options->Environment);
    command->footer(exportFooter);
    command->callback([options, &common] { Export(*options, common); });
}

} // namespace Mox::Tool
