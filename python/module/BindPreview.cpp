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
        throw py::value_error(
            "a Picture requires an array of bytes with the shape (height, width, 4)");
    for (const py::ssize_t side : {source.shape[0], source.shape[1]}) {
        if (side < 1 || side > Host::maxPngSide)
            throw py::value_error(
                "the width and the height of a Picture must be from 1 to 1000000");
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
        "An immutable image. Its buffer is an array of bytes of shape (height, width, 4): the rows "
        "run from top to bottom, and each pixel has red, green and blue in sRGB, and alpha. "
        "numpy.asarray(picture) reads the buffer without copying it. Picture(array) copies a byte "
        "array of this shape, and raises ValueError for any other array.");
    DefineNew(type, &CopyPicture, "pixels"_a);
    type.def_buffer(&DescribeBuffer)
        .def_property_readonly(
            "width", [](const Image& image) { return image.Content.Width; }, "The width in pixels.")
        .def_property_readonly(
            "height", [](const Image& image) { return image.Content.Height; },
            "The height in pixels.")
        .def_property_readonly(
            "problems", [](const Image& image) { return py::tuple(py::cast(image.Problems)); },
            "The problems of the material, as a tuple of Problem objects. If one of them is an "
            "error, the picture shows a pattern of magenta and black.")
        .def(
            "save",
            [](const Image& image, const std::filesystem::path& file) {
                Host::WritePng(image.Content, file);
            },
            "file"_a, py::call_guard<py::gil_scoped_release>(),
            "Writes the picture to a PNG file. Raises Error if the file cannot be written.")
        .def(
            "tobytes",
            [](const Image& image) {
                const auto& pixels = image.Content.Pixels;
                return py::bytes(reinterpret_cast<const char*>(pixels.data()), pixels.size());
            },
            "Returns a copy of the pixels as bytes.")
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
        throw py::value_error(
            "max_texture, max_decoded and max_decode_time must be from 1 to 1000000");
    return {side, megabytes << 20U, seconds};
}

} // namespace

void BindPreview(py::module_& module)
{
    BindPicture(module);
    py::class_<Preview> type(
        module, "Preview", py::is_final(),
        "Renders images of materials with Vulkan, without a window. Creating a Preview is slow, so "
        "keep one for many images. Several threads may use one Preview; it renders one image at a "
        "time.\n\nmax_texture is the maximum width and height of a texture in texels. max_decoded "
        "is the maximum size of a decoded file in megabytes, and max_decode_time is the maximum "
        "time to decode a file in seconds. Raises Error if there is no Vulkan device.");
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
    type.def_property_readonly("device", &Preview::DeviceName, "The name of the Vulkan device.")
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
            "Renders the current state of a material, as mox preview does, and returns a "
            "Picture.\n\nmesh is \"sphere\", \"plane\", \"cube\" or a mesh file. size is a width "
            "and a height in pixels, or one number for both. frame is the number of the first "
            "frame, and frames is the number of frames to render side by side. time is the time of "
            "the first frame in seconds; by default, it is computed for 30 frames per second. "
            "light is the file of a panorama that replaces the lights of a physical surface. node "
            "selects an output to show instead of the material: a Node, a Port, \"id\" or "
            "\"id.port\". values maps names to numbers or texture files: names of bindings, of "
            "environment values, and of vertex streams that the mesh does not have.\n\nRaises "
            "Error if a size, a mesh or a value cannot be used.")
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
            "Renders the outputs of several nodes. Returns a list of Picture objects in the order "
            "of nodes. This is much faster than one call of render() for each node.")
        .def("__repr__", [](const Preview& self) {
            return py::str("<mox.Preview on {}>").format(ToPython(self.DeviceName()));
        });
}

} // namespace Mox::Python
