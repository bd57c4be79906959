#include "mox/host/File.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <vector>

namespace Mox::Host {

namespace {

HostError ReadingFailure(const std::string& name, int error)
{
    return {Place(name), Materials::Compose("cannot be read: ", std::strerror(error))};
}

} // namespace

std::string ReadFile(const std::filesystem::path& file)
{
    if (file.empty())
        throw HostError({}, "the file name is empty");
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        throw ReadingFailure(file.string(), EISDIR);
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw ReadingFailure(file.string(), errno);
    return ReadStream(stream, file.string());
}

std::string ReadStream(std::istream& stream, const std::string& name)
{
    constexpr std::size_t largest = std::size_t(1) << 30;
    // A file that is not regular may be endless, and its size is unknown until its end has been
    // read.
    std::string bytes;
    std::vector<char> chunk(std::size_t(1) << 16);
    while (stream) {
        stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        bytes.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
        if (bytes.size() > largest)
            throw HostError(Place(name), "is larger than the limit of 1 GiB");
    }
    if (stream.bad())
        throw ReadingFailure(name, errno);
    return bytes;
}

void CreateFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw HostError(folder.string(),
                        Materials::Compose("the folder cannot be created: ", error.message()));
    }
}

bool IsSameFile(const std::filesystem::path& a, const std::filesystem::path& b)
{
    std::error_code error;
    return a == b || std::filesystem::equivalent(a, b, error);
}

void RequireNoInput(const std::filesystem::path& output,
                    const std::vector<std::filesystem::path>& inputs)
{
    for (const std::filesystem::path& input : inputs) {
        if (IsSameFile(output, input))
            throw HostError(output.string(), "is an input, so it is not overwritten");
    }
}

bool StaysInFolder(const std::filesystem::path& name)
{
    return name.is_relative() && std::find(name.begin(), name.end(), "..") == name.end();
}

} // namespace Mox::Host
