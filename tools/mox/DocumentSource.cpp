#include "DocumentSource.h"

#include "mox/host/File.h"
#include "mox/interchange/ReadMaterial.h"

#include <CLI/CLI.hpp>

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
    if (std::ferror(stdin) != 0) // which the stream takes for the end
        throw Host::HostError(SourceName(file), "cannot be read");
    return text;
}

Host::MaterialDocument ReadDocument(const std::string& file, Host::ProblemList& problems)
{
    if (!IsStandardInput(file))
        return Host::ReadMaterial(file, problems);
    const std::string name = SourceName(file);
    try {
        return Host::ParseMaterial(name, ReadSource(file), problems);
    } catch (const Host::HostError& error) {
        problems.Fail("unreadable", error);
        Host::MaterialDocument document;
        document.File = name;
        return document;
    }
}

Host::MaterialDocument ReadDocument(const std::string& file)
{
    Host::ProblemList problems;
    Host::MaterialDocument document = ReadDocument(file, problems);
    problems.ThrowFirstError();
    return document;
}

std::vector<Host::MaterialFile> FindDocuments(const std::vector<std::string>& files,
                                              unsigned workers)
{
    std::vector<std::filesystem::path> others;
    std::ranges::remove_copy_if(files, std::back_inserter(others), IsStandardInput);
    std::vector<Host::MaterialFile> materials = Host::FindMaterials(others, workers);
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

} // namespace Mox::Tool
