#include "Bindings.h"
#include "Convert.h"
#include "Edit.h"
#include "Errors.h"
#include "Material.h"
#include "Painting.h"
#include "Programs.h"
#include "Views.h"
#include "mox/document/MaterialDiff.h"
#include "mox/editor/StateJson.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/interchange/ReadMaterial.h"

#include <functional>
#include <pybind11/operators.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace Mox::Python {

namespace {

using py::literals::operator""_a;

using WithoutLock = py::call_guard<py::gil_scoped_release>;

using MaterialHandle = std::shared_ptr<Material>;

/// Converts an argument that identifies a node to its id.
std::string ToId(const py::object& node)
{
    return py::isinstance<NodeView>(node) ? node.cast<const NodeView&>().Id
                                          : node.cast<std::string>();
}

/// Finds a node of a material by id.
/// @throws py::key_error if there is none
NodeView FindNode(Material& material, const std::string& id)
{
    if (!material.Use([&](const auto& graph) { return graph.FindNode(id).has_value(); }))
        throw py::key_error("the material has no node \"" + id + "\"");
    return {material.shared_from_this(), id};
}

std::size_t HashOf(const MaterialHandle& material, const std::string& text)
{
    return std::hash<const void*>()(material.get()) ^ std::hash<std::string>()(text);
}

void BindPort(py::module_& module)
{
    py::class_<PortView> port(module, "Port", py::is_final(),
                              "A port of a node. It is found by its name whenever it is used, and "
                              "raises StaleError if it is gone.");
    const auto state = [&port](const char* name, auto member, const char* help) {
        port.def_property_readonly(
            name, [member](const PortView& p) { return py::cast(p.State().*member); }, help);
    };
    port.def_property_readonly(
            "node", [](const PortView& p) { return p.Node; }, "The node.")
        .def_property_readonly(
            "name", [](const PortView& p) { return ToPython(p.Name); }, "Cg name of the port.")
        .def_property_readonly(
            "source", [](const PortView& p) { return p.Source(); },
            "The output that feeds this input, or None.")
        .def_property_readonly(
            "readers", [](const PortView& p) { return p.Readers(); },
            "The inputs that this output feeds, in no particular order.");
    state("label", &PortState::Label, "Text that editors show.");
    state("is_input", &PortState::IsInput, "Whether it is an input.");
    state("components", &PortState::Components,
          "Number of components, or None while nothing determines it.");
    state("precision", &PortState::Precision,
          "\"float\", \"half\" and so on, or None while nothing determines it.");
    state("connected", &PortState::IsConnected, "Whether an edge leads to or from it.");
    state("conflict", &PortState::HasConflict, "Whether component counts do not agree here.");
    port.def(py::self == py::self)
        .def("__hash__",
             [](const PortView& p) { return HashOf(p.Node.Owner, p.Node.Id + "." + p.Name); })
        .def("__repr__", [](const PortView& p) {
            return py::str("<mox.Port {!r} of {!r}>").format(ToPython(p.Name), ToPython(p.Node.Id));
        });

    py::class_<EdgeView> edge(module, "Edge", py::is_final(), "An edge as the document has it.");
    edge.def_readonly("tail", &EdgeView::Tail, "The output that it leaves.")
        .def_readonly("head", &EdgeView::Head, "The input that it feeds.");
    MakeRecord(edge, {"tail", "head"});
}

void BindNode(py::module_& module)
{
    py::class_<NodeView>(module, "Node", py::is_final(),
                         "A node of a material. It is found by its id whenever it is used, and "
                         "raises StaleError if it is gone. node[\"out_colour\"] is a port.")
        .def_property_readonly(
            "id", [](const NodeView& n) { return ToPython(n.Id); }, "Id in the document.")
        .def_property_readonly(
            "material", [](const NodeView& n) { return n.Owner; }, "The material.")
        .def_property_readonly(
            "type", [](const NodeView& n) { return ToPython(n.Type()); }, "Name of its type.")
        .def_property_readonly(
            "title", [](const NodeView& n) { return ToPython(n.Title()); },
            "Title that editors show.")
        .def_property_readonly("line", &NodeView::Line,
                               "Line in the file, from 1; 0 for a node that was added since.")
        .def_property_readonly("is_placeholder", &NodeView::IsPlaceholder,
                               "Whether no plug-in offers its type.")
        .def_property_readonly(
            "values", [](const NodeView& n) { return ToDict(n.Values()); },
            "Values of its properties by name, as a new dictionary: bool, int, float, str, three "
            "numbers for a colour, and for a reference the id of a node or None.")
        .def_property_readonly("position", &NodeView::Position,
                               "Upper left corner in an editor: x and y in pixels.")
        .def_property_readonly(
            "inputs", [](const NodeView& n) { return PortsOf(n, true); }, "Its input ports.")
        .def_property_readonly(
            "outputs", [](const NodeView& n) { return PortsOf(n, false); }, "Its output ports.")
        .def(
            "__getitem__",
            [](const NodeView& n, const std::string& name) {
                if (!HasPort(n, name))
                    throw py::key_error("node \"" + n.Id + "\" has no port \"" + name + "\"");
                return PortView{n, name};
            },
            "port"_a)
        .def(
            "__contains__",
            [](const NodeView& n, const py::object& name) {
                return py::isinstance<py::str>(name) && HasPort(n, name.cast<std::string>());
            },
            "port"_a)
        .def(py::self == py::self)
        .def("__hash__", [](const NodeView& n) { return HashOf(n.Owner, n.Id); })
        .def("__repr__",
             [](const NodeView& n) { return py::str("<mox.Node {!r}>").format(ToPython(n.Id)); });
}

void BindEdit(py::module_& module)
{
    py::class_<Edit, std::shared_ptr<Edit>>(
        module, "Edit", py::is_final(),
        "A change that is being put together. When its with block ends it is made as one step to "
        "undo; if a step does not fit, or if the block raises, nothing changes. Nodes are named "
        "by their ids or by Node. The material itself does not change before the end.")
        .def("__enter__", [](Edit& edit) { return edit.shared_from_this(); })
        .def("__exit__",
             [](Edit& edit, const py::object& type, const py::object&, const py::object&) {
                 if (type.is_none())
                     edit.Finish();
                 else
                     edit.Discard();
             })
        .def(
            "add",
            [](Edit& edit, const std::string& type, const std::optional<std::string>& id,
               const py::dict& values, const py::object& before) {
                return edit.Add(type, id, ToGivenValues(values),
                                before.is_none() ? "" : ToId(before));
            },
            "type"_a, py::kw_only(), "id"_a = py::none(), "values"_a = py::dict(),
            "before"_a = py::none(),
            "Adds a node.\n\nid is made from the type if it is left out. values has properties "
            "that differ from their defaults. before is the node that follows in the document. "
            "Returns the node, whose ports can be connected at once.")
        .def(
            "remove", [](Edit& edit, const py::object& node) { edit.Remove(ToId(node)); }, "node"_a,
            "Removes a node with its edges, and empties references to it.")
        .def(
            "rename",
            [](Edit& edit, const py::object& node, const std::string& id) {
                return edit.Rename(ToId(node), id);
            },
            "node"_a, "id"_a,
            "Gives a node another id; edges and references follow. Returns the node under its "
            "new id.")
        .def("connect", &Edit::Connect, "tail"_a, "head"_a, py::kw_only(), "replace"_a = false,
             "Adds an edge from an output to an input.\n\nreplace removes the edge that feeds the "
             "input now; without it, a second edge is refused.")
        .def("disconnect", &Edit::Disconnect, "tail"_a, "head"_a, "Removes an edge.")
        .def(
            "set",
            [](Edit& edit, const py::object& node, const py::dict& values) {
                edit.Set(ToId(node), ToGivenValues(values));
            },
            "node"_a, "values"_a,
            "Sets properties of a node: numbers, strings, bools, three numbers for a colour, a "
            "node for a reference, None for no reference.")
        .def(
            "set_description",
            [](Edit& edit, const py::dict& values) { edit.SetDescription(ToTexts(values, " ")); },
            "values"_a, "Replaces the description of the material.")
        .def(
            "set_render_state",
            [](Edit& edit, const py::dict& values) { edit.SetRenderState(ToTexts(values, " ")); },
            "values"_a, "Replaces the render state of the material.")
        .def(
            "set_binding",
            [](Edit& edit, const std::string& stream, const std::string& name,
               const py::dict& values) { edit.SetBinding(stream, name, ToTexts(values, ",")); },
            "stream"_a, "name"_a, "values"_a,
            "Replaces the document's values of a binding: attributes such as \"default\" by name.")
        .def("remove_binding", &Edit::RemoveBinding, "stream"_a, "name"_a,
             "Removes the document's values of a binding.")
        .def_property_readonly("change", &Edit::Change, "The steps so far, as a Change.")
        .def("__repr__", [](const Edit& edit) {
            return edit.IsOpen() ? "<mox.Edit, open>" : "<mox.Edit, ended>";
        });
}

void BindReading(py::class_<Material, MaterialHandle>& type)
{
    type.def_property_readonly(
            "file",
            [](const Material& m) {
                const std::filesystem::path file = m.File();
                return file.empty() ? std::nullopt : std::optional(file);
            },
            "The file, or None if it has none yet.")
        .def_property_readonly(
            "library", [](const Material& m) { return m.LibraryHandle(); }, "The library.")
        .def_property_readonly(
            "problems", [](const Material& m) { return py::tuple(py::cast(m.Problems())); },
            "What is wrong with the material, as mox check finds it: a tuple of Problem. It is "
            "found once for each state of the material.")
        .def("check", &Material::Check,
             "The same found again, as a list: files beside the material may have changed.")
        .def_property_readonly("nodes", &NodesOf, "The nodes in the order of the document.")
        .def_property_readonly("edges", &EdgesOf, "The edges in the order of the document.")
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
            "What the material is: attributes by name, as a new dictionary.")
        .def_property_readonly(
            "render_state",
            [](const Material& m) {
                return ToDict(
                    m.Use([](const auto& graph) { return graph.Document().RenderState; }));
            },
            "Blending, tests and culling: attributes by name, as a new dictionary.")
        .def_property_readonly("bindings", &Material::Bindings,
                               "Its run-time parameters, as a list of Binding. Raises Error if "
                               "the material has an error.")
        .def_property_readonly(
            "text", &Material::Text,
            "The document in its canonical form, as mox format writes it. Raises Error if "
            "something in the file could not be read.")
        .def(
            "state",
            [](const Material& m) {
                return ToPython(
                    m.Use([](const auto& graph) { return Host::DescribeState(graph); }));
            },
            "The whole material in the form that editors use, see docs/json.md: dictionaries and "
            "lists.");
}

