#include "mox/interchange/MaterialXIncludes.h"

#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::size_t deepestMaterialXInclude = 16;

/// Returns a name that is the same for all paths to a file.
std::filesystem::path RealName(const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(file, error);
    return error ? file : real;
}

/// Copies the attributes of the root of an included file that apply to all its elements.
void InheritFromRoot(XmlTree& child, const XmlTree& root)
{
    for (const char* attribute : {"colorspace", "fileprefix"}) {
        const std::string* value = root.Find(attribute);
        if (value && !child.Find(attribute))
            child.Attributes.push_back({attribute, *value});
    }
}

} // namespace

std::vector<std::filesystem::path> MaterialXIncludes::Resolve(XmlTree& root, std::size_t bytes)
{
    _bytes = bytes;
    _open.push_back(RealName(root.Where.File));
    _seen.insert(_open.front());
    Expand(root);
    return std::move(_files);
}

void MaterialXIncludes::Expand(XmlTree& root)
{
    std::vector<XmlTree> children;
    for (XmlTree& child : root.Children) {
        if (child.Name == "xi:include")
            Append(children, child);
        else
            children.push_back(std::move(child));
    }
    root.Children = std::move(children);
}

void MaterialXIncludes::Append(std::vector<XmlTree>& children, const XmlTree& include)
{
    const std::filesystem::path name = include.Get("href");
    const std::filesystem::path file =
        std::filesystem::path(include.Where.File).parent_path() / name;
    const std::filesystem::path identity = RealName(file);
    std::error_code error;
    if (std::find(_open.begin(), _open.end(), identity) != _open.end())
        throw HostError(include.Where, "the file includes itself");
    if (_open.size() > deepestMaterialXInclude)
        throw HostError(include.Where, Compose("files include one another more than ",
                                               deepestMaterialXInclude, " levels deep"));
    if (!StaysInFolder(name) || !std::filesystem::is_regular_file(file, error)) {
        _problems.Warn(
            "interchange-dropped", include.Where,
            Compose("the file \"", name.string(),
                    "\" is ignored, because it is missing or outside the folder of this file"));
        return;
    }
    if (!_seen.insert(identity).second)
        return;
    _open.push_back(identity);
    XmlTree root = Read(file, include);
    Expand(root);
    _open.pop_back();
    for (XmlTree& child : root.Children) {
        InheritFromRoot(child, root);
        children.push_back(std::move(child));
    }
}

XmlTree MaterialXIncludes::Read(const std::filesystem::path& file, const XmlTree& include)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error || size > MostBytes - std::min(_bytes, MostBytes))
        throw HostError(include.Where,
                        "the document and its includes are larger than the limit of 64 MiB");
    const std::string text = ReadFile(file);
    _bytes += text.size();
    _files.push_back(file);
    XmlTree root = ParseXmlTree(file.string(), text);
    if (root.Name != "materialx")
        throw HostError(root.Where,
                        Compose("the root element is \"", root.Name, "\", expected \"materialx\""));
    return root;
}

} // namespace Mox::Host
