#include "mox/host/Picture.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/HostError.h"

#include <png.h>
#include <string>

namespace Mox::Host {

static_assert(maxPngSide == PNG_USER_WIDTH_MAX && maxPngSide == PNG_USER_HEIGHT_MAX);

void WritePng(const Picture& picture, const std::filesystem::path& file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = picture.Width;
    image.height = picture.Height;
    image.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    std::string bytes;
    const auto encode = [&](void* target) {
        if (!png_image_write_to_memory(&image, target, &size, 0, picture.Pixels.data(), 0,
                                       nullptr)) {
            throw HostError(file.string(),
                            Materials::Compose("cannot be written: ", image.message));
        }
    };
    encode(nullptr);
    bytes.resize(size);
    encode(bytes.data());
    bytes.resize(size);
    AtomicFile target(file);
    target.Write(bytes);
    target.Commit();
}

} // namespace Mox::Host
