#include "Bindings.h"
#include "Convert.h"
#include "Library.h"
#include "Painting.h"
#include "Programs.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/document/Catalogue.h"
#include "mox/document/PropertyText.h"
#include "mox/json/CatalogueJson.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace Mox::Python {

namespace {

using py::literals::operator""_a;

using WithoutLock = py::call_guard<py::gil_scoped_release>;

using LibraryHandle = std::shared_ptr<Library>;

/// A node type together with the library whose catalogue contains it.
struct TypeView
{
    std::shared_ptr<const Library> Owner;
    const Host::CatalogueEntry* Entry;

    std::shared_ptr<const Host::NodeFile> File() const
    {
        return Owner->NodeFiles().Find(Entry->Type.TypeName);
    }
};

/// The types of a library, accessible by name.
struct TypeMap
{
    std::shared_ptr<const Library> Owner;
};

/// A property of a type, with its description from the node file.
struct TypeProperty
{
    boost::shared_ptr<Materials::GuiProperty> Property;
    std::optional<std::pair<float, float>> Range;
};

/// The message about a type that no plug-in offers, with a suggestion.
std::string UnknownType(const Library& library, const std::string& type)
{
    return Host::UnknownType(type).Message + library.Plugins().SuggestType(type);
}

std::vector<TypeProperty> PropertiesOf(const TypeView& type)
{
    const auto file = type.File();
    std::vector<TypeProperty> properties;
    for (const auto& property : type.Entry->Properties) {
        const Host::NodeProperty* described = file ? file->FindProperty(property->Name) : nullptr;
        properties.push_back({property, described ? described->Range : std::nullopt});
    }
    return properties;
}

py::tuple TypesOf(const TypeMap& map)
{
    py::list types;
    for (const Host::CatalogueEntry& entry : map.Owner->Catalogue())
        types.append(py::cast(TypeView{map.Owner, &entry}));
    return types;
}

py::tuple NamesOf(const TypeMap& map)
{
    py::list names;
    for (const Host::CatalogueEntry& entry : map.Owner->Catalogue())
        names.append(ToPython(entry.Type.TypeName));
    return names;
}

void BindTypeParts(py::module_& module)
{
    using Host::CataloguePort;
    py::class_<CataloguePort> port(module, "TypePort", py::is_final(),
                                   "A port that new nodes of a type have.");
    port.def_property_readonly(
            "name", [](const CataloguePort& p) { return ToPython(p.Name); },
            "The Cg name of the port.")
        .def_property_readonly(
            "label", [](const CataloguePort& p) { return ToPython(p.Label); },
            "The label that editors show.")
        .def_readonly("components", &CataloguePort::Components,
                      "The number of components if the type fixes it, otherwise None.")
        .def_property_readonly(
            "precision", [](const CataloguePort& p) { return TextOrNone(p.Precision); },
            "The precision, such as \"float\" or \"half\", if the type fixes it, otherwise None.");
    MakeRecord(port, {"name", "label", "components", "precision"});

    py::class_<TypeProperty> property(module, "TypeProperty", py::is_final(),
                                      "A property of the nodes of a type.");
    property
        .def_property_readonly(
            "name", [](const TypeProperty& p) { return ToPython(p.Property->Name); },
            "The name of the property.")
        .def_property_readonly(
            "kind", [](const TypeProperty& p) { return Host::FormatKind(p.Property->Kind); },
            "The kind of the property: \"bool\", \"integer\", \"float\", \"string\", \"colour\", "
            "\"enum\" or \"node\".")
        .def_property_readonly(
            "default", [](const TypeProperty& p) { return ToPython(ReadValue(*p.Property)); },
            "The value in a new node: a bool, a number, a string, three numbers for a colour, or "
            "None.")
        .def_property_readonly(
            "help", [](const TypeProperty& p) { return ToPython(p.Property->Help); },
            "A description of the property for users.")
        .def_property_readonly(
            "choices",
            [](const TypeProperty& p) { return py::tuple(py::cast(p.Property->Choices)); },
            "The allowed values of an enum, or the node types that a reference accepts.")
        .def_property_readonly(
            "range", [](const TypeProperty& p) { return p.Range; },
            "The lowest and the highest sensible value, or None.")
        .def_property_readonly(
            "visible", [](const TypeProperty& p) { return p.Property->Visible; },
            "Whether editors show the property.")
        .def_property_readonly(
            "editable", [](const TypeProperty& p) { return p.Property->Editable; },
            "Whether users may change the property.");
    MakeRecord(property,
               {"name", "kind", "default", "help", "choices", "range", "visible", "editable"});
}

void BindTypes(py::module_& module)
{
    BindTypeParts(module);
    py::class_<TypeView> type(module, "NodeType", py::is_final(),
                              "A node type that a plug-in provides.");
    const auto text = [&type](const char* name, auto member, const char* help) {
        type.def_property_readonly(
            name, [member](const TypeView& t) { return ToPython(member(*t.Entry)); }, help);
    };
    text(
        "name", [](const auto& e) -> const std::string& { return e.Type.TypeName; },
        "The name of the type in documents.");
    text(
        "label", [](const auto& e) -> const std::string& { return e.Type.Label; },
        "The label that editors show.");
    text(
        "library", [](const auto& e) -> const std::string& { return e.Type.Library; },
        "The name of the library that supplies the type.");
    type.def_property_readonly(
            "plugin", [](const TypeView& t) { return std::filesystem::path(t.Entry->Type.File); },
            "The file of the plug-in.")
        .def_property_readonly(
            "listed", [](const TypeView& t) { return t.Entry->Type.Listed; },
            "Whether editors offer the type.")
        .def_property_readonly(
            "version", [](const TypeView& t) { return t.Entry->Version; },
            "The version of the properties.")
        .def_property_readonly(
            "help",
            [](const TypeView& t) {
                const auto file = t.File();
                return ToPython(file ? file->Help : std::string());
            },
            "A description of the type for users. Empty if there is none.")
        .def_property_readonly(
            "inputs", [](const TypeView& t) { return py::tuple(py::cast(t.Entry->Inputs)); },
            "The input ports of a new node, as TypePort objects.")
        .def_property_readonly(
            "outputs", [](const TypeView& t) { return py::tuple(py::cast(t.Entry->Outputs)); },
            "The output ports of a new node, as TypePort objects.")
        .def_property_readonly(
            "properties", [](const TypeView& t) { return py::tuple(py::cast(PropertiesOf(t))); },
            "The properties in order, as TypeProperty objects.")
        .def_property_readonly(
            "icon",
            [](const TypeView& t) -> std::optional<Image> {
                const Host::XpmTable icon = t.Owner->NodeFiles().FindIcon(t.Entry->Type);
                if (icon.empty())
                    return std::nullopt;
                return Image{Host::DecodeXpm(icon)};
            },
            "The icon, or None if the type has none.")
        .def("__repr__", [](const TypeView& t) {
            return py::str("<mox.NodeType {!r}>").format(ToPython(t.Entry->Type.TypeName));
        });

    py::class_<TypeMap>(
        module, "Types", py::is_final(),
        "A mapping from names to the node types of a library, in the order of the catalogue.")
        .def(
            "__getitem__",
            [](const TypeMap& map, const std::string& name) {
                if (const auto* entry = map.Owner->FindType(name))
                    return TypeView{map.Owner, entry};
                throw py::key_error(UnknownType(*map.Owner, name));
            },
            "name"_a)
        .def(
            "__contains__",
            [](const TypeMap& map, const py::object& name) {
                return py::isinstance<py::str>(name) &&
                       map.Owner->FindType(name.cast<std::string>()) != nullptr;
            },
            "name"_a)
        .def("__len__", [](const TypeMap& map) { return map.Owner->Catalogue().size(); })
        .def("__iter__", [](const TypeMap& map) { return py::iter(NamesOf(map)); })
        .def("keys", &NamesOf, "The names of the types.")
        .def("values", &TypesOf, "The types, as NodeType objects.")
        .def(
            "items",
            [](const TypeMap& map) {
                py::list pairs;
                for (const py::handle view : TypesOf(map))
                    pairs.append(py::make_tuple(view.attr("name"), view));
                return py::tuple(pairs);
            },
            "The types as pairs of name and NodeType.")
        .def("__repr__", [](const TypeMap& map) {
            return py::str("<mox.Types: {} types>").format(map.Owner->Catalogue().size());
        });
}

std::string NewNode(const Library& library, const std::string& type,
                    const std::optional<std::string>& id)
{
    const auto node = library.Plugins().CreateNode(type);
    if (!node)
        throw Host::HostError({}, UnknownType(library, type));
    return Host::FormatNodeFragment(node, id.value_or(node.Name()));
}

void BindLibraryClass(py::module_& module)
{
    py::class_<Library, LibraryHandle> type(
        module, "Library", py::is_final(),
        "A set of plug-ins with their node types, and an environment.\n\nThe folders in plugins "
        "and nodes are searched for plug-ins and node files before the default folders, which are "
        "those in MOX_PLUGIN_PATH and MOX_NODE_PATH and those installed with mox. The folder "
        "environment replaces the environment that is installed with mox. Raises Error if one of "
        "the folders cannot be used. Several threads may use one Library at the same time.");
    DefineNew(
        type,
        [](const py::handle&, const Paths& plugins, const Paths& nodes,
           const std::optional<std::filesystem::path>& environment) {
            return std::make_shared<Library>(plugins, nodes, environment.value_or(""));
        },
        py::kw_only(), "plugins"_a = py::tuple(), "nodes"_a = py::tuple(),
        "environment"_a = py::none());
    type.def_property_readonly(
            "types", [](const Library& library) { return TypeMap{library.shared_from_this()}; },
            "A mapping from names to node types.")
        .def(
            "catalogue",
            [](const Library& library) {
                return ToPython(Host::CatalogueToJson(library.Catalogue(), library.NodeFiles()));
            },
            "Returns the node types as a list of dictionaries, in the form that mox catalogue "
            "--json prints.")
        .def("new_node", &NewNode, "type"_a, "id"_a = py::none(), WithoutLock(),
             "Returns the XML element of a new node with its default properties, as mox new prints "
             "it.\n\nRaises Error if the type does not exist.")
        .def(
            "find",
            [](const Library&, const Paths& files) {
                Paths found;
                for (const Host::MaterialFile& material : Host::FindMaterials(files, 1))
                    found.emplace_back(material.Document);
                return found;
            },
            "files"_a, WithoutLock(),
            "Returns the material files that files lists. A folder in it stands for all materials "
            "in the folder and its subfolders, in .xml and .mtlx files.\n\nRaises Error if a "
            "folder "
            "cannot be read or contains no material.")
        .def(
            "check",
            [](const Library& library, const Paths& files, std::size_t threads) {
                return library.Check(files, threads).Problems();
            },
            "files"_a = py::tuple(), py::kw_only(), "threads"_a = 0, WithoutLock(),
            "Returns all problems that mox check reports for the files and folders, in order. The "
            "list also contains the problems of the node files and of the environment if the "
            "Library was created with folders for them.\n\nthreads is the number of threads; 0 "
            "means one per processor. Raises Error if a folder cannot be read or contains no "
            "material.")
        .def("__repr__", [](const Library& library) {
            return py::str("<mox.Library: {} plug-ins>").format(library.Plugins().Plugins().size());
        });
}

} // namespace

void BindLibrary(py::module_& module)
{
    BindTypes(module);
    BindLibraryClass(module);
}

} // namespace Mox::Python
