// Arbitrary image files: a decoder returns an image within the limits, or an error message.

#include "mox/decode/DecodedFile.h"
#include "mox/decode/DecodedStream.h"
#include "tests/support/Claim.h"
#include "tests/support/Tape.h"
#include "tools/decode/ImageDecoder.h"

using namespace Mox::Host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const DecodeLimits limits = {.Side = 256, .Bytes = 1 << 18};
    TextureImage image;
    try {
        image = DecodeImage(std::as_bytes(std::span(data, size)), limits);
    } catch (const DecodeError& error) {
        Claim(*error.what() != '\0', "a failure has a message");
        return 0;
    }
    Tape tape;
    WriteImage(image, tape.Writer());
    Claim(ReadImage(tape.Reader(), limits).Bytes == image.Bytes, "an image is within its limits");
    return 0;
}
