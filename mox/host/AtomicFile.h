#pragma once

#include "mox/host/EndCleanup.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The time from which written data survives a power failure.
enum class Durability
{
    Immediate, ///< as soon as the file has its final name
    Deferred,  ///< after the system or FlushFolder has flushed the data to disk
};

/// Returns the file itself, or the target if it is a symbolic link. The file need not exist.
/// @throws HostError if the links form a cycle
std::filesystem::path TargetOf(const std::filesystem::path& file);

/// A file that appears under its name only when it is complete. The data is written to an unnamed
/// file, or to a hidden temporary file in the same folder if the file system does not support
/// unnamed files. Commit gives the file its name, so that a reader always finds either the old file
/// or the new one. A replaced file keeps its permissions, and symbolic links still point to it.
/// CleanUpForEnd removes temporary files; after that, no file can be committed.
class AtomicFile
{
public:
    /// Opens the file for writing.
    /// @throws HostError naming the file, if opening fails or the name belongs to something other
    ///         than a regular file
    explicit AtomicFile(const std::filesystem::path& file);

    /// Discards data that was not committed.
    ~AtomicFile();

    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// @throws HostError naming the file, for example if the disk is full
    void Write(std::string_view bytes);

    /// Gives the file its final name. Nothing may be written afterwards.
    /// @throws HostError naming the file; the old file is then unchanged
    void Commit(Durability durability = Durability::Immediate);

private:
    template <class Take>
    void TakeTemporaryName(Take take);
    void RemoveTemporary();

    std::filesystem::path _file;        ///< file name for messages
    std::filesystem::path _target;      ///< with symbolic links resolved
    std::filesystem::path _temporary;   ///< empty if the file is unnamed
    std::optional<EndCleanup> _cleanup; ///< removes the temporary file
    int _descriptor = -1;
};

/// Writes data to a file. If the file already has this content, it is not modified, so that build
/// systems see no change.
/// @returns whether the file was written
/// @throws HostError as AtomicFile does
bool WriteIfChanged(const std::filesystem::path& file, std::string_view bytes);

/// Describes side effects of replacing a file, as a phrase that follows its name: the file is
/// read-only or has other hard links. Returns an empty string if the file may be replaced or does
/// not exist.
std::string ObstacleToReplacing(const std::filesystem::path& file);

/// A file and its intended content.
struct FileContent
{
    std::filesystem::path File;
    std::string_view Bytes;
};

/// Writes files that are only valid together. All data is written before the first file is
/// replaced, so a full disk leaves all old files unchanged. If several processes write the same
/// files at the same time, all resulting files are from one of them. Files that already have their
/// content are not modified. A power failure may lose data that FlushFolder has not flushed to
/// disk.
/// @throws HostError as AtomicFile does, or if another process does not stop replacing the files
void WriteTogether(const std::vector<FileContent>& files);

/// Flushes all data written to the file system of a folder to disk.
/// @throws HostError naming the folder
void FlushFolder(const std::filesystem::path& folder);

} // namespace Mox::Host
