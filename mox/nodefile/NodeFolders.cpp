#include "mox/nodefile/NodeFolders.h"

#include "mox/Text.h"
#include "mox/host/SearchFolders.h"

#include <algorithm>
#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace Mox::Host {

namespace {

constexpr std::size_t headSize = 4096; ///< in bytes; the root's start tag must end within it

struct CloseFolder
{
    void operator()(DIR* folder) const { closedir(folder); }
};

/// Returns the start tag of the root element, without what precedes it; empty if it is incomplete.
std::string_view FindRootTag(std::string_view text)
{
    std::size_t at = text.find('<');
    while (at != std::string_view::npos) {
        text.remove_prefix(at);
        std::string_view end;
        if (text.starts_with("<!--"))
            end = "-->";
        else if (text.starts_with("<?"))
            end = "?>";
        else
            break;
        const std::size_t close = text.find(end);
        at = close == std::string_view::npos ? close : text.find('<', close);
    }
    if (at == std::string_view::npos)
        return {};
    return text.substr(0, text.find('>') + 1);
}

/// Reads the attributes of a start tag in order. For such short text, plain loops need a third of
/// the instructions of library searches.
class TagAttributes
{
public:
    explicit TagAttributes(std::string_view tag) : _at(tag.data()), _end(tag.data() + tag.size()) {}

    bool Next(std::string_view& name, std::string_view& value)
    {
        SkipSpaces();
        const char* begin = _at;
        while (_at != _end && *_at != '=' && !IsSpace(*_at))
            ++_at;
        name = {begin, _at};
        SkipSpaces();
        if (_at == _end || *_at++ != '=')
            return false;
        SkipSpaces();
        if (_at == _end || (*_at != '"' && *_at != '\''))
            return false;
        const char quote = *_at++;
        begin = _at;
        while (_at != _end && *_at != quote)
            ++_at;
        value = {begin, _at};
        return _at++ != _end;
    }

private:
    static bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

    void SkipSpaces()
    {
        while (_at != _end && IsSpace(*_at))
            ++_at;
    }

    const char* _at;
    const char* _end;
};

void ReadHead(std::string_view text, NodeHead& head)
{
    std::string_view tag = FindRootTag(text);
    constexpr std::string_view start = "<node";
    if (!tag.starts_with(start) || tag.size() == start.size() ||
        std::string_view(" \t\r\n").find(tag[start.size()]) == std::string_view::npos)
        return;
    TagAttributes attributes(tag.substr(start.size()));
    // A file for a compiled type has neither a label nor a library.
    for (std::string_view name, value;
         (head.TypeName.empty() || head.Label.empty() || head.Library.empty()) &&
         attributes.Next(name, value);) {
        if (name == "type")
            head.TypeName = value;
        else if (name == "label")
            head.Label = value;
        else if (name == "library")
            head.Library = value;
        else if (name == "compiled")
            head.IsCompiled = value == "true";
    }
    const auto hasReference = [](const std::string& value) {
        return value.find('&') != std::string::npos;
    };
    if (hasReference(head.TypeName) || hasReference(head.Label) || hasReference(head.Library))
        head.TypeName.clear();
}

/// Returns the start of a file; empty if it cannot be read.
std::string_view ReadBeginning(const std::string& file, std::array<char, headSize>& buffer)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return {};
    const ssize_t size = read(descriptor, buffer.data(), buffer.size());
    close(descriptor);
    return {buffer.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

} // namespace

std::vector<std::string> NodeFolders(const std::filesystem::path& pluginFolder)
{
    std::vector<std::string> folders = ReadSearchPath(nodePathVariable);
    folders.push_back((pluginFolder / "nodes").string());
    return folders;
}

std::vector<NodeHead> ListNodeFiles(const std::string& folder)
{
    const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
    if (!entries)
        return {};
    std::vector<std::string> files;
    while (const dirent* entry = readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        if (name.ends_with(".xml") && !name.starts_with('.'))
            files.emplace_back(name);
    }
    std::sort(files.begin(), files.end());
    std::vector<NodeHead> heads(files.size());
    std::array<char, headSize> buffer;
    for (std::size_t i = 0; i < files.size(); ++i) {
        heads[i].File = Materials::Compose(folder, "/", files[i]);
        ReadHead(ReadBeginning(heads[i].File, buffer), heads[i]);
    }
    return heads;
}

} // namespace Mox::Host
