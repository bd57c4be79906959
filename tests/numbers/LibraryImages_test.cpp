#include "mox/Text.h"
#include "tests/numbers/FunctionNumbers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using Mox::Materials::Compose;

namespace {

constexpr Tolerance products = {8.0, "several products and sums of the scale's size"};
constexpr Tolerance turned = {64.0, "a sine and a cosine"};
constexpr Tolerance angles = {4096.0, "devices compute inverse tangents to 4096 steps"};
constexpr Tolerance quotients = {32.0, "quotients before sums"};

using Triple = std::array<double, 3>;

double Frac(double x)
{
    return x - std::floor(x);
}

/// Whether a rounding error could move a number across an integer.
bool IsNearWhole(double x)
{
    return std::abs(x - std::round(x)) < 1e-3;
}

Triple TripleOf(In in, std::size_t port)
{
    return {in.Ports[port][0], in.Ports[port][1], in.Ports[port][2]};
}

double SumOfSizes(const Triple& values)
{
    return std::abs(values[0]) + std::abs(values[1]) + std::abs(values[2]);
}

double Length(const Triple& values)
{
    return std::hypot(values[0], values[1], values[2]);
}

const Port uv = {"in_uv", "", 0.0, Kind::Pair};
const Port wayU = {"in_u", "Default U", 1.5, Kind::Scalar};
const Port wayV = {"in_v", "Default V", 1.5, Kind::Scalar};
const Port time = {"in_time", "", 0.0, Kind::Connected};
const Port angle = {"in_angle", "Default Angle", 30.0, Kind::Scalar};
const Port centreU = {"in_centreu", "Centre U", 0.25, Kind::Scalar};
const Port centreV = {"in_centrev", "Centre V", 0.25, Kind::Scalar};

/// The port "u" for the first component, "v" for the second.
double WayOf(In in)
{
    return in.Ports[1 + in.Component][0];
}

Result Scroll(In in)
{
    const double way = in.Ports[3][0] * WayOf(in);
    if (IsNearWhole(way))
        return std::nullopt;
    return OfScale(std::abs(in[0]) + std::abs(way) + 1.0, in[0] + Frac(way));
}

Result Rotate(In in)
{
    const double x = in.Ports[0][0] - in.Ports[2][0];
    const double y = in.Ports[0][1] - in.Ports[3][0];
    const double turn = in.Ports[1][0] * std::numbers::pi / 180.0;
    const double moved = in.Component == 0 ? std::cos(turn) * x - std::sin(turn) * y
                                           : std::sin(turn) * x + std::cos(turn) * y;
    const double centre = in.Ports[2 + in.Component][0];
    const double reach = std::abs(in.Ports[0][0]) + std::abs(in.Ports[0][1]) +
                         std::abs(in.Ports[2][0]) + std::abs(in.Ports[3][0]);
    return OfScale(std::abs(centre) + reach * (1.0 + std::abs(turn)), centre + moved);
}

Result Polar(In in)
{
    const double x = in.Ports[0][0] - in.Ports[1][0];
    const double y = in.Ports[0][1] - in.Ports[2][0];
    if (in.Component == 0) {
        return OfScale(2.0 * (std::abs(in.Ports[0][0]) + std::abs(in.Ports[0][1]) +
                              std::abs(in.Ports[1][0]) + std::abs(in.Ports[2][0])),
                       2.0 * std::hypot(x, y));
    }
    if (x == 0.0 || std::abs(y) < 1e-4)
        return std::nullopt; // the angle is discontinuous, or the division is undefined on some
                             // devices
    const double turn = std::atan2(y, x) / (2.0 * std::numbers::pi);
    return OfScale(1.0, turn < 0.0 ? turn + 1.0 : turn);
}

const Function uvTransforms[] = {
    {"Tile", {uv, wayU, wayV}, once, [](In in) { return Rounded(in[0] * WayOf(in)); }, 2},
    {"Offset", {uv, wayU, wayV}, once, [](In in) { return Rounded(in[0] + WayOf(in)); }, 2},
    {"Scroll", {uv, wayU, wayV, time}, products, Scroll, 2},
    {"Rotate", {uv, angle, centreU, centreV}, turned, Rotate, 2},
    {"Polar", {uv, centreU, centreV}, angles, Polar, 2},
};

const Port colour = {"in_colour", "", 0.0, Kind::Vector};
const Port shown = {"in_colour", "", 0.0, Kind::Colour};
const Port amount = {"in_amount", "Default Amount", 0.375, Kind::Scalar};

double Luminance(const Triple& rgb)
{
    return 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2];
}

