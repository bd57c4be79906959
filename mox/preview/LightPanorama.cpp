#include "mox/preview/LightPanorama.h"

#include "mox/preview/PanoramaReader.h"
#include "mox/preview/TextureLevels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/gtc/constants.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace Mox::Host {

namespace {

constexpr float pi = glm::pi<float>();
constexpr std::uint32_t topWidth = 512;
constexpr std::uint32_t topHeight = 256;
constexpr std::uint32_t roughestLevel = 4;
constexpr std::uint32_t diffuseSource = 3; ///< level with enough texels for diffuse irradiance

/// Radiance by direction, and the directions of its texels.
class Sky
{
public:
    Sky(std::uint32_t width, std::uint32_t height)
        : _width(width), _height(height), _light(std::size_t(width) * height)
    {}

    explicit Sky(const TextureImage& image) : Sky(image.Width, image.Height)
    {
        for (std::size_t i = 0; i < _light.size(); ++i) {
            float texel[3];
            std::memcpy(texel, image.Bytes.data() + i * sizeof(glm::vec4), sizeof(texel));
            _light[i] = {texel[0], texel[1], texel[2]};
        }
    }

    std::uint32_t Width() const { return _width; }
    std::uint32_t Height() const { return _height; }
    glm::vec3& At(std::uint32_t x, std::uint32_t y) { return _light[std::size_t(y) * _width + x]; }
    const glm::vec3& At(std::uint32_t x, std::uint32_t y) const
    {
        return _light[std::size_t(y) * _width + x];
    }

    glm::vec3 DirectionOf(std::uint32_t x, std::uint32_t y) const
    {
        const float across = (Middle(x) / static_cast<float>(_width) - 0.5f) * 2.0f * pi;
        const float down = DownOf(y);
        return {std::sin(down) * std::sin(across), std::cos(down),
                -std::sin(down) * std::cos(across)};
    }

    /// The solid angle of a texel, up to a constant factor.
    float WeightOf(std::uint32_t y) const { return std::sin(DownOf(y)); }

    glm::vec3 Read(const glm::vec3& direction) const
    {
        return ReadPanorama(_width, _height, direction,
                            [this](std::uint32_t x, std::uint32_t y) { return At(x, y); });
    }

    TextureImage ToImage() const
    {
        TextureImage image{_width, _height, TexelFormat::Float, {}};
        image.Bytes.resize(_light.size() * sizeof(glm::vec4));
        for (std::size_t i = 0; i < _light.size(); ++i) {
            const glm::vec4 texel(_light[i], 1.0f);
            std::memcpy(image.Bytes.data() + i * sizeof(texel), &texel, sizeof(texel));
        }
        return image;
    }

private:
    static float Middle(std::uint32_t texel) { return static_cast<float>(texel) + 0.5f; }
    float DownOf(std::uint32_t y) const { return Middle(y) / static_cast<float>(_height) * pi; }

    std::uint32_t _width;
    std::uint32_t _height;
    std::vector<glm::vec3> _light;
};

/// Returns a sky resampled to another size.
Sky Resize(const Sky& sky, std::uint32_t width, std::uint32_t height)
{
    Sky result(width, height);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x)
            result.At(x, y) = sky.Read(result.DirectionOf(x, y));
    }
    return result;
}

std::vector<Sky> MakeSkies(const TextureImage& image)
{
    std::vector<Sky> skies;
    for (const TextureImage& level : MakeMipLevels(image, TextureShape::Plane, false))
        skies.emplace_back(level);
    return skies;
}

/// An orthonormal basis around a direction.
struct Frame
{
    explicit Frame(const glm::vec3& direction)
        : Right(
              glm::normalize(glm::cross(std::abs(direction.y) < 0.9f ? glm::vec3(0.0f, 1.0f, 0.0f)
                                                                     : glm::vec3(1.0f, 0.0f, 0.0f),
                                        direction))),
          Up(glm::cross(direction, Right)), Ahead(direction)
    {}

    glm::vec3 ToWorld(const glm::vec3& local) const
    {
        return local.x * Right + local.y * Up + local.z * Ahead;
    }

    glm::vec3 Right;
    glm::vec3 Up;
    glm::vec3 Ahead;
};

/// A sample of a rough reflection, in a basis around the reflected direction.
struct LobeSample
{
    glm::vec3 Direction;
    float Weight;
    std::size_t Level; ///< of the sky, with texels about as large as the sample's solid angle
};

/// Reverses the bits of a number and returns the result as a fraction between 0 and 1.
float ReverseBits(std::uint32_t number)
{
    float result = 0.0f;
    for (float part = 0.5f; number > 0; number >>= 1, part *= 0.5f)
        result += (number & 1u) != 0 ? part : 0.0f;
    return result;
}

