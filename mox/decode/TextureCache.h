#pragma once

#include "mox/decode/DecodedFile.h"

#include <cstdint>
#include <ctime>
#include <list>
#include <memory>
#include <string>
#include <sys/types.h>

namespace Mox::Host {

/// By which a file is known again, whatever its name, as long as nobody changes it.
struct FileIdentity
{
    dev_t Device = 0;
    ino_t Inode = 0;
    off_t Size = 0;
    std::int64_t ModifiedSeconds = 0;
    std::int64_t ModifiedNanoseconds = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// What has come of decoding a texture.
struct DecodedTexture
{
    std::shared_ptr<const TextureImage> Image; ///< null after a failure
    std::string Failure;
};

/// The textures that were decoded last, and those that could not be. The images together take a
/// bounded number of bytes; one alone may take more.
class TextureCache
{
public:
    explicit TextureCache(std::uint64_t bytes) : _maxBytes(bytes) {}

    /// @returns null if the file is not among them. Valid until the next call of Add.
    const DecodedTexture* Find(const FileIdentity& file);

    const DecodedTexture& Add(const FileIdentity& file, DecodedTexture texture);

private:
    struct Entry
    {
        FileIdentity File;
        DecodedTexture Texture;
    };

    std::uint64_t _maxBytes;
    std::list<Entry> _entries; ///< the last used first
};

} // namespace Mox::Host