/// Converts a colour using the hexagonal model of HSV.
Triple ToHsv(const Triple& rgb)
{
    const double high = std::max({rgb[0], rgb[1], rgb[2]});
    const double chroma = high - std::min({rgb[0], rgb[1], rgb[2]});
    double hue = 0.0;
    for (std::size_t i = 3; i > 0 && chroma > 0.0; --i) {
        if (rgb[i - 1] == high)
            hue = 2.0 * static_cast<double>(i - 1) + (rgb[i % 3] - rgb[(i + 1) % 3]) / chroma;
    }
    return {Frac(hue / 6.0), high > 0.0 ? chroma / high : 0.0, high};
}

Triple FromHsv(const Triple& hsv)
{
    Triple rgb{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double side = hsv[0] * 6.0 - 2.0 * static_cast<double>(i);
        const double distance = std::abs(Frac((side + 3.0) / 6.0) * 6.0 - 3.0);
        rgb[i] = hsv[2] * (1.0 - hsv[1] * (1.0 - Saturate(2.0 - distance)));
    }
    return rgb;
}

/// Whether a colour is in the displayable range and not nearly grey; otherwise its hue is
/// ill-defined.
bool HasHue(const Triple& rgb)
{
    const double low = std::min({rgb[0], rgb[1], rgb[2]});
    const double high = std::max({rgb[0], rgb[1], rgb[2]});
    return low >= 0.0 && high <= 4.0 && high - low > 0.1;
}

Result RgbToHsv(In in)
{
    const Triple rgb = TripleOf(in, 0);
    const Triple hsv = ToHsv(rgb);
    if (!HasHue(rgb) || IsNearWhole(hsv[0]))
        return std::nullopt;
    return OfScale(10.0 * SumOfSizes(rgb), hsv[in.Component]);
}

Result HsvToRgb(In in)
{
    const Triple hsv = TripleOf(in, 0);
    return OfScale((1.0 + std::abs(hsv[0])) * 6.0 * (1.0 + std::abs(hsv[1])) * std::abs(hsv[2]),
                   FromHsv(hsv)[in.Component]);
}

Result Hue(In in)
{
    const Triple rgb = TripleOf(in, 0);
    Triple hsv = ToHsv(rgb);
    if (!HasHue(rgb))
        return std::nullopt;
    hsv[0] += in.Ports[1][0];
    return OfScale(60.0 * (1.0 + std::abs(in.Ports[1][0])) * SumOfSizes(rgb),
                   FromHsv(hsv)[in.Component]);
}

Result Saturation(In in)
{
    const double grey = Luminance(TripleOf(in, 0));
    return OfScale(SumOfSizes(TripleOf(in, 0)) * (1.0 + std::abs(in.Ports[1][0])),
                   grey + (in[0] - grey) * in.Ports[1][0]);
}

Result Contrast(In in)
{
    return OfScale((0.5 + std::abs(in[0])) * (1.0 + std::abs(in.Ports[1][0])),
                   0.5 + (in[0] - 0.5) * in.Ports[1][0]);
}

const Function colourAdjustments[] = {
    {"Hue", {shown, amount}, quotients, Hue, 3},
    {"Saturation", {colour, amount}, products, Saturation, 3},
    {"Contrast", {colour, amount}, products, Contrast, 3},
    {"Gamma",
     {colour, amount},
     powered,
     [](In in) { return Power(std::max(in[0], 0.0), in.Ports[1][0]); },
     3},
    {"Luminance",
     {colour},
     products,
     [](In in) { return OfScale(SumOfSizes(TripleOf(in, 0)), Luminance(TripleOf(in, 0))); },
     1},
    {"Rgb To Hsv", {shown}, quotients, RgbToHsv, 3},
    {"Hsv To Rgb", {colour}, products, HsvToRgb, 3},
};

