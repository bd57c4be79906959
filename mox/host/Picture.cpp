#include "mox/host/Picture.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <png.h>

namespace Mox::Host {

void WritePng(const Picture& picture, const std::filesystem::path& file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = picture.Width;
    image.height = picture.Height;
    image.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&image, file.c_str(), 0, picture.Pixels.data(), 0, nullptr)) {
        throw HostError({file.string(), 0, {}, {}},
                        Materials::Compose("cannot be written: ", image.message));
    }
}

} // namespace Mox::Host
