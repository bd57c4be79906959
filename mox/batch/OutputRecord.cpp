#include "mox/batch/OutputRecord.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/ContentHash.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace Mox::Host {

namespace {

using Materials::Compose;
using std::filesystem::path;

constexpr std::string_view fileName = ".mox-outputs";
constexpr std::string_view firstLine = "mox outputs 1";
constexpr std::size_t hashLength = 32;

/// The exclusive right to change a folder's list. On file systems without locks, processes do not
/// wait for each other, and the list may miss what another process adds at the same time.
class FolderLock
{
public:
    explicit FolderLock(const path& folder)
        : _descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        while (_descriptor >= 0 && flock(_descriptor, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    ~FolderLock()
    {
        if (_descriptor >= 0)
            close(_descriptor);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int _descriptor;
};

/// Escapes the line breaks in a name.
std::string Escape(const std::string& name)
{
    std::string text;
    for (const char c : name) {
        if (c == '\\')
            text += "\\\\";
        else if (c == '\n')
            text += "\\n";
        else
            text += c;
    }
    return text;
}

std::string Unescape(std::string_view text)
{
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size())
            name += text[i];
        else
            name += text[++i] == 'n' ? '\n' : text[i];
    }
    return name;
}

/// Whether an export may write a file with this name into its folder.
bool IsOutputName(const std::string& name)
{
    const path file(name);
    return file.has_filename() && file == file.lexically_normal() && name != "." &&
           StaysInFolder(file) && name != fileName;
}

/// Maps documents to their names in a folder's list.
class DocumentNames
{
public:
    /// @param folder without symbolic links
    explicit DocumentNames(path folder) : _folder(std::move(folder)) {}

    /// Returns the name of a document; a symbolic link is not resolved and keeps its own name.
    std::string NameOf(const path& document)
    {
        const path parent = document.has_parent_path() ? document.parent_path() : path(".");
        const auto [entry, isNew] = _parents.try_emplace(parent.string());
        if (isNew)
            entry->second = std::filesystem::weakly_canonical(parent).lexically_relative(_folder);
        return (entry->second / document.filename()).lexically_normal().string();
    }

private:
    path _folder;
    std::map<std::string, path> _parents; ///< paths relative to the folder, with symbolic links
                                          ///< resolved
};

/// Whether a file is known not to exist; one that cannot be inspected is not.
bool IsGone(const path& file)
{
    std::error_code error;
    return std::filesystem::status(file, error).type() == std::filesystem::file_type::not_found;
}

/// Removes an output if it is in the folder and unchanged since it was exported.
/// @param folder without symbolic links
/// @returns why it was not removed, or nothing
std::string RemoveOutput(const path& folder, const std::string& name, const std::string& hash)
{
    const path file = folder / name;
    std::error_code error;
    if (std::filesystem::canonical(file.parent_path(), error) != file.parent_path())
        return "it is reached through a symbolic link";
    if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(file, error)))
        return "it is not a regular file";
    try {
        if (HashContent({ReadFile(file)}, "") != hash)
            return "it was changed after it was exported";
    } catch (const HostError& failure) {
        return "it " + failure.Message;
    }
    return std::filesystem::remove(file, error) || !error
               ? std::string()
               : "it cannot be removed: " + error.message();
}

} // namespace

std::vector<LeftOutput> OutputRecord::Update(bool prunes, ProblemList& problems)
{
    std::error_code error;
    const path folder = std::filesystem::canonical(_folder, error);
    if (error)
        return {}; // nothing has been exported yet
    const FolderLock lock(folder);
    Entries entries = Read(problems);
    const std::set<std::string> documents = Merge(entries, folder);
    std::map<std::string, bool> isGone; // whether each document is gone
    const auto isUsed = [&](const Entry& entry) {
        bool used = false;
        for (const std::string& document : entry.Documents) {
            const auto [found, isNew] = isGone.emplace(document, false);
            if (isNew && !documents.contains(document))
                found->second = IsGone(folder / document);
            used = used || !found->second;
        }
        return used;
    };
    std::vector<LeftOutput> left;
    for (auto entry = entries.begin(); entry != entries.end();) {
        const auto& [name, output] = *entry;
        bool isListed = true;
        if (isUsed(output)) {
            std::erase_if(entry->second.Documents,
                          [&](const std::string& document) { return isGone.at(document); });
        } else if (std::filesystem::symlink_status(folder / name, error).type() ==
                   std::filesystem::file_type::not_found) {
            isListed = false;
        } else {
            const path file = _folder / name;
            const std::string reason = DescribeLeft(output);
            const std::string obstacle = prunes ? RemoveOutput(folder, name, output.Hash) : "";
            isListed = !prunes || !obstacle.empty();
            if (obstacle.empty())
                left.push_back({file, reason, prunes});
            else
                problems.Warn(exportRule, file.string(),
                              Compose(reason, "; it is kept because ", obstacle));
        }
        entry = isListed ? std::next(entry) : entries.erase(entry);
    }
    Write(entries, problems);
    return left;
}

