#include "mox/batch/MaterialFiles.h"

#include "mox/Text.h"
#include "mox/batch/StartThreads.h"
#include "mox/host/HostError.h"
#include "mox/interchange/ReadMaterial.h"
#include "mox/xml/XmlTree.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

using std::filesystem::path;

constexpr std::string_view materialXEnding = ".mtlx";

bool HasEndingOf(const path& file, FoundFormats formats)
{
    const path extension = file.extension();
    return extension == ".xml" || (formats == FoundFormats::All && extension == materialXEnding);
}

/// An entry that cannot be inspected counts as a file, so that reading it reports the error.
bool MayBeFile(const std::filesystem::directory_entry& entry)
{
    std::error_code error;
    return entry.is_regular_file(error) || error;
}

bool MayBeMaterial(const std::string& file) noexcept
{
    return file.ends_with(materialXEnding) ? MayHoldMaterialX(file) : MayHaveRoot(file, "material");
}

std::vector<std::string> KeepMaterials(std::vector<std::string> files, unsigned workers)
{
    std::vector<char> mayBeMaterial(files.size()); // not std::vector<bool>: threads write to
                                                   // adjacent elements
    std::atomic<std::size_t> next = 0;
    const auto look = [&] {
        for (std::size_t i = next++; i < files.size(); i = next++)
            mayBeMaterial[i] = MayBeMaterial(files[i]) ? 1 : 0;
    };
    {
        const std::vector<std::jthread> others = StartThreads(workers - 1, look);
        look();
    }
    std::vector<std::string> materials;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (mayBeMaterial[i] != 0)
            materials.push_back(std::move(files[i]));
    }
    return materials;
}

std::vector<std::string> FindIn(const path& folder, unsigned workers, FoundFormats formats)
{
    std::vector<std::string> files;
    std::error_code error;
    std::filesystem::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::end(entry); entry.increment(error)) {
        if (HasEndingOf(entry->path(), formats) && MayBeFile(*entry))
            files.push_back(entry->path().string());
    }
    const Place where{folder.string()};
    if (error) {
        throw HostError(where,
                        Materials::Compose("cannot be searched for materials: ", error.message()));
    }
    std::vector<std::string> found = KeepMaterials(std::move(files), workers);
    if (found.empty())
        throw HostError(where, "contains no material");
    std::sort(found.begin(), found.end());
    return found;
}

/// The path of a folder with symbolic links resolved, the same for all paths that lead to it. A
/// folder that does not exist keeps its path.
path WithoutLinks(const path& folder)
{
    std::error_code error;
    const path real = std::filesystem::canonical(folder.empty() ? "." : folder, error);
    return error ? folder : real;
}

} // namespace

std::vector<MaterialFile> FindMaterials(const std::vector<path>& filesAndFolders, unsigned workers,
                                        FoundFormats formats)
{
    std::vector<MaterialFile> materials;
    std::unordered_set<std::string> seen;
    const auto add = [&](const path& folder, const path& name, const std::string& document) {
        if (seen.insert((folder / name).string()).second)
            materials.push_back({document, path(name).replace_extension().string()});
    };
    for (const path& argument : filesAndFolders) {
        std::error_code error;
        if (!std::filesystem::is_directory(argument, error)) {
            add(WithoutLinks(argument.parent_path()), argument.filename(), argument.string());
            continue;
        }
        const path folder = WithoutLinks(argument);
        for (const std::string& document : FindIn(argument, workers, formats))
            add(folder, path(document).lexically_relative(argument), document);
    }
    return materials;
}

} // namespace Mox::Host
