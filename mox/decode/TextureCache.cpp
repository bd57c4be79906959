#include "mox/decode/TextureCache.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

const DecodedTexture* TextureCache::Find(const FileIdentity& file)
{
    const auto entry = std::find_if(_entries.begin(), _entries.end(),
                                    [&](const Entry& other) { return other.File == file; });
    if (entry == _entries.end())
        return nullptr;
    _entries.splice(_entries.begin(), _entries, entry);
    return &entry->Texture;
}

const DecodedTexture& TextureCache::Add(const FileIdentity& file, DecodedTexture texture)
{
    constexpr std::size_t mostEntries = 1000;
    _entries.push_front({file, std::move(texture)});
    std::uint64_t bytes = 0;
    std::size_t kept = 0;
    const auto first = std::find_if(_entries.begin(), _entries.end(), [&](const Entry& entry) {
        bytes += entry.Texture.Image ? entry.Texture.Image->Bytes.size() : 0;
        return ++kept > 1 && (bytes > _maxBytes || kept > mostEntries);
    });
    _entries.erase(first, _entries.end());
    return _entries.front().Texture;
}

} // namespace Mox::Host
