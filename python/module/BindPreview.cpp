#include "Bindings.h"
#include "Convert.h"
#include "Painting.h"
#include "Views.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace Mox::Python {

namespace {

using py::literals::operator""_a;

constexpr py::ssize_t channelCount = 4;

py::buffer_info DescribeBuffer(Image& image)
{
    Host::Picture& picture = image.Content;
    const py::ssize_t height = picture.Height;
    const py::ssize_t width = picture.Width;
    return {picture.Pixels.data(),
            1,
            py::format_descriptor<std::uint8_t>::format(),
            3,
            std::vector{height, width, channelCount},
            std::vector{channelCount * width, channelCount, py::ssize_t(1)},
            true};
}

/// Copies an image from a three-dimensional array of bytes.
Image CopyPicture(const py::handle&, const py::buffer& pixels)
{
    const py::buffer_info source = pixels.request();
    if (source.format != py::format_descriptor<std::uint8_t>::format() || source.ndim != 3 ||
        source.shape[2] != channelCount)
        throw py::value_error("a picture is made of bytes in the shape (height, width, 4)");
    for (const py::ssize_t side : {source.shape[0], source.shape[1]}) {
        if (side < 1 || side > Host::maxPngSide)
            throw py::value_error("a picture has from 1 to 1000000 rows and columns");
    }
    Image image;
    image.Content.Height = static_cast<std::uint32_t>(source.shape[0]);
    image.Content.Width = static_cast<std::uint32_t>(source.shape[1]);
    const auto* begin = static_cast<const std::uint8_t*>(source.ptr);
    image.Content.Pixels.reserve(static_cast<std::size_t>(source.size));
    for (py::ssize_t row = 0; row < source.shape[0]; ++row) {
        for (py::ssize_t column = 0; column < source.shape[1]; ++column) {
            for (py::ssize_t channel = 0; channel < channelCount; ++channel) {
                image.Content.Pixels.push_back(
                    begin[row * source.strides[0] + column * source.strides[1] +
                          channel * source.strides[2]]);
            }
        }
    }
    return image;
}

void BindPicture(py::module_& module)
{
    py::class_<Image> type(
        module, "Picture", py::is_final(), py::buffer_protocol(),
        "An image that never changes. Its buffer has the shape (height, width, 4) of "
        "bytes: rows from top to bottom; red, green and blue in sRGB, and alpha. "
        "numpy.asarray(picture) reads it without a copy. Picture(array) copies an "
        "array of this shape; it raises ValueError for another one.");
    DefineNew(type, &CopyPicture, "pixels"_a);
    type.def_buffer(&DescribeBuffer)
        .def_property_readonly(
            "width", [](const Image& image) { return image.Content.Width; }, "Width in pixels.")
        .def_property_readonly(
            "height", [](const Image& image) { return image.Content.Height; }, "Height in pixels.")
        .def_property_readonly(
            "problems", [](const Image& image) { return py::tuple(py::cast(image.Problems)); },
            "What was wrong with the material, as Problem. With an error among it the picture is "
            "a pattern of magenta and black.")
        .def(
            "save",
            [](const Image& image, const std::filesystem::path& file) {
                Host::WritePng(image.Content, file);
            },
            "file"_a, py::call_guard<py::gil_scoped_release>(),
            "Writes a PNG file. Raises Error if it cannot be written.")
        .def(
            "tobytes",
            [](const Image& image) {
                const auto& pixels = image.Content.Pixels;
                return py::bytes(reinterpret_cast<const char*>(pixels.data()), pixels.size());
            },
            "A copy of the bytes.")
        .def("__repr__", [](const Image& image) {
            return py::str("<mox.Picture, {} by {}>")
                .format(image.Content.Width, image.Content.Height);
        });
}

/// Sets width and height; a single number sets both.
void SetSize(const py::object& size, Host::PreviewOptions& options)
{
    const auto sides = py::isinstance<py::int_>(size)
                           ? std::pair(size.cast<std::uint32_t>(), size.cast<std::uint32_t>())
                           : size.cast<std::pair<std::uint32_t, std::uint32_t>>();
    options.Width = sides.first;
    options.Height = sides.second;
}

std::map<std::string, std::string> ToMap(const py::dict& values)
{
    std::map<std::string, std::string> map;
    for (auto& [name, value] : ToTexts(values, ","))
        map[name] = std::move(value);
    return map;
}

std::string ToMesh(const py::object& mesh)
{
    return ToText(mesh, "");
}

/// Converts an argument to "id" or "id.port".
std::string ToNode(const py::handle& node)
{
    if (py::isinstance<PortView>(node)) {
        const auto& port = node.cast<const PortView&>();
        return port.Node.Id + "." + port.Name;
    }
    return py::isinstance<NodeView>(node) ? node.cast<const NodeView&>().Id
                                          : node.cast<std::string>();
}

Host::DecodeLimits MakeLimits(std::uint32_t side, std::uint64_t megabytes, std::uint32_t seconds)
{
    constexpr std::uint32_t most = 1'000'000;
    if (side < 1 || side > most || megabytes < 1 || megabytes > most || seconds < 1 ||
        seconds > most)
        throw py::value_error("a limit must be from 1 to 1000000");
    return {side, megabytes << 20U, seconds};
}

} // namespace

