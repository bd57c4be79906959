#include "mox/editor/TextureFolder.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/Excerpt.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr std::string_view extensions[] = {".png", ".jpg", ".jpeg", ".exr", ".hdr"};
constexpr std::size_t longestName = 100; ///< bytes; below the file systems' limit to leave room for
                                         ///< a number
constexpr int mostNumbers = 100;

bool IsTextureName(const std::string& name)
{
    const auto isStrange = [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '\x7f' || c == '/' || c == '\\';
    };
    if (name.size() > longestName || name.starts_with('.') ||
        std::any_of(name.begin(), name.end(), isStrange))
        return false;
    std::string extension = std::filesystem::path(name).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return std::find(std::begin(extensions), std::end(extensions), extension) !=
           std::end(extensions);
}

/// Creates an empty file unless the name is already in use.
bool Reserve(const std::filesystem::path& file)
{
    constexpr int newFileMode = 0666; // further restricted by the process's umask
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
    if (descriptor >= 0) {
        close(descriptor);
        return true;
    }
    if (errno != EEXIST) {
        throw HostError(Place(file.string()),
                        Compose("cannot be created: ", std::generic_category().message(errno)));
    }
    return false;
}

bool Holds(const std::filesystem::path& file, std::string_view bytes)
{
    std::error_code error;
    return std::filesystem::is_regular_file(std::filesystem::symlink_status(file, error)) &&
           std::filesystem::file_size(file, error) == bytes.size() && ReadFile(file) == bytes;
}

} // namespace

std::string AddTexture(const std::filesystem::path& folder, const std::string& name,
                       std::string_view bytes)
{
    if (!IsTextureName(name)) {
        throw HostError({},
                        Compose(Excerpt(name),
                                " is not the name of a texture; expected a file name without a "
                                "folder and with the extension .png, .jpg, .jpeg, .exr or .hdr"));
    }
    if (bytes.empty())
        throw HostError({}, Compose(Excerpt(name), " is empty"));
    const std::filesystem::path wanted(name);
    for (int number = 1; number <= mostNumbers; ++number) {
        const std::string candidate =
            number == 1 ? name
                        : Compose(wanted.stem().string(), "-", number, wanted.extension().string());
        const std::filesystem::path file = folder / candidate;
        if (!Reserve(file)) {
            if (Holds(file, bytes))
                return candidate;
            continue;
        }
        try {
            WriteIfChanged(file, bytes);
        } catch (...) {
            std::error_code error;
            std::filesystem::remove(file, error);
            throw;
        }
        return candidate;
    }
    throw HostError(Place((folder / name).string()), "there are too many files with this name");
}

} // namespace Mox::Host
