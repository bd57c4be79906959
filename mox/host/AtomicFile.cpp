#include "mox/host/AtomicFile.h"

#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <list>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr mode_t newFileMode = 0666; ///< before the umask is applied
constexpr mode_t permissionBits = 07777;

HostError WriteError(const std::filesystem::path& file, int error)
{
    return {file.string(), Compose("cannot be written: ", std::generic_category().message(error))};
}

/// Returns the path under which the system provides access to an open file, even if it is unnamed.
std::string NumberedName(int descriptor)
{
    return Compose("/proc/self/fd/", descriptor);
}

/// Opens an unnamed file, so that nothing remains if the process is killed.
/// @returns -1 if the file system does not support this
int OpenUnnamed(const std::filesystem::path& folder)
{
    const int descriptor = open(folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, newFileMode);
    if (descriptor < 0 || access(NumberedName(descriptor).c_str(), F_OK) == 0)
        return descriptor;
    close(descriptor); // without /proc, the file could not be given a name
    return -1;
}

/// Returns whether a file has this content.
bool Holds(const std::filesystem::path& file, std::string_view bytes)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    return !error && size == bytes.size() && ReadFile(file) == bytes;
}

bool GiveName(int descriptor, const std::filesystem::path& name)
{
    return linkat(AT_FDCWD, NumberedName(descriptor).c_str(), AT_FDCWD, name.c_str(),
                  AT_SYMLINK_FOLLOW) == 0;
}

/// Replaces the files with different content, as close together in time as possible.
void ReplaceOthers(const std::vector<FileContent>& files)
{
    std::list<AtomicFile> changed;
    for (const FileContent& file : files) {
        if (!Holds(file.File, file.Bytes))
            changed.emplace_back(file.File).Write(file.Bytes);
    }
    const auto delay = DelayEnd();
    for (AtomicFile& file : changed)
        file.Commit(Durability::Deferred);
}

} // namespace

std::filesystem::path TargetOf(const std::filesystem::path& file)
{
    constexpr int mostLinks = 40; // the limit of the system
    std::filesystem::path target = file;
    for (int i = 0; i < mostLinks; ++i) {
        std::error_code error;
        const std::filesystem::path next = std::filesystem::read_symlink(target, error);
        if (error)
            return target; // not a link
        target = target.parent_path() / next;
    }
    throw WriteError(file, ELOOP);
}

AtomicFile::AtomicFile(const std::filesystem::path& file) : _file(file), _target(TargetOf(file))
{
    struct stat old = {};
    const bool isThere = stat(_target.c_str(), &old) == 0;
    if (isThere && !S_ISREG(old.st_mode)) {
        throw HostError(file.string(), "cannot be written: it exists but is not a regular file");
    }
    _descriptor = OpenUnnamed(_target.has_parent_path() ? _target.parent_path() : ".");
    if (_descriptor < 0) {
        TakeTemporaryName([this] {
            _descriptor =
                open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
            return _descriptor >= 0;
        });
    }
    if (isThere && fchmod(_descriptor, old.st_mode & permissionBits) != 0) {
        const int cause = errno;
        close(_descriptor);
        RemoveTemporary();
        throw WriteError(file, cause);
    }
}

AtomicFile::~AtomicFile()
{
    if (_descriptor >= 0)
        close(_descriptor);
    RemoveTemporary();
}

void AtomicFile::RemoveTemporary()
{
    if (!_temporary.empty())
        unlink(_temporary.c_str());
}

void AtomicFile::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            throw WriteError(_file, errno);
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// Processes on other machines may share the folder and have the same process id, so this searches
/// for an unused name.
template <class Take>
void AtomicFile::TakeTemporaryName(Take take)
{
    const auto delay = DelayEnd();
    _cleanup.emplace([this] { RemoveTemporary(); });
    int i = 0;
    do {
        _temporary = _target.parent_path() / Compose(".mox-", getpid(), "-", i++, ".tmp");
        if (take())
            return;
    } while (errno == EEXIST);
    const int cause = errno;
    _temporary.clear();
    throw WriteError(_file, cause);
}

void AtomicFile::Commit(Durability durability)
{
    // Without this, a power failure could leave an empty file under the new name.
    if (durability == Durability::Immediate && fsync(_descriptor) != 0)
        throw WriteError(_file, errno);
    const auto delay = DelayEnd();
    bool isInPlace = false;
    if (_temporary.empty()) {
        isInPlace = GiveName(_descriptor, _target);
        if (!isInPlace) // another process may have created the target
            TakeTemporaryName([this] { return GiveName(_descriptor, _temporary); });
    }
    const int descriptor = std::exchange(_descriptor, -1);
    if (close(descriptor) != 0 || (!isInPlace && rename(_temporary.c_str(), _target.c_str()) != 0))
        throw WriteError(_file, errno);
    _temporary.clear();
    _cleanup.reset();
}

bool WriteIfChanged(const std::filesystem::path& file, std::string_view bytes)
{
    if (Holds(file, bytes))
        return false;
    AtomicFile output(file);
    output.Write(bytes);
    output.Commit();
    return true;
}

std::string ObstacleToReplacing(const std::filesystem::path& file)
{
    constexpr mode_t anyWriting = 0222;
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    if ((status.st_mode & anyWriting) == 0 || access(file.c_str(), W_OK) != 0)
        return "is read-only";
    if (status.st_nlink > 1)
        return "has other hard links, which would keep the old document";
    return {};
}

void WriteTogether(const std::vector<FileContent>& files)
{
    constexpr unsigned mostRounds = 12;
    const auto isDone = [](const FileContent& file) { return Holds(file.File, file.Bytes); };
    // The last process to replace files finds its own content in all of them afterwards. A process
    // that finds other content tries again.
    for (unsigned round = 0; round < mostRounds; ++round) {
        if (std::all_of(files.begin(), files.end(), isDone))
            return;
        // A random delay prevents processes from replacing each other's files forever.
        if (round > 0) {
            const unsigned limit = 4U << round;
            std::this_thread::sleep_for(std::chrono::milliseconds(std::random_device()() % limit));
        }
        ReplaceOthers(files);
    }
    throw HostError(files.front().File.string(), "another process keeps replacing this file");
}

void FlushFolder(const std::filesystem::path& folder)
{
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isFlushed = descriptor >= 0 && syncfs(descriptor) == 0;
    const int cause = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (!isFlushed)
        throw WriteError(folder, cause);
}

} // namespace Mox::Host
