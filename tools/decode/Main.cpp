// mox-decode: decodes an untrusted texture or mesh for the program that started it. It reads
// standard input and writes the response described in mox/decode/DecodedStream.h. A decoder that
// crashes or uses too much memory or time only ends this program and not the caller.
//
// Usage: mox-decode image|obj|gltf TEXELS BYTES SECONDS, with the limits of
// mox/decode/DecodedFile.h. For gltf, descriptor 3 is the folder in which a file may refer to other
// files; it is not open if the file must not refer to any.

#include "mox/decode/DecodedFile.h"
#include "mox/decode/DecodedStream.h"
#include "tools/decode/ImageDecoder.h"
#include "tools/decode/MeshDecoder.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <new>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

using namespace Mox::Host;

namespace {

constexpr int folderDescriptor = 3;

struct Arguments
{
    std::string_view What;
    DecodeLimits Limits;
};

template <class Number>
Number ParseNumber(std::string_view text)
{
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::invalid_argument("an argument is not a number");
    return number;
}

Arguments ParseArguments(int count, char** words)
{
    constexpr std::string_view kinds[] = {"image", "obj", "gltf"};
    if (count != 5 || std::ranges::count(kinds, std::string_view(words[1])) == 0)
        throw std::invalid_argument("the arguments are invalid");
    return {words[1],
            {ParseNumber<std::uint32_t>(words[2]), ParseNumber<std::uint64_t>(words[3]),
             ParseNumber<std::uint32_t>(words[4])}};
}

void SetLimit(__rlimit_resource resource, rlim_t most)
{
    rlimit limit = {};
    getrlimit(resource, &limit);
    limit.rlim_max = std::min(limit.rlim_max, most);
    limit.rlim_cur = limit.rlim_max;
    if (setrlimit(resource, &limit) != 0)
        throw std::system_error(errno, std::generic_category(), "a limit cannot be set");
}

/// Restricts the process so that even a decoder controlled by a malicious file can do little more
/// than compute.
void SetLimits(const Arguments& arguments)
{
    SetLimit(RLIMIT_CORE, 0);
    SetLimit(RLIMIT_FSIZE, 0);
    SetLimit(RLIMIT_CPU, rlim_t(arguments.Limits.Seconds) + 1); // the caller kills it earlier
#ifndef MOX_SANITIZED // sanitizers reserve terabytes and probe memory through pipes
    const bool hasFolder = arguments.What == "gltf";
    SetLimit(RLIMIT_NOFILE, hasFolder ? folderDescriptor + 2 : folderDescriptor);
    SetLimit(RLIMIT_AS, arguments.Limits.Memory());
#endif
}

std::vector<std::byte> ReadAll(int descriptor, const DecodeLimits& limits)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        throw DecodeError("it is not a regular file");
    if (static_cast<std::uint64_t>(status.st_size) > limits.Bytes) {
        throw DecodeError("it is larger than the limit of " + std::to_string(limits.Bytes >> 20) +
                          " MB");
    }
    std::vector<std::byte> bytes(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = read(descriptor, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno != EINTR)
            throw DecodeError(std::generic_category().message(errno));
        if (count == 0)
            break; // the file has been truncated
        done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    bytes.resize(done);
    return bytes;
}

/// Reads a file in the folder of the mesh or below.
std::vector<std::byte> ReadBuffer(const std::string& name, const DecodeLimits& limits)
{
    const std::filesystem::path path = name;
    if (path.is_absolute() || std::ranges::count(path, "..") > 0)
        throw DecodeError("the buffer \"" + name + "\" lies outside the folder of the file");
    const int descriptor = openat(folderDescriptor, name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0 && errno == EBADF) { // the caller provided no folder
        throw DecodeError("the buffer \"" + name +
                          "\" is in a separate file, which cannot be read here; use a .glb file, "
                          "which contains all buffers");
    }
    if (descriptor < 0) {
        throw DecodeError("the buffer \"" + name +
                          "\" cannot be read: " + std::generic_category().message(errno));
    }
    try {
        std::vector<std::byte> bytes = ReadAll(descriptor, limits);
        close(descriptor);
        return bytes;
    } catch (const DecodeError& error) {
        close(descriptor);
        throw DecodeError("the buffer \"" + name + "\" cannot be read: " + error.what());
    }
}

void WriteOut(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "the answer cannot be written");
        bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void Decode(const Arguments& arguments)
{
    const DecodeLimits& limits = arguments.Limits;
    const std::vector<std::byte> file = ReadAll(STDIN_FILENO, limits);
    if (arguments.What == "image") {
        WriteImage(DecodeImage(file, limits), WriteOut);
    } else if (arguments.What == "obj") {
        WriteMesh(DecodeMesh(file, MeshFormat::Obj, nullptr, limits), WriteOut);
    } else {
        const auto readBuffer = [&](const std::string& name) { return ReadBuffer(name, limits); };
        WriteMesh(DecodeMesh(file, MeshFormat::Gltf, readBuffer, limits), WriteOut);
    }
}

} // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    try {
        arguments = ParseArguments(argc, argv);
        SetLimits(arguments);
    } catch (const std::exception& error) {
        std::cerr << "mox-decode: " << error.what() << '\n';
        return 2;
    }
    try {
        try {
            Decode(arguments);
        } catch (const DecodeError& error) {
            WriteFailure(error.what(), WriteOut);
        } catch (const std::bad_alloc&) {
            WriteFailure("its decoder needs more memory than the limit of " +
                             std::to_string(arguments.Limits.Memory() >> 20) + " MB",
                         WriteOut);
        }
    } catch (const std::exception&) {
        std::_Exit(1); // the truncated response indicates the failure
    }
    std::_Exit(0); // skips deallocation, which would take longer
}