void BindPreview(py::module_& module)
{
    BindPicture(module);
    py::class_<Preview> type(
        module, "Preview", py::is_final(),
        "Draws pictures of materials with Vulkan, without a window. Keep it for many pictures. Any "
        "thread may use it; it draws one picture at a time.\n\n"
        "max_texture is the largest width and height of a texture in texels, max_decoded the most "
        "memory of a decoded file in megabytes, max_decode_time the most seconds to decode one. "
        "Raises Error if there is no Vulkan device.");
    DefineNew(
        type,
        [](const py::handle&, const Library& library, std::uint32_t side, std::uint64_t megabytes,
           std::uint32_t seconds) {
            const Host::DecodeLimits limits = MakeLimits(side, megabytes, seconds);
            const py::gil_scoped_release release;
            return std::make_unique<Preview>(library.shared_from_this(), limits);
        },
        "library"_a, py::kw_only(), "max_texture"_a = 16384, "max_decoded"_a = 512,
        "max_decode_time"_a = 60);
    type.def_property_readonly("device", &Preview::DeviceName, "Name of the device that draws.")
        .def(
            "render",
            [](const Preview& self, const Material& material, const py::object& mesh,
               const py::object& size, float frame, std::uint32_t frames, std::optional<float> time,
               const std::optional<std::filesystem::path>& light, const py::object& node,
               const py::dict& values) {
                Host::PreviewOptions options;
                SetSize(size, options);
                options.FirstFrame = frame;
                options.FrameCount = frames;
                options.Time = time;
                options.Light = light.value_or("");
                options.Node = node.is_none() ? "" : ToNode(node);
                options.Values = ToMap(values);
                return self.Render(material, ToMesh(mesh), options);
            },
            "material"_a, py::kw_only(), "mesh"_a = "sphere", "size"_a = py::make_tuple(512, 512),
            "frame"_a = 0.0f, "frames"_a = 1, "time"_a = py::none(), "light"_a = py::none(),
            "node"_a = py::none(), "values"_a = py::dict(),
            "Draws a material as it is now, as mox preview does.\n\n"
            "mesh is \"sphere\", \"plane\", \"cube\" or a mesh file. size is a width and a height "
            "in pixels, or one number for both. frame is the number of the first frame, and frames "
            "how many are drawn side by side. time is in seconds at the first frame; without it 30 "
            "frames make a second. light is a panorama that alone lights a physical surface. node "
            "is a Node, a Port, \"id\" or \"id.port\" to show instead of the material. values are "
            "those of bindings and of what the environment reads: numbers or texture files by "
            "name.\n\n"
            "Raises Error if a size, mesh or value cannot be used.")
        .def(
            "render_nodes",
            [](const Preview& self, const Material& material, const py::iterable& nodes,
               const py::object& mesh, const py::object& size, float frame,
               const py::dict& values) {
                std::vector<std::string> names;
                for (const py::handle node : nodes)
                    names.push_back(ToNode(node));
                Host::PreviewOptions options;
                SetSize(size, options);
                options.FirstFrame = frame;
                options.Values = ToMap(values);
                return self.RenderNodes(material, ToMesh(mesh), options, names);
            },
            "material"_a, "nodes"_a, py::kw_only(), "mesh"_a = "plane",
            "size"_a = py::make_tuple(96, 96), "frame"_a = 0.0f, "values"_a = py::dict(),
            "What nodes put out, as a list of pictures in order. Far quicker than one render for "
            "each.")
        .def("__repr__", [](const Preview& self) {
            return py::str("<mox.Preview on {}>").format(ToPython(self.DeviceName()));
        });
}

} // namespace Mox::Python
