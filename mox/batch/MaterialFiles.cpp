#include "mox/batch/MaterialFiles.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <libxml/xmlreader.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string_view>
#include <system_error>
#include <unordered_set>

namespace Mox::Host {

namespace {

using std::filesystem::path;

bool MayBeMaterial(const path& file)
{
    if (!std::ifstream(file))
        return true; // libxml2 would print the reason
    const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
        xmlReaderForFile(file.c_str(), nullptr,
                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeTextReader);
    if (!reader)
        return true;
    while (xmlTextReaderRead(reader.get()) == 1) {
        if (xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT) {
            const xmlChar* name = xmlTextReaderConstName(reader.get());
            return std::string_view(reinterpret_cast<const char*>(name)) == "material";
        }
    }
    return true;
}

/// What cannot be looked at counts, so that its reader says why.
bool MayBeFile(const std::filesystem::directory_entry& entry)
{
    std::error_code error;
    return entry.is_regular_file(error) || error;
}

std::vector<std::string> FindIn(const path& folder)
{
    std::vector<std::string> found;
    std::error_code error;
    std::filesystem::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::end(entry); entry.increment(error)) {
        if (entry->path().extension() == ".xml" && MayBeFile(*entry) &&
            MayBeMaterial(entry->path()))
            found.push_back(entry->path().string());
    }
    const Place where{folder.string(), 0, {}, {}};
    if (error) {
        throw HostError(where,
                        Materials::Compose("cannot be searched for materials: ", error.message()));
    }
    if (found.empty())
        throw HostError(where, "holds no material");
    std::sort(found.begin(), found.end());
    return found;
}

/// A folder as it is called when all roads to it have one name. What does not exist keeps its own.
path WithoutLinks(const path& folder)
{
    std::error_code error;
    const path real = std::filesystem::canonical(folder.empty() ? "." : folder, error);
    return error ? folder : real;
}

} // namespace

std::vector<MaterialFile> FindMaterials(const std::vector<path>& filesAndFolders)
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
        for (const std::string& document : FindIn(argument))
            add(folder, path(document).lexically_relative(argument), document);
    }
    return materials;
}

} // namespace Mox::Host