void BindChanging(py::class_<Material, MaterialHandle>& type)
{
    type.def(
            "edit",
            [](Material& m, const std::string& title) {
                return std::make_shared<Edit>(m.shared_from_this(), title);
            },
            "title"_a = "", "Begins a change for a with block. title is what undo_title shows.")
        .def("apply", &Material::Apply, "change"_a, "title"_a = "",
             "Makes a change as one step to undo. Returns whether it had an effect.\n\nRaises "
             "RefusedError or Error, with node and port, if it does not fit; nothing has changed "
             "then.")
        .def("undo", &Material::Undo, "Takes the last step back. Returns False if there is none.")
        .def("redo", &Material::Redo, "Makes a step again. Returns False if there is none.")
        .def_property_readonly(
            "undo_title", [](const Material& m) { return ToPython(m.UndoTitle()); },
            "What undo would take back; empty if there is nothing.")
        .def_property_readonly(
            "redo_title", [](const Material& m) { return ToPython(m.RedoTitle()); },
            "What redo would do; empty if there is nothing.")
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
            "Gives nodes positions in columns from left to right, all of them if none are named, "
            "as one step to undo. Returns whether one has moved.")
        .def(
            "save", [](Material& m, bool force) { m.Save(std::nullopt, force); }, py::kw_only(),
            "force"_a = false,
            "Writes the document to its file.\n\nRaises Error if it has no file, if the file has "
            "changed on disk, is read-only or has other hard links, unless force is set; and if "
            "something in the file could not be read and would be lost.")
        .def(
            "save_as",
            [](Material& m, const std::filesystem::path& file, bool force) { m.Save(file, force); },
            "file"_a, py::kw_only(), "force"_a = false,
            "Writes the document to another file, which becomes that of the material. An existing "
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
            "The programs in some targets, Cg if none is named; mox.targets lists them.\n\n"
            "precision is \"full\" or \"relaxed\", optimise optimises SPIR-V, plain leaves "
            "comments out. Raises Error, whose attribute problems has all that is wrong, if the "
            "material has an error.")
        .def(
            "materialx", &FormatMaterialX,
            "The material as a MaterialX document, as mox convert writes it: its text, and what is "
            "not carried over as it is, as a list of Problem.\n\n"
            "Names of textures stay relative to the folder of the material. Raises Error if the "
            "material has an error.")
        .def("shader_graph", &FormatShaderGraph,
             "The finished shader graph as text, as mox export --shader-graph prints it.")
        .def(
            "graph",
            [](const Material& m, const std::string& format, bool shader, bool thumbnails) {
                return py::bytes(DrawGraph(m, {format, shader, thumbnails}));
            },
            py::kw_only(), "format"_a = "svg", "shader"_a = false, "thumbnails"_a = false,
            "A diagram of the graph, as mox graph draws it: the bytes of a file.\n\n"
            "format is \"svg\", \"png\" or \"dot\". shader draws the finished shader graph with "
            "its stages, thumbnails shows what each node outputs. Raises Error if Graphviz is "
            "missing, or for thumbnails a Vulkan device.")
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
            "Opens a material. What is wrong with it is in its problems.\n\nA MaterialX document "
            "is "
            "converted; the material has no file then, and save_as gives it one. Raises Error if "
            "the file cannot be read at all.")
        .def(
            "parse",
            [](const Library& self, const std::string& text, const std::string& file) {
                return Material::Parse(self.shared_from_this(), text, file);
            },
            "text"_a, py::kw_only(), "file"_a = "<text>", WithoutLock(),
            "A material from the text of a document. file is its name in messages; the material "
            "has no file to save it to.")
        .def(
            "new",
            [](const Library& self) {
                return std::make_shared<Material>(self.shared_from_this(), Host::MaterialDocument(),
                                                  std::filesystem::path(), std::string(),
                                                  Host::ProblemList());
            },
            WithoutLock(), "An empty material without a file.")
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
            "Opens many materials, in order, on several threads.\n\nthreads is the number of "
            "threads, 0 for as many as there are processors. Raises the first Error if a file "
            "cannot be read.");
}

/// The document of a material object or of a file.
/// @param library set to the library of a material if it is empty
Host::MaterialDocument ReadDocument(const py::object& source,
                                    std::shared_ptr<const Library>& library)
{
    if (!py::isinstance<Material>(source)) {
        const auto file = source.cast<std::filesystem::path>();
        const py::gil_scoped_release release;
        return Host::ReadMaterial(file);
    }
    const auto& material = source.cast<const Material&>();
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
        "A material that can be read, changed, compiled and saved. material[\"tint\"] is the node "
        "with this id. Threads may share it: each operation waits for the one that is going on.");
    BindNode(module);
    BindPort(module);
    BindEdit(module);
    BindReading(material);
    BindChanging(material);
    BindResults(material);
    BindOpening(module);
    module.def("diff", &Diff, "before"_a, "after"_a, py::kw_only(), "library"_a = py::none(),
               "How the meaning of two materials differs, as a list of Difference; empty if it "
               "does not. str(difference) is the line that mox diff prints.\n\n"
               "before and after are files or Materials. library knows the defaults of the types; "
               "without it, that of a Material, else a new Library. Raises Error if a file is not "
               "a material document.");
}

} // namespace Mox::Python
