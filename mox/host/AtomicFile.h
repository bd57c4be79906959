#pragma once

#include "mox/host/EndCleanup.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// When written bytes outlive a loss of power.
enum class Durability
{
    Immediate, ///< as soon as they stand under their name
    Deferred,  ///< once the system, or FlushFolder, has brought them to the disk
};

/// The file itself, or the file that a symbolic link of that name leads to. It need not exist.
/// @throws HostError if the links form a cycle
std::filesystem::path TargetOf(const std::filesystem::path& file);

/// A file that appears under its name only when it is whole. The bytes go to a file without a name,
/// or to a hidden temporary file in the same folder where the file system has no files without
/// names. Commit gives it its name, so that a reader finds the old file or the new one whatever
/// happens in between. A file that is replaced keeps its permissions, and a symbolic link keeps
/// pointing to it. CleanUpForEnd removes temporary files, and no file gets its name after it.
class AtomicFile
{
public:
    /// Opens the file for writing.
    /// @throws HostError naming the file, if that fails or the name belongs to something else than
    ///         a regular file
    explicit AtomicFile(const std::filesystem::path& file);

    /// What was not committed is gone.
    ~AtomicFile();

    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// @throws HostError naming the file, for example when the disk is full
    void Write(std::string_view bytes);

    /// Moves what was written to the name. Nothing may be written behind it.
    /// @throws HostError naming the file; the old file stands then
    void Commit(Durability durability = Durability::Immediate);

private:
    template <class Take>
    void TakeTemporaryName(Take take);
    void RemoveTemporary();

    std::filesystem::path _file;        ///< as it is named in messages
    std::filesystem::path _target;      ///< behind symbolic links
    std::filesystem::path _temporary;   ///< empty while the file has no name
    std::optional<EndCleanup> _cleanup; ///< of the temporary name
    int _descriptor = -1;
};

/// Makes a file hold these bytes. One that does so already is not touched, so that build systems
/// see no change.
/// @returns whether the file was written
/// @throws HostError as AtomicFile does
bool WriteIfChanged(const std::filesystem::path& file, std::string_view bytes);

/// What replacing a file would change besides its content, in words that follow its name: it is
/// read-only or has other hard links. Empty if it may be replaced, or if there is no such file.
std::string ObstacleToReplacing(const std::filesystem::path& file);

/// A file and the bytes that it is to hold.
struct FileContent
{
    std::filesystem::path File;
    std::string_view Bytes;
};

/// Makes files hold these bytes that mean something only together. All are written before the first
/// one is replaced, so a full disk leaves all old files. If several processes do this with the same
/// files at the same time, the files that remain are all from one of them. Files that have their
/// bytes already are not touched. A loss of power may cost what FlushFolder has not brought to the
/// disk.
/// @throws HostError as AtomicFile does, or if another process does not stop replacing the files
void WriteTogether(const std::vector<FileContent>& files);

/// Brings all that was written to the file system of a folder to the disk.
/// @throws HostError naming the folder
void FlushFolder(const std::filesystem::path& folder);

} // namespace Mox::Host
