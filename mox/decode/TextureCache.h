#pragma once

#include "mox/decode/DecodedFile.h"

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <sys/types.h>

namespace Mox::Host {

/// Identifies an unmodified file regardless of its name.
struct FileIdentity
{
    dev_t Device = 0;
    ino_t Inode = 0;
    off_t Size = 0;
    std::int64_t ModifiedSeconds = 0;
    std::int64_t ModifiedNanoseconds = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// The result of decoding a texture.
struct DecodedTexture
{
    std::shared_ptr<const TextureImage> Image; ///< null on failure
    std::string Failure;
};

/// The most recently decoded textures, and the errors of those that failed. The total size of the
/// images is limited, but a single image may exceed the limit.
class TextureCache
{
public:
    explicit TextureCache(std::uint64_t bytes) : _maxBytes(bytes) {}

    /// @returns null if the file is not cached. Valid until the next call of Add.
    const DecodedTexture* Find(const FileIdentity& file);

    const DecodedTexture& Add(const FileIdentity& file, DecodedTexture texture);

private:
    struct Entry
    {
        FileIdentity File;
        DecodedTexture Texture;
    };

    std::uint64_t _maxBytes;
    std::list<Entry> _entries; ///< most recently used first
};

} // namespace Mox::Host
