#include "mox/decode/OpenFile.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Mox::Host {

OpenFile::OpenFile(OpenFile&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1))
{}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept
{
    std::swap(_descriptor, other._descriptor);
    return *this;
}

void OpenFile::Close()
{
    if (IsOpen())
        close(std::exchange(_descriptor, -1));
}

OpenFile OpenFile::Above(int descriptor) &&
{
    OpenFile original = std::move(*this);
    OpenFile copy(fcntl(original.Descriptor(), F_DUPFD_CLOEXEC, descriptor + 1));
    if (!copy.IsOpen())
        throw std::system_error(errno, std::generic_category(),
                                "cannot duplicate a file descriptor");
    return copy;
}

OpenFile OpenRegularFile(const std::filesystem::path& file)
{
    const Place where{file.string()};
    // Without O_NONBLOCK, opening a pipe blocks until another process opens it for writing.
    OpenFile opened(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!opened.IsOpen()) {
        throw HostError(
            where, Materials::Compose("cannot be read: ", std::generic_category().message(errno)));
    }
    struct stat status = {};
    if (fstat(opened.Descriptor(), &status) != 0 || !S_ISREG(status.st_mode))
        throw HostError(where, "cannot be read: it is not a regular file");
    return opened;
}

OpenFile MakeMemoryFile(std::string_view bytes)
{
    OpenFile file(memfd_create("mox", MFD_CLOEXEC));
    const auto fail = [] {
        throw std::system_error(errno, std::generic_category(), "cannot create a file in memory");
    };
    if (!file.IsOpen())
        fail();
    while (!bytes.empty()) {
        const ssize_t count = write(file.Descriptor(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            fail();
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    lseek(file.Descriptor(), 0, SEEK_SET);
    return file;
}

} // namespace Mox::Host
