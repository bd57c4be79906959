#include "mox/decode/OpenFile.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <cerrno>
#include <fcntl.h>
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
        throw std::system_error(errno, std::generic_category(), "a file cannot be handed over");
    return copy;
}

OpenFile OpenRegularFile(const std::filesystem::path& file)
{
    const Place where{file.string()};
    // Without O_NONBLOCK, opening a pipe waits for somebody to write.
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

} // namespace Mox::Host