/// Four grey colours at 0, 1/4, 1/2 and 1.
constexpr const char* rampSettings =
    "; Colour 1=0.5 0.5 0.5; Colour 2=1 1 1; Colour 3=0 0 0; Colour 4=0.25 0.25 0.25; "
    "Position 2=0.25; Position 3=0.5";

/// @param ease maps the linear interpolation factor between two colours
Result Ramp(double value, double (*ease)(double))
{
    constexpr std::array<double, 4> places = {0.0, 0.25, 0.5, 1.0};
    constexpr std::array<double, 4> greys = {0.5, 1.0, 0.0, 0.25};
    for (std::size_t i = 1; i < places.size(); ++i) {
        if (value < places[i]) {
            const double share =
                ease(Saturate((value - places[i - 1]) / (places[i] - places[i - 1])));
            return OfScale(4.0, greys[i - 1] + (greys[i] - greys[i - 1]) * share);
        }
    }
    return OfScale(4.0, greys.back());
}

const Function ramps[] = {
    {"Linear",
     {{"in_value", "", 0.0, Kind::Connected}},
     products,
     [](In in) { return Ramp(in[0], [](double x) { return x; }); },
     3},
    {"Smooth",
     {{"in_value", "", 0.0, Kind::Connected}},
     products,
     [](In in) { return Ramp(in[0], [](double x) { return x * x * (3.0 - 2.0 * x); }); },
     3},
    {"Constant",
     {{"in_value", "", 0.0, Kind::Connected}},
     exact,
     [](In in) { return Ramp(in[0], [](double x) { return std::floor(x); }); },
     3},
};

const Port frequency = {"in_scale", "Default Scale", 2.5, Kind::Scalar};
const Port width = {"in_width", "Default Width", 0.75, Kind::Scalar};

Result Checks(In in)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < 2; ++i) {
        const double place = in.Ports[0][i] * in.Ports[1][0];
        if (IsNearWhole(place))
            return std::nullopt;
        sum += std::floor(place);
    }
    return Rounded(std::fmod(std::abs(sum), 2.0));
}

/// The edge of a shape is soft over a distance of 1/4 to either side.
constexpr const char* softness = "; Softness=0.25";

/// @param reach magnitude of the coordinates, which limits the precision of the distance
Result Edge(In in, double distance, double reach)
{
    const double size = in.Ports[2][0];
    return OfScale((1.0 + std::abs(size) + reach) / 0.5, Saturate(0.5 + (size - distance) / 0.5));
}

Result Stripes(In in)
{
    const double place = in.Ports[0][0] * in.Ports[1][0];
    if (IsNearWhole(place))
        return std::nullopt;
    return Edge(in, std::abs(2.0 * Frac(place) - 1.0), std::abs(place));
}

Result Circles(In in)
{
    const double x = in.Ports[0][0] * in.Ports[1][0];
    const double y = in.Ports[0][1] * in.Ports[1][0];
    if (IsNearWhole(x) || IsNearWhole(y))
        return std::nullopt;
    return Edge(in, std::hypot(2.0 * Frac(x) - 1.0, 2.0 * Frac(y) - 1.0),
                std::abs(x) + std::abs(y));
}

const Function patterns[] = {
    {"Checks", {uv, frequency}, exact, Checks, 1},
    {"Stripes", {uv, frequency, width}, products, Stripes, 1},
    {"Circles", {uv, frequency, width}, products, Circles, 1},
};

const Port surfaceNormal = {"in_normal", "", 0.0, Kind::Vector};
const Port detail = {"in_detail", "", 0.0, Kind::Vector};

Result Direction(const Triple& vector, In in)
{
    const double length = Length(vector);
    return length < 1e-3 ? std::nullopt : OfScale(1.0, vector[in.Component] / length);
}

const Function normals[] = {
    {"Blend",
     {surfaceNormal, detail},
     quotients,
     [](In in) -> Result {
         const Triple sum = {in.Ports[0][0] + in.Ports[1][0], in.Ports[0][1] + in.Ports[1][1],
                             in.Ports[0][2] * in.Ports[1][2]};
         // Where x and y cancel, the difference has lost its precision.
         const double before = SumOfSizes(TripleOf(in, 0)) + SumOfSizes(TripleOf(in, 1));
         const Result direction = Direction(sum, in);
         return direction ? OfScale(1.0 + before / Length(sum), direction->Value) : direction;
     },
     3},
    {"Strength",
     {surfaceNormal, amount},
     products,
     [](In in) {
         const double factor = in.Ports[1][0];
         return Direction({in.Ports[0][0] * factor, in.Ports[0][1] * factor, in.Ports[0][2]}, in);
     },
     3},
};

