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

constexpr std::string_view endings[] = {".png", ".jpg", ".jpeg", ".exr", ".hdr"};
constexpr std::size_t longestName = 100; ///< bytes; file systems take more, with the number added
constexpr int mostNumbers = 100;

bool IsTextureName(const std::string& name)
{
    const auto isStrange = [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '\x7f' || c == '/' || c == '\\';
    };
    if (name.size() > longestName || name.starts_with('.') ||
        std::any_of(name.begin(), name.end(), isStrange))
        return false;
    std::string ending = std::filesystem::path(name).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return std::find(std::begin(endings), std::end(endings), ending) != std::end(endings);
}

/// Makes an empty file if nothing has the name.
bool Reserve(const std::filesystem::path& file)
{
    constexpr int usualPermissions = 0666; // less those that the process masks
    const int descriptor =
        open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualPermissions);
    if (descriptor >= 0) {
        close(descriptor);
        return true;
    }
    if (errno != EEXIST) {
        throw HostError(Place(file.string()),
                        Compose("cannot be made: ", std::generic_category().message(errno)));
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
        throw HostError({}, Compose(Excerpt(name), " is no name of a texture: expected a file "
                                                   "without folder that ends in .png, .jpg, .jpeg, "
                                                   ".exr or .hdr"));
    }
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
    throw HostError(Place((folder / name).string()), "there are too many files of this name");
}

} // namespace Mox::Host