/// Merges this export into the known entries, replacing entries for the same files. For programs
/// stored by content, references from earlier exports of these documents are removed first.
/// @returns the documents of this export
std::set<std::string> OutputRecord::Merge(Entries& known, const path& folder) const
{
    DocumentNames names(folder);
    std::set<std::string> documents;
    for (const Export& added : _added)
        documents.insert(names.NameOf(added.Document));
    const std::string programs = Compose(programFolder, "/");
    if (_layout == ExportLayout::ByContent) {
        for (auto entry = known.lower_bound(programs);
             entry != known.end() && entry->first.starts_with(programs); ++entry)
            std::erase_if(entry->second.Documents, [&](const std::string& document) {
                return documents.contains(document);
            });
    }
    for (const Export& added : _added) {
        const std::string document = names.NameOf(added.Document);
        for (const ExportedFile& output : added.Outputs) {
            Entry& entry = known[output.File.lexically_relative(_folder).string()];
            entry.Hash = output.Hash;
            entry.Documents.insert(document);
        }
    }
    return documents;
}

std::string OutputRecord::DescribeLeft(const Entry& entry) const
{
    if (entry.Documents.empty())
        return "is a program that no material uses any more";
    return Compose("is left from ",
                   (_folder / *entry.Documents.begin()).lexically_normal().string(),
                   ", which no longer exists");
}

OutputRecord::Entries OutputRecord::Read(ProblemList& problems) const
{
    const path file = _folder / fileName;
    std::error_code error;
    Entries entries;
    try {
        if (!std::filesystem::is_regular_file(file, error) || Parse(ReadFile(file), entries))
            return entries;
        problems.Warn(
            exportRule, file.string(),
            "is not a list of outputs, so a new list is started; outputs of materials that "
            "no longer exist are unknown");
    } catch (const HostError& failure) {
        problems.Warn(exportRule, failure.Where, failure.Message);
    }
    return {};
}

void OutputRecord::Write(const Entries& entries, ProblemList& problems) const
{
    const path file = _folder / fileName;
    std::error_code error;
    if (entries.empty() && !std::filesystem::exists(file, error))
        return;
    try {
        const std::string text = Format(entries);
        WriteTogether({{file, text}});
    } catch (const HostError& failure) {
        problems.Warn(exportRule, failure.Where, failure.Message);
    }
}

/// Writes one line with the hash for each output, followed by a line starting with a space for each
/// of its documents.
std::string OutputRecord::Format(const Entries& entries)
{
    std::string text = Compose(firstLine, "\n");
    for (const auto& [name, entry] : entries) {
        text += Compose(entry.Hash, " ", Escape(name), "\n");
        for (const std::string& document : entry.Documents)
            text += Compose(" ", Escape(document), "\n");
    }
    return text;
}

/// @returns whether the text is a valid list
bool OutputRecord::Parse(const std::string& text, Entries& entries)
{
    std::string_view rest = text;
    const auto takeLine = [&] {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        return line;
    };
    if (!rest.ends_with('\n') || takeLine() != firstLine)
        return false;
    Entry* entry = nullptr;
    while (!rest.empty()) {
        const std::string_view line = takeLine();
        if (line.starts_with(' ')) {
            if (!entry)
                return false;
            entry->Documents.insert(Unescape(line.substr(1)));
            continue;
        }
        if (line.find(' ') != hashLength)
            return false;
        const std::string name = Unescape(line.substr(hashLength + 1));
        const auto [place, isNew] =
            entries.try_emplace(name, Entry{std::string(line.substr(0, hashLength)), {}});
        if (!isNew || !IsOutputName(name))
            return false;
        entry = &place->second;
    }
    return true;
}

} // namespace Mox::Host