/// What the vector (1, -2, 1/2) becomes in another space, as a direction, as a point and as a
/// normal. The environment of the tests rotates, scales and translates objects, and its view and
/// tangent spaces have three perpendicular directions and an origin.
struct Transformed
{
    const char* From;
    const char* To;
    Triple Vectors[3];
};

constexpr const char* vectorKinds[] = {"Direction", "Point", "Normal"};

constexpr Transformed transforms[] = {
    {"Object", "Object", {{1.0, -2.0, 0.5}, {1.0, -2.0, 0.5}, {0.4364358, -0.8728716, 0.2182179}}},
    {"Object", "World", {{4.0, 4.0, 0.25}, {5.0, 2.0, 4.25}, {0.6963106, 0.1740777, 0.6963106}}},
    {"Object", "View", {{3.05, 4.0, -2.6}, {-1.95, 3.0, 2.4}, {-0.2785242, 0.6963106, -0.6614951}}},
    {"Object",
     "Tangent",
     {{5.6, -0.8, 0.25}, {2.4, -3.2, 1.25}, {0.5570485, -0.4526019, 0.6963106}}},
    {"World", "Object", {{-0.5, -0.5, 1.0}, {0.0, 0.0, -7.0}, {-0.969697, -0.2424242, 0.03030303}}},
    {"World", "World", {{1.0, -2.0, 0.5}, {1.0, -2.0, 0.5}, {0.4364358, -0.8728716, 0.2182179}}},
    {"World", "View", {{-1.9, 1.0, 0.8}, {-2.9, -1.0, 7.8}, {-0.829228, 0.4364358, 0.3491486}}},
    {"World",
     "Tangent",
     {{-1.0, -2.0, 0.5}, {-3.2, -2.4, -2.5}, {-0.4364358, -0.8728716, 0.2182179}}},
    {"View", "Object", {{0.125, 1.0, -2.0}, {1.875, 0.5, 0.0}, {0.4444444, 0.8888889, -0.1111111}}},
    {"View", "World", {{-2.0, 0.5, -1.0}, {0.0, 5.5, 4.0}, {-0.8728716, 0.2182179, -0.4364358}}},
    {"View", "View", {{1.0, -2.0, 0.5}, {1.0, -2.0, 0.5}, {0.4364358, -0.8728716, 0.2182179}}},
    {"View", "Tangent", {{-0.8, 1.9, -1.0}, {2.2, 2.9, 1.0}, {-0.3491486, 0.829228, -0.4364358}}},
    {"Tangent",
     "Object",
     {{-0.1, -1.1, 1.0}, {0.9, -1.1, -1.0}, {-0.3412569, -0.9384565, 0.05332139}}},
    {"Tangent", "World", {{2.2, -0.4, 0.5}, {3.2, 1.6, 3.5}, {0.9601587, -0.1745743, 0.2182179}}},
    {"Tangent",
     "View",
     {{-0.62, 2.2, -0.16}, {-1.82, 1.2, 3.24}, {-0.2705902, 0.9601587, -0.06982972}}},
    {"Tangent",
     "Tangent",
     {{1.0, -2.0, 0.5}, {1.0, -2.0, 0.5}, {0.4364358, -0.8728716, 0.2182179}}},
};

class ImageNumbers : public FunctionNumbers
{};

TEST_F(ImageNumbers, OfUvTransform)
{
    CompareAll("UvTransform; Function=", uvTransforms, {}, "out_uv");
}

TEST_F(ImageNumbers, OfColours)
{
    CompareAll("ColourAdjust; Function=", colourAdjustments, {}, "out_colour");
    CompareAll("ColourRamp" + std::string(rampSettings) + "; Blend=", ramps, {}, "out_colour");
}

TEST_F(ImageNumbers, OfPatterns)
{
    CompareAll("PatternShapes" + std::string(softness) + "; Function=", patterns);
}

