#include "tests/preview/SampleMeshes.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

std::string EncodeBase64(const std::string& bytes)
{
    constexpr const char* digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            const std::uint8_t byte = i + j < bytes.size() ? std::uint8_t(bytes[i + j]) : 0;
            group = group << 8 | byte;
        }
        for (std::size_t j = 0; j < 4; ++j)
            text += i + j > bytes.size() ? '=' : digits[group >> (18 - 6 * j) & 63];
    }
    return text;
}

template <class Value>
std::string BytesOf(const std::vector<Value>& values)
{
    std::string bytes(values.size() * sizeof(Value), '\0');
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

} // namespace

std::string MakeSquareGltf()
{
    const std::string bytes = BytesOf<float>({-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0}) +
                              BytesOf<float>({0, 1, 1, 1, 1, 0, 0, 0}) +
                              BytesOf<std::uint16_t>({0, 1, 2, 0, 2, 3});
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0,"TEXCOORD_0":1},"indices":2}]}],
"buffers":[{"byteLength":92,"uri":"data:application/octet-stream;base64,)" +
           EncodeBase64(bytes) + R"("}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":48},
{"buffer":0,"byteOffset":48,"byteLength":32},{"buffer":0,"byteOffset":80,"byteLength":12}],
"accessors":[
{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3","min":[-1,-1,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5126,"count":4,"type":"VEC2"},
{"bufferView":2,"componentType":5123,"count":6,"type":"SCALAR"}]})";
}
