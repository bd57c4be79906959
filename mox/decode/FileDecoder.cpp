#include "mox/decode/FileDecoder.h"

#include "mox/Text.h"
#include "mox/decode/DecodeProcess.h"
#include "mox/decode/DecodedFile.h"
#include "mox/decode/DecodedStream.h"
#include "mox/decode/OpenFile.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"
#include "mox/host/SearchFolders.h"

#include <boost/algorithm/string/predicate.hpp>

#include <cerrno>
#include <fcntl.h>
#include <locale>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

FileIdentity Identify(const OpenFile& file)
{
    struct stat status = {};
    if (fstat(file.Descriptor(), &status) != 0)
        throw std::system_error(errno, std::generic_category(), "fstat");
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec};
}

HostError ReadError(const std::filesystem::path& file, const std::string& cause)
{
    return {file.string(), Compose("cannot be read: ", cause)};
}

bool HasExtension(const std::filesystem::path& file, const char* extension)
{
    return boost::iequals(file.extension().string(), extension, std::locale::classic());
}

OpenFile OpenFolderOf(const std::filesystem::path& file)
{
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    OpenFile opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!opened.IsOpen())
        throw ReadError(folder, std::generic_category().message(errno));
    return opened;
}

/// Decodes a file in a process and reads the response with a function of DecodedStream.h.
template <class Result>
Result Decode(const DecodeSettings& settings, const std::string& what, OpenFile file,
              OpenFile folder, Result (*readAnswer)(const ReadBytes&, const DecodeLimits&))
{
    DecodeProcess process(settings.Program, what, std::move(file), std::move(folder),
                          settings.Limits);
    Result result =
        readAnswer([&](std::span<std::byte> bytes) { process.Read(bytes); }, settings.Limits);
    process.RequireEnd();
    return result;
}

DecodedTexture DecodeTexture(const DecodeSettings& settings, OpenFile file)
{
    try {
        return {std::make_shared<const TextureImage>(
                    Decode(settings, "image", std::move(file), OpenFile(-1), ReadImage)),
                {}};
    } catch (const DecodeError& error) {
        return {nullptr, error.what()};
    }
}

} // namespace

std::filesystem::path DefaultDecodeProgram()
{
    return (LibraryFolder() / MOX_HELPERS_FROM_LIBRARIES / "mox-decode").lexically_normal();
}

bool IsMeshFile(const std::filesystem::path& file)
{
    return HasExtension(file, ".obj") || HasExtension(file, ".gltf") || HasExtension(file, ".glb");
}

FileDecoder::FileDecoder(DecodeSettings settings)
    : _settings(std::move(settings)), _textures(_settings.Limits.Bytes)
{}

std::shared_ptr<const TextureImage> FileDecoder::ReadTexture(const std::filesystem::path& file)
{
    OpenFile opened = OpenRegularFile(file);
    const FileIdentity identity = Identify(opened);
    const DecodedTexture* texture = _textures.Find(identity);
    if (!texture)
        texture = &_textures.Add(identity, DecodeTexture(_settings, std::move(opened)));
    if (!texture->Image)
        throw ReadError(file, texture->Failure);
    return texture->Image;
}

Mesh FileDecoder::ReadMesh(const std::filesystem::path& file) const
{
    OpenFile opened = OpenRegularFile(file);
    return DecodeMesh(file, std::move(opened),
                      HasExtension(file, ".obj") ? OpenFile(-1) : OpenFolderOf(file));
}

Mesh FileDecoder::ReadMesh(const std::string& name, std::string_view bytes) const
{
    if (!IsMeshFile(name)) {
        throw HostError({}, Compose(Excerpt(name), " is not the name of a mesh; expected a file "
                                                   "with the extension .obj, .gltf or .glb"));
    }
    return DecodeMesh(name, MakeMemoryFile(bytes), OpenFile(-1));
}

/// @param folder in which the file may refer to other files; not open if it must not refer to any
Mesh FileDecoder::DecodeMesh(const std::filesystem::path& name, OpenFile file,
                             OpenFile folder) const
{
    try {
        Mesh mesh = Decode(_settings, HasExtension(name, ".obj") ? "obj" : "gltf", std::move(file),
                           std::move(folder), Host::ReadMesh);
        mesh.Name = name.filename().string();
        return mesh;
    } catch (const DecodeError& error) {
        throw ReadError(name, error.what());
    }
}

} // namespace Mox::Host