/// Returns samples of the GGX lobe for a view direction along the normal.
std::vector<LobeSample> MakeLobe(float roughness, std::uint32_t count, std::size_t levels)
{
    std::vector<LobeSample> samples;
    const float alpha = roughness * roughness;
    const float square = alpha * alpha;
    for (std::uint32_t i = 0; i < count; ++i) {
        const float part = (static_cast<float>(i) + 0.5f) / static_cast<float>(count);
        const float angle = 2.0f * pi * ReverseBits(i);
        const float cosine = std::sqrt((1.0f - part) / (1.0f + (square - 1.0f) * part));
        const float sine = std::sqrt(std::max(0.0f, 1.0f - cosine * cosine));
        const glm::vec3 middle(sine * std::cos(angle), sine * std::sin(angle), cosine);
        const glm::vec3 direction = 2.0f * cosine * middle - glm::vec3(0.0f, 0.0f, 1.0f);
        if (direction.z <= 0.0f)
            continue;
        const float spread = cosine * cosine * (square - 1.0f) + 1.0f;
        const float density = square / (4.0f * pi * spread * spread);
        const float texels = 2.0f * static_cast<float>(topWidth * topHeight) /
                             (4.0f * pi * density * static_cast<float>(count));
        const float level = std::clamp(0.5f * std::log2(std::max(texels, 1.0f)), 0.0f,
                                       static_cast<float>(levels - 1));
        samples.push_back({direction, direction.z, static_cast<std::size_t>(level)});
    }
    return samples;
}

Sky BlurAsMirror(const std::vector<Sky>& skies, std::uint32_t level, float roughness)
{
    constexpr std::uint32_t fewestSamples = 16;
    const std::vector<LobeSample> lobe = MakeLobe(roughness, fewestSamples << level, skies.size());
    Sky blurred(topWidth >> level, topHeight >> level);
    for (std::uint32_t y = 0; y < blurred.Height(); ++y) {
        for (std::uint32_t x = 0; x < blurred.Width(); ++x) {
            const Frame frame(blurred.DirectionOf(x, y));
            glm::vec3 sum(0.0f);
            float weights = 0.0f;
            for (const LobeSample& sample : lobe) {
                sum += sample.Weight * skies[sample.Level].Read(frame.ToWorld(sample.Direction));
                weights += sample.Weight;
            }
            blurred.At(x, y) = sum / weights;
        }
    }
    return blurred;
}

/// Returns the diffuse reflection of a white surface, by the direction of its normal.
Sky BlurAsMatt(const Sky& sky, std::uint32_t level)
{
    Sky blurred(topWidth >> level, topHeight >> level);
    for (std::uint32_t y = 0; y < blurred.Height(); ++y) {
        for (std::uint32_t x = 0; x < blurred.Width(); ++x) {
            const glm::vec3 normal = blurred.DirectionOf(x, y);
            glm::vec3 sum(0.0f);
            float weights = 0.0f;
            for (std::uint32_t row = 0; row < sky.Height(); ++row) {
                for (std::uint32_t column = 0; column < sky.Width(); ++column) {
                    const float weight =
                        sky.WeightOf(row) *
                        std::max(0.0f, glm::dot(normal, sky.DirectionOf(column, row)));
                    sum += weight * sky.At(column, row);
                    weights += weight;
                }
            }
            blurred.At(x, y) = sum / weights;
        }
    }
    return blurred;
}

/// Returns 1 inside a rectangle around the direction ahead, and 0 outside a soft edge around it.
float SoftBox(const glm::vec3& direction, const glm::vec3& ahead, const glm::vec2& size, float edge)
{
    const Frame frame(glm::normalize(ahead));
    const float depth = glm::dot(direction, frame.Ahead);
    if (depth <= 0.0f)
        return 0.0f;
    const glm::vec2 place(glm::dot(direction, frame.Right) / depth,
                          glm::dot(direction, frame.Up) / depth);
    const glm::vec2 inside = 1.0f - glm::smoothstep(size, size + edge, glm::abs(place));
    return inside.x * inside.y;
}

} // namespace

LightPanorama PrepareLight(const TextureImage& image, bool isSrgb)
{
    // Find the mip level of the image whose size is closest to the result.
    std::vector<Sky> given = MakeSkies(ToLinearFloats(image, isSrgb));
    std::size_t start = 0;
    while (start + 1 < given.size() && given[start + 1].Width() >= topWidth)
        ++start;
    const TextureImage top = Resize(given[start], topWidth, topHeight).ToImage();

    const std::vector<Sky> skies = MakeSkies(top);
    LightPanorama light{{top}, static_cast<float>(roughestLevel)};
    for (std::uint32_t level = 1; level <= roughestLevel; ++level) {
        const float part = static_cast<float>(level) / static_cast<float>(roughestLevel);
        const float roughness = 1.0f - std::sqrt(1.0f - part);
        light.Levels.push_back(BlurAsMirror(skies, level, roughness).ToImage());
    }
    light.Levels.push_back(BlurAsMatt(skies[diffuseSource], roughestLevel + 1).ToImage());
    return light;
}

TextureImage MakeStudioImage()
{
    constexpr float softEdge = 0.08f;
    Sky sky(topWidth, topHeight);
    for (std::uint32_t y = 0; y < topHeight; ++y) {
        for (std::uint32_t x = 0; x < topWidth; ++x) {
            const glm::vec3 direction = sky.DirectionOf(x, y);
            const float height = glm::smoothstep(-0.25f, 0.9f, direction.y);
            float light = glm::mix(0.12f, 0.62f, height);
            light += 3.2f * SoftBox(direction, {-0.75f, 0.75f, 0.7f}, {0.42f, 0.3f}, softEdge);
            light += 1.6f * SoftBox(direction, {1.0f, 0.35f, 0.25f}, {0.18f, 0.6f}, softEdge);
            light += 1.2f * SoftBox(direction, {0.2f, 0.3f, -1.0f}, {0.9f, 0.1f}, softEdge);
            sky.At(x, y) = glm::vec3(light);
        }
    }
    return sky.ToImage();
}

} // namespace Mox::Host
