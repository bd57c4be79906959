#include "mox/editor/DocumentLock.h"

#include "mox/Text.h"
#include "mox/editor/CompanionFile.h"
#include "mox/host/HostError.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <pwd.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Mox::Host {

using Materials::Compose;

namespace {

/// Names the process that holds the lock; that process has written its id into the file.
std::string ReadHolder(int descriptor)
{
    std::array<char, 20> text{};
    const ssize_t count = pread(descriptor, text.data(), text.size(), 0);
    const std::string digits(text.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    const bool isNumber =
        !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? "process " + digits : "another process";
}

std::string NameUser(uid_t user)
{
    const passwd* entry = getpwuid(user);
    return entry ? Compose("the user \"", entry->pw_name, "\"") : Compose("the user ", user);
}

/// Explains why only the owner of a lock file may edit its document. A lock file left behind by
/// another user is not removed here: the folder may not allow it, and the owner may still need it.
std::string DescribeForeign(const std::filesystem::path& file, uid_t owner)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    const bool isHeld = descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0;
    const std::string holder = isHeld ? ReadHolder(descriptor) : "";
    if (descriptor >= 0)
        close(descriptor);
    if (isHeld)
        return Compose("is already being edited by ", holder, " of ", NameUser(owner));
    return Compose("cannot be edited, because the file ", file.filename().string(),
                   " in its folder belongs to ", NameUser(owner),
                   "; if nobody is editing the document, ask this user to remove the file");
}

} // namespace

DocumentLock::DocumentLock(const std::filesystem::path& document)
    : _document(document), _file(CompanionFile(document, "mox-lock"))
{
    while (!Take()) {
    }
}

DocumentLock::~DocumentLock()
{
    unlink(_file.c_str()); // while still locked, so that another process's file is never removed
    close(_descriptor);
}

/// @returns false if the file was removed in the meantime, which makes its lock worthless
bool DocumentLock::Take()
{
    constexpr int readable = 0644;
    const Place where(_document.string());
    struct stat named = {};
    if (lstat(_file.c_str(), &named) == 0 && named.st_uid != geteuid())
        throw HostError(where, DescribeForeign(_file, named.st_uid));
    _descriptor = open(_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, readable);
    if (_descriptor < 0 && (errno == ENOENT || errno == ENOTDIR))
        throw HostError(where, "cannot be edited, because its folder does not exist");
    if (_descriptor < 0) {
        throw HostError(
            where,
            Compose("cannot be edited, because the file ", _file.filename().string(),
                    " in its folder cannot be opened: ", std::generic_category().message(errno)));
    }
    if (flock(_descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        const std::string holder = ReadHolder(_descriptor);
        close(_descriptor);
        throw HostError(
            where, error == EWOULDBLOCK
                       ? Compose("is already being edited by ", holder)
                       : Compose("cannot be locked: ", std::generic_category().message(error)));
    }
    struct stat opened = {};
    if (fstat(_descriptor, &opened) != 0 || stat(_file.c_str(), &named) != 0 ||
        opened.st_ino != named.st_ino || opened.st_dev != named.st_dev) {
        close(_descriptor);
        return false;
    }
    // Failures do not matter: without the process id, the message to others is just less helpful.
    const std::string number = std::to_string(getpid());
    if (ftruncate(_descriptor, 0) == 0)
        static_cast<void>(!pwrite(_descriptor, number.data(), number.size(), 0));
    return true;
}

} // namespace Mox::Host
