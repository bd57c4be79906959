#include "Bindings.h"
#include "Convert.h"
#include "Library.h"
#include "Painting.h"
#include "Programs.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/document/Catalogue.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Picture.h"
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
                                   "A port that a new node of a type has.");
    port.def_property_readonly(
            "name", [](const CataloguePort& p) { return ToPython(p.Name); }, "Cg name of the port.")
        .def_property_readonly(
            "label", [](const CataloguePort& p) { return ToPython(p.Label); },
            "Text that editors show.")
        .def_readonly("components", &CataloguePort::Components,
                      "Number of components if the type fixes it, or None.")
        .def_property_readonly(
            "precision", [](const CataloguePort& p) { return TextOrNone(p.Precision); },
            "\"float\", \"half\" and so on if the type fixes it, or None.");
    MakeRecord(port, {"name", "label", "components", "precision"});

    py::class_<TypeProperty> property(module, "TypeProperty", py::is_final(),
                                      "A property that nodes of a type have.");
    property
        .def_property_readonly(
            "name", [](const TypeProperty& p) { return ToPython(p.Property->Name); },
            "Name of the property.")
        .def_property_readonly(
            "kind", [](const TypeProperty& p) { return Host::FormatKind(p.Property->Kind); },
            "\"bool\", \"integer\", \"float\", \"string\", \"colour\", \"enum\" or \"node\".")
        .def_property_readonly(
            "default", [](const TypeProperty& p) { return ToPython(ReadValue(*p.Property)); },
            "Value of a new node: a bool, a number, a string, three numbers of a colour, or None.")
        .def_property_readonly(
            "help", [](const TypeProperty& p) { return ToPython(p.Property->Help); },
            "What the property does.")
        .def_property_readonly(
            "choices",
            [](const TypeProperty& p) { return py::tuple(py::cast(p.Property->Choices)); },
            "The values of an enum, or the types that a node property accepts.")
        .def_property_readonly(
            "range", [](const TypeProperty& p) { return p.Range; },
            "Lowest and highest sensible value, or None.")
        .def_property_readonly(
            "visible", [](const TypeProperty& p) { return p.Property->Visible; },
            "Whether editors show it.")
        .def_property_readonly(
            "editable", [](const TypeProperty& p) { return p.Property->Editable; },
            "Whether people may change it.");
    MakeRecord(property,
               {"name", "kind", "default", "help", "choices", "range", "visible", "editable"});
}

