#include "DocumentSource.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/interchange/ReadMaterial.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <iterator>

namespace Mox::Tool {

namespace {

[[noreturn]] void RefuseSecondStandardInput()
{
    throw CLI::ValidationError("-", "standard input can be read only once");
}

} // namespace

void AddDocument(CLI::App& command, const std::string& name, std::string& file)
{
    command.add_option(name, file, "Material document; - for standard input")
        ->type_name("")
        ->required();
}

CLI::Option* AddDocuments(CLI::App& command, std::vector<std::string>& files)
{
    return command
        .add_option("FILE", files, "Material documents and folders; - for standard input")
        ->type_name("");
}

bool IsStandardInput(const std::string& file)
{
    return file == "-";
}

std::string SourceName(const std::string& file)
{
    return IsStandardInput(file) ? "standard input" : file;
}

std::string ReadSource(const std::string& file)
{
    if (!IsStandardInput(file))
        return Host::ReadFile(file);
    std::string text = Host::ReadStream(std::cin, SourceName(file));
    if (std::ferror(stdin) != 0) // the stream treats an error as the end
        throw Host::HostError(SourceName(file), "cannot be read");
    return text;
}

std::string ReadReplacedSource(const std::string& file)
{
    std::string text = ReadSource(file);
    if (!IsStandardInput(file))
        Host::RefuseMaterialX(file, text);
    else if (Host::IsMaterialX({}, text))
        throw Host::HostError(SourceName(file), "is a MaterialX document; \"mox convert - -o "
                                                "FILE\" converts it to a material");
    return text;
}

Host::MaterialDocument ReadDocument(const std::string& file, Host::ProblemList& problems,
                                    const std::string& material)
{
    if (!IsStandardInput(file))
        return Host::ReadMaterial(file, problems, material);
    const auto parse = [&](const std::string& name, std::string_view text,
                           Host::ProblemList& found) {
        return Host::ParseMaterial(name, text, found, material);
    };
    return Host::ReadDocumentText(
        SourceName(file), [&] { return ReadSource(file); }, parse, problems);
}

Host::MaterialDocument ReadDocument(const std::string& file)
{
    return Host::WithoutErrors(
        [&](Host::ProblemList& problems) { return ReadDocument(file, problems); });
}

std::vector<Host::MaterialFile> FindDocuments(const std::vector<std::string>& files,
                                              unsigned workers, Host::FoundFormats formats)
{
    std::vector<std::filesystem::path> others;
    std::ranges::remove_copy_if(files, std::back_inserter(others), IsStandardInput);
    std::vector<Host::MaterialFile> materials = Host::FindMaterials(others, workers, formats);
    const std::size_t count = files.size() - others.size();
    if (count > 1)
        RefuseSecondStandardInput();
    if (count == 1)
        materials.insert(materials.begin(), Host::MaterialFile{"-", {}});
    return materials;
}

void RequireOneStandardInput(const std::string& first, const std::string& second)
{
    if (IsStandardInput(first) && IsStandardInput(second))
        RefuseSecondStandardInput();
}

void RequireReplaceable(const std::string& file)
{
    const std::string obstacle = Host::ObstacleToReplacing(file);
    if (!obstacle.empty())
        throw Host::HostError(Host::Place(file), obstacle + "; use --force to replace it anyway");
}

std::string FormatMessage(const Host::Problem& problem)
{
    return Materials::Compose("mox: ", problem.Level == Host::Severity::Warning ? "warning: " : "",
                              problem.Format());
}

void PrintProblems(const Host::ProblemList& problems)
{
    for (const Host::Problem& problem : problems.Problems())
        std::cerr << FormatMessage(problem) << '\n';
}

} // namespace Mox::Tool