TEST_F(ImageNumbers, OfNormals)
{
    CompareAll("NormalMaths; Function=", normals, {}, "out_normal");
}

TEST_F(ImageNumbers, OfTransforms)
{
    RunInputs inputs;
    inputs.Streams["feed"].push_back({1.0f, -2.0f, 0.5f});
    for (std::size_t kind = 0; kind < std::size(vectorKinds); ++kind) {
        Comparison comparison(Compose("Transform of ", vectorKinds[kind]), quotients);
        for (const Transformed& transformed : transforms) {
            Compare(
                Compose("node VectorTransform; Kind=", vectorKinds[kind],
                        "; From=", transformed.From, "; To=", transformed.To,
                        "\nfeed Feed:3\nfeed.read -> node.in_vector\n",
                        WriteSink("float", "out_value")),
                inputs, 3,
                [&](std::size_t, std::size_t at) {
                    return OfScale(10.0, transformed.Vectors[kind][at]);
                },
                comparison);
        }
    }
}

/// A square image whose texels identify their positions; all values fit into a byte.
constexpr std::uint32_t imageSize = 4;

double TexelOf(std::int64_t x, std::int64_t y, std::size_t component)
{
    return static_cast<double>((x + imageSize * y) * 16 +
                               3 * static_cast<std::int64_t>(component)) /
           255.0;
}

Mox::Host::TextureImage MakeImage()
{
    Mox::Host::TextureImage image{imageSize, imageSize, Mox::Host::TexelFormat::Unorm8, {}};
    for (std::int64_t y = 0; y < imageSize; ++y) {
        for (std::int64_t x = 0; x < imageSize; ++x) {
            for (std::size_t c = 0; c < 4; ++c)
                image.Bytes.push_back(
                    static_cast<std::byte>(std::lround(TexelOf(x, y, c) * 255.0)));
        }
    }
    return image;
}

/// The texel at a position, which is the centre of a texel.
double ReadTexel(double s, double t, std::size_t component)
{
    const auto wrap = [](double at) {
        return static_cast<std::int64_t>(std::floor(Frac(at) * imageSize));
    };
    return TexelOf(wrap(s), wrap(t), component);
}

TEST_F(ImageNumbers, OfTextureReads)
{
    RunInputs inputs;
    inputs.Textures["image"] = MakeImage();
    inputs.Streams["normal"] = MakeValues(3, 256);
    for (std::size_t i = 0; i < 256; ++i) {
        const auto middle = [&](std::size_t at) {
            return (static_cast<float>(at % 7) - 2.5f) / static_cast<float>(imageSize);
        };
        inputs.Streams["place"].push_back({middle(i), middle(i / 7), middle(i / 49), 0.0f});
    }
    const std::string node = "node TextureRead; Name=image; sRGB=false; Sharpness=2; Read=";
    const std::string sink = WriteSink("float", "out_colour out_alpha");
    Comparison level("Level Texture Read", quotients);
    Compare(
        node + "Level\nplace Feed:2\nplace.read -> node.in_uv\n" + sink, inputs, 4,
        [&](std::size_t i, std::size_t at) {
            const Numbers& from = inputs.Streams["place"][i];
            return OfScale(1.0, ReadTexel(from[0], from[1], at));
        },
        level);
    Comparison sides("Triplanar Texture Read", quotients);
    Compare(
        node +
            "Triplanar\nplace Feed:3\nplace.read -> node.in_position\nnormal Feed:3\n"
            "normal.read -> node.in_normal\n" +
            sink,
        inputs, 4,
        [&](std::size_t i, std::size_t at) {
            const Numbers& from = inputs.Streams["place"][i];
            Triple weights{};
            for (std::size_t c = 0; c < 3; ++c) {
                const double facing =
                    std::max(std::abs(double{inputs.Streams["normal"][i][c]}), 1e-5);
                weights[c] = facing * facing;
            }
            const double sum = weights[0] * ReadTexel(from[2], from[1], at) +
                               weights[1] * ReadTexel(from[0], from[2], at) +
                               weights[2] * ReadTexel(from[0], from[1], at);
            return OfScale(1.0, sum / SumOfSizes(weights));
        },
        sides);
}

} // namespace