void BindTypes(py::module_& module)
{
    BindTypeParts(module);
    py::class_<TypeView> type(module, "NodeType", py::is_final(),
                              "A type of nodes that a plug-in offers.");
    const auto text = [&type](const char* name, auto member, const char* help) {
        type.def_property_readonly(
            name, [member](const TypeView& t) { return ToPython(member(*t.Entry)); }, help);
    };
    text(
        "name", [](const auto& e) -> const std::string& { return e.Type.TypeName; },
        "Name of the type, as documents have it.");
    text(
        "label", [](const auto& e) -> const std::string& { return e.Type.Label; },
        "Text that editors show.");
    text(
        "library", [](const auto& e) -> const std::string& { return e.Type.Library; },
        "Name of the library that supplies the type.");
    type.def_property_readonly(
            "plugin", [](const TypeView& t) { return t.Entry->Plugin; }, "File of the plug-in.")
        .def_property_readonly(
            "listed", [](const TypeView& t) { return t.Entry->Type.Listed; },
            "Whether editors offer the type.")
        .def_property_readonly(
            "version", [](const TypeView& t) { return t.Entry->Version; },
            "Version of its properties.")
        .def_property_readonly(
            "help",
            [](const TypeView& t) {
                const auto file = t.File();
                return ToPython(file ? file->Help : std::string());
            },
            "What nodes of the type do; empty if nothing describes it.")
        .def_property_readonly(
            "inputs", [](const TypeView& t) { return py::tuple(py::cast(t.Entry->Inputs)); },
            "Input ports of a new node, as TypePort.")
        .def_property_readonly(
            "outputs", [](const TypeView& t) { return py::tuple(py::cast(t.Entry->Outputs)); },
            "Output ports of a new node, as TypePort.")
        .def_property_readonly(
            "properties", [](const TypeView& t) { return py::tuple(py::cast(PropertiesOf(t))); },
            "Its properties in order, as TypeProperty.")
        .def_property_readonly(
            "icon",
            [](const TypeView& t) -> std::optional<Image> {
                if (t.Entry->Type.Icon.empty())
                    return std::nullopt;
                return Image{Host::DecodeXpm(t.Entry->Type.Icon)};
            },
            "The icon, or None.")
        .def("__repr__", [](const TypeView& t) {
            return py::str("<mox.NodeType {!r}>").format(ToPython(t.Entry->Type.TypeName));
        });

    py::class_<TypeMap>(module, "Types", py::is_final(),
                        "The node types of a library by name, in catalogue order.")
        .def(
            "__getitem__",
            [](const TypeMap& map, const std::string& name) {
                if (const auto* entry = map.Owner->FindType(name))
                    return TypeView{map.Owner, entry};
                throw py::key_error(name + ": no plug-in offers this type" +
                                    map.Owner->Plugins().SuggestType(name));
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
        .def("keys", &NamesOf, "The names.")
        .def("values", &TypesOf, "The types.")
        .def(
            "items",
            [](const TypeMap& map) {
                py::list pairs;
                for (const py::handle type : TypesOf(map))
                    pairs.append(py::make_tuple(type.attr("name"), type));
                return py::tuple(pairs);
            },
            "Pairs of name and type.")
        .def("__repr__", [](const TypeMap& map) {
            return py::str("<mox.Types: {} types>").format(map.Owner->Catalogue().size());
        });
}

std::string NewNode(const Library& library, const std::string& type,
                    const std::optional<std::string>& id)
{
    const auto node = library.Plugins().CreateNode(type);
    if (!node)
        throw Host::UnknownType(type);
    return Host::FormatNodeFragment(node, id.value_or(node.Name()));
}

void BindLibraryClass(py::module_& module)
{
    py::class_<Library, LibraryHandle> type(
        module, "Library", py::is_final(),
        "The plug-ins with their node types, and the environment.\n\n"
        "plugins and nodes are folders that are searched for plug-ins and node files before the "
        "usual ones, which are those of MOX_PLUGIN_PATH and MOX_NODE_PATH and those that belong "
        "to the program mox. environment is a folder that replaces the environment of the "
        "program. Raises Error if one of them cannot be used. Any thread may use the object.");
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
            "The node types by name.")
        .def(
            "catalogue",
            [](const Library& library) {
                return ToPython(Host::CatalogueToJson(library.Catalogue(), library.NodeFiles()));
            },
            "The types as mox catalogue --json prints them: a list of dictionaries.")
        .def("new_node", &NewNode, "type"_a, "id"_a = py::none(), WithoutLock(),
             "A node of a type with all its defaults as it is written in a document, as mox new "
             "prints it.\n\nRaises Error if there is no such type.")
        .def(
            "find",
            [](const Library&, const Paths& files) {
                Paths found;
                for (const Host::MaterialFile& material : Host::FindMaterials(files, 1))
                    found.emplace_back(material.Document);
                return found;
            },
            "files"_a, WithoutLock(),
            "The materials of files and folders. A folder stands for every material in it and "
            "below, in .xml and .mtlx files.\n\nRaises Error if a folder cannot be read or has no "
            "material.")
        .def(
            "check",
            [](const Library& library, const Paths& files, std::size_t threads) {
                return library.Check(files, threads).Problems();
            },
            "files"_a = py::tuple(), py::kw_only(), "threads"_a = 0, WithoutLock(),
            "All problems of files and folders, as mox check finds them, in order. Also those of "
            "the node files and the environment for which the library was given folders.\n\n"
            "threads is the number of threads, 0 for as many as there are processors. Raises "
            "Error if a folder cannot be read or has no material.")
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
