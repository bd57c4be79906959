#include "Bindings.h"
#include "Convert.h"
#include "Edit.h"
#include "Errors.h"
#include "Material.h"
#include "Painting.h"
#include "Programs.h"
#include "Views.h"
#include "mox/Text.h"
#include "mox/document/MaterialDiff.h"
#include "mox/editor/StateJson.h"
#include "mox/host/Excerpt.h"
#include "mox/host/NearestName.h"
#include "mox/interchange/ReadMaterial.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace Mox::Python {

namespace {

using Materials::Compose;
using py::literals::operator""_a;

using WithoutLock = py::call_guard<py::gil_scoped_release>;

using MaterialHandle = std::shared_ptr<Material>;

/// Finds a node of a material by id.
/// @throws py::key_error if there is none
NodeView FindNode(Material& material, const std::string& id)
{
    if (!material.Use([&](const auto& graph) { return graph.FindNode(id).has_value(); })) {
        std::vector<Host::RightName> ids;
        for (const NodeView& node : NodesOf(material))
            ids.push_back({node.Id});
        throw py::key_error(
            Compose("the material has no node ", Host::Excerpt(id), Host::SuggestName(id, ids)));
    }
    return {material.shared_from_this(), id};
}

void BindReading(py::class_<Material, MaterialHandle>& type)
{
    type.def_property_readonly(
            "file",
            [](const Material& m) {
                const std::filesystem::path file = m.File();
                return file.empty() ? std::nullopt : std::optional(file);
            },
            "The file of the material, or None if the material has no file yet.")
        .def_property_readonly(
            "library", [](const Material& m) { return m.LibraryHandle(); },
            "The Library that the material was created with.")
        .def_property_readonly(
            "problems", [](const Material& m) { return py::tuple(py::cast(m.Problems())); },
            "The problems that mox check reports for the material, as a tuple of Problem objects. "
            "The material is checked only once after each change.")
        .def("check", &Material::Check,
             "Checks the material again and returns the problems as a list. Use it when files that "
             "the material refers to, such as textures, may have changed.")
        .def_property_readonly("nodes", &NodesOf, "The nodes, in the order of the document.")
        .def_property_readonly("edges", &EdgesOf, "The edges, in the order of the document.")
        .def("__getitem__", &FindNode, "node"_a)
        .def(
            "__contains__",
            [](const Material& m, const py::object& node) {
                if (!py::isinstance<py::str>(node) && !py::isinstance<NodeView>(node))
                    return false;
                const std::string id = ToId(node);
                return m.Use([&](const auto& graph) { return graph.FindNode(id).has_value(); });
            },
            "node"_a)
        .def("__iter__", [](Material& m) { return py::iter(py::cast(NodesOf(m))); })
        .def("__len__",
             [](const Material& m) {
                 return m.Use([](const auto& graph) { return graph.Nodes().size(); });
             })
        .def_property_readonly(
            "description",
            [](const Material& m) {
                return ToDict(
                    m.Use([](const auto& graph) { return graph.Document().Description; }));
            },
            "The description of the material, as a new dictionary of attributes.")
        .def_property_readonly(
            "render_state",
            [](const Material& m) {
                return ToDict(
                    m.Use([](const auto& graph) { return graph.Document().RenderState; }));
            },
            "The render state (blending, tests and culling), as a new dictionary of attributes.")
        .def_property_readonly("bindings", &Material::Bindings,
                               "The run-time parameters of the material, as a list of Binding "
                               "objects. Raises Error if the material has an error.")
        .def_property_readonly("text", &Material::Text,
                               "The XML document in canonical form, as mox format writes it. "
                               "Raises Error if a part of the file could not be read.")
        .def(
            "state",
            [](const Material& m) {
                return ToPython(
                    m.Use([](const auto& graph) { return Host::DescribeState(graph); }));
            },
            "Returns the complete material as dictionaries and lists, in the form that "
            "docs/json.md describes for editors.");
}

void BindChanging(py::class_<Material, MaterialHandle>& type)
{
    type.def(
            "edit",
            [](Material& m, const std::string& title) {
                return std::make_shared<Edit>(m.shared_from_this(), title);
            },
            "title"_a = "",
            "Returns an Edit for use in a with block. title is the title of the undo step.")
        .def("apply", &Material::Apply, "change"_a, "title"_a = "",
             "Applies a change as a single undo step. Returns whether the material "
             "changed.\n\nRaises RefusedError or Error, with the node and the port, if the change "
             "is invalid. The material does not change in that case.")
        .def("undo", &Material::Undo,
             "Undoes the last step. Returns False if there is no step to undo.")
        .def("redo", &Material::Redo,
             "Redoes the step that was undone last. Returns False if there is no step to redo.")
        .def_property_readonly(
            "undo_title", [](const Material& m) { return ToPython(m.UndoTitle()); },
            "The title of the step that undo() reverts. Empty if there is no such step.")
        .def_property_readonly(
            "redo_title", [](const Material& m) { return ToPython(m.RedoTitle()); },
            "The title of the step that redo() repeats. Empty if there is no such step.")
        .def_property_readonly("unsaved", &Material::IsUnsaved,
                               "Whether the material differs from its file.")
        .def(
            "layout",
            [](Material& m, const py::iterable& nodes) {
                std::vector<std::string> ids;
                for (const py::handle node : nodes)
                    ids.push_back(ToId(py::reinterpret_borrow<py::object>(node)));
                return m.LayOut(ids);
            },
            "nodes"_a = py::tuple(),
            "Arranges nodes in columns from left to right, as a single undo step. By default, all "
            "nodes are arranged. Returns whether a node moved.")
        .def(
            "save", [](Material& m, bool force) { m.Save(std::nullopt, force); }, py::kw_only(),
            "force"_a = false,
            "Writes the document to its file.\n\nRaises Error if the material has no file, or if a "
            "part of the file could not be read and would be lost. Unless force is True, it also "
            "raises Error if the file has changed on disk, is read-only or has other hard links.")
        .def(
            "save_as",
            [](Material& m, const std::filesystem::path& file, bool force) { m.Save(file, force); },
            "file"_a, py::kw_only(), "force"_a = false,
            "Writes the document to a file, which becomes the file of the material. An existing "
            "file is replaced.");
}

void BindResults(py::class_<Material, MaterialHandle>& type)
{
    type.def(
            "compile",
            [](const Material& m, const py::args& targets, const std::string& precision,
               bool optimise, bool plain) {
                ProgramSettings settings{targets.cast<std::vector<std::string>>(), precision,
                                         optimise, plain};
                if (settings.Targets.empty())
                    settings.Targets = {"cg"};
                Program program = Compile(m, settings);
                if (program.Problems.HasErrors())
                    throw FaultyMaterial(program.Problems);
                return program;
            },
            py::kw_only(), "precision"_a = "full", "optimise"_a = false, "plain"_a = false,
            "Compiles the material for the given targets. The default target is \"cg\". "
            "mox.targets lists all targets.\n\nprecision is \"full\" or \"relaxed\". optimise=True "
            "optimises SPIR-V, and plain=True omits comments. Raises Error if the material has an "
            "error. The attribute problems of the exception contains all problems of the material.")
        .def("materialx", &FormatMaterialX,
             "Converts the material to MaterialX. Returns the document as a string, and a list of "
             "Problem objects for everything that cannot be converted exactly.\n\nFile names of "
             "textures stay relative to the folder of the material. Raises Error if the material "
             "has an error.")
        .def("shader_graph", &FormatShaderGraph,
             "Returns the finished shader graph as a string, in the form that mox export "
             "--shader-graph prints.")
        .def(
            "graph",
            [](const Material& m, const std::string& format, bool shader, bool thumbnails) {
                return py::bytes(DrawGraph(m, {format, shader, thumbnails}));
            },
            py::kw_only(), "format"_a = "svg", "shader"_a = false, "thumbnails"_a = false,
            "Draws a diagram of the graph, as mox graph does. Returns the content of the image "
            "file as bytes.\n\nformat is \"svg\", \"png\" or \"dot\". shader=True draws the "
            "finished shader graph with its stages, and thumbnails=True shows an image of the "
            "output at each node. Raises Error if Graphviz is missing, or if thumbnails are "
            "requested and there is no Vulkan device.")
        .def("__repr__", [](const Material& m) {
            const std::filesystem::path file = m.File();
            return py::str("<mox.Material {}>")
                .format(file.empty() ? ToPython(std::string("without a file"))
                                     : py::repr(ToPython(file.string())));
        });
}

void BindOpening(py::module_& module)
{
    py::class_<Library, std::shared_ptr<Library>> library(module.attr("Library"));
    library
        .def(
            "open",
            [](const Library& self, const std::filesystem::path& file) {
                return Material::Open(self.shared_from_this(), file);
            },
            "file"_a, WithoutLock(),
            "Opens a material. Its attribute problems lists the problems of the material.\n\nA "
            "MaterialX document is converted. In that case the material has no file until "
            "save_as() is called. Raises Error if the file cannot be read at all.")
        .def(
            "parse",
            [](const Library& self, const std::string& text, const std::string& file) {
                return Material::Parse(self.shared_from_this(), text, file);
            },
            "text"_a, py::kw_only(), "file"_a = "<text>", WithoutLock(),
            "Creates a material from an XML document, given as a string or as UTF-8 bytes. file is "
            "the name that messages use for the document. The material has no file until save_as() "
            "is called.\n\nA MaterialX document is converted; files that it includes are not read.")
        .def(
            "from_state",
            [](const Library& self, const py::dict& state, const std::string& file) {
                const Host::Json json = FromPython(state, file);
                const py::gil_scoped_release release;
                return Material::FromState(self.shared_from_this(), json, file);
            },
            "state"_a, py::kw_only(), "file"_a = "<state>",
            "Creates a material from a dictionary in the form that Material.state() returns. Only "
            "the records in it are used: the other values of a node depend on its record and its "
            "type. Comments that do not belong to a record are not part of a state. file is the "
            "name that messages use for the state. The material has no file until save_as() is "
            "called.\n\nRaises Error with the JSON pointer of an invalid value.")
        .def(
            "new",
            [](const Library& self) {
                return std::make_shared<Material>(self.shared_from_this(), Host::MaterialDocument(),
                                                  std::filesystem::path(), std::string(),
                                                  Host::ProblemList());
            },
            WithoutLock(), "Creates an empty material without a file.")
        .def(
            "open_many",
            [](const Library& self, const Paths& files, std::size_t threads) {
                std::vector<MaterialHandle> materials(files.size());
                ForEachParallel(files.size(), threads, [&](std::size_t i) {
                    materials[i] = Material::Open(self.shared_from_this(), files[i]);
                });
                return materials;
            },
            "files"_a, py::kw_only(), "threads"_a = 0, WithoutLock(),
            "Opens several materials in parallel and returns them in the order of "
            "files.\n\nthreads is the number of threads; 0 means one per processor. Raises the "
            "first Error if a file cannot be read.");
}

/// The document of a material object or of a file.
/// @param library if empty, set to the library of the material object
Host::MaterialDocument ReadDocument(const py::object& source,
                                    std::shared_ptr<const Library>& library)
{
    if (!py::isinstance<Material>(source)) {
        const auto file = source.cast<std::filesystem::path>();
        const py::gil_scoped_release release;
        return Host::ReadMaterial(file);
    }
    const auto& material = source.cast<const Material&>();
    material.RequireComplete(); // what could not be read would appear to be missing
    if (!library)
        library = material.LibraryHandle();
    return material.CopyDocument();
}

std::vector<Host::MaterialDifference> Diff(const py::object& before, const py::object& after,
                                           const std::shared_ptr<Library>& given)
{
    std::shared_ptr<const Library> library = given;
    const Host::MaterialDocument first = ReadDocument(before, library);
    const Host::MaterialDocument second = ReadDocument(after, library);
    if (!library)
        library = std::make_shared<Library>(Paths(), Paths(), std::filesystem::path());
    const py::gil_scoped_release release;
    return Host::FindDifferences(first, second, library->Plugins());
}

} // namespace

void BindMaterial(py::module_& module)
{
    py::class_<Material, MaterialHandle> material(
        module, "Material", py::is_final(),
        "A material that can be read, changed, compiled and saved. material[\"tint\"] returns the "
        "node with this id. Several threads may use one Material; its operations run one after the "
        "other.");
    BindViews(module);
    BindEdit(module);
    BindReading(material);
    BindChanging(material);
    BindResults(material);
    BindOpening(module);
    module.def("diff", &Diff, "before"_a, "after"_a, py::kw_only(), "library"_a = py::none(),
               "Compares the meaning of two materials. Returns a list of Difference objects, which "
               "is empty if the materials are equivalent. str(difference) returns the line that "
               "mox diff prints.\n\nbefore and after are files or Material objects. library "
               "provides the defaults of the node types; by default, the library of a Material "
               "argument or a new Library is used. Raises Error if a part of a file could not be "
               "read.");
}

} // namespace Mox::Python
