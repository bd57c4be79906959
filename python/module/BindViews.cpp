#include "Bindings.h"
#include "Convert.h"
#include "Material.h"
#include "Views.h"
#include "mox/Text.h"
#include "mox/host/Excerpt.h"
#include "mox/host/NearestName.h"

#include <functional>
#include <pybind11/operators.h>
#include <pybind11/stl.h>

namespace Mox::Python {

using Materials::Compose;
using py::literals::operator""_a;

namespace {

std::size_t HashOf(const std::shared_ptr<Material>& material, const std::string& text)
{
    return std::hash<const void*>()(material.get()) ^ std::hash<std::string>()(text);
}

void BindPort(py::module_& module)
{
    py::class_<PortView> port(module, "Port", py::is_final(),
                              "A port of a node. Each use looks up the port by its name and raises "
                              "StaleError if the port no longer exists.");
    const auto state = [&port](const char* name, auto member, const char* help) {
        port.def_property_readonly(
            name, [member](const PortView& p) { return py::cast(p.State().*member); }, help);
    };
    port.def_property_readonly(
            "node", [](const PortView& p) { return p.Node; }, "The node that the port belongs to.")
        .def_property_readonly(
            "name", [](const PortView& p) { return ToPython(p.Name); }, "The Cg name of the port.")
        .def_property_readonly(
            "source", [](const PortView& p) { return p.Source(); },
            "The output that is connected to this input, or None.")
        .def_property_readonly(
            "readers", [](const PortView& p) { return p.Readers(); },
            "The inputs that are connected to this output, in no particular order.");
    state("label", &PortState::Label, "The label that editors show.");
    state("is_input", &PortState::IsInput, "Whether the port is an input.");
    state("components", &PortState::Components,
          "The number of components, or None if it is not known.");
    state("precision", &PortState::Precision,
          "The precision, such as \"float\" or \"half\", or None if it is not known.");
    state("connected", &PortState::IsConnected, "Whether the port has an edge.");
    state("conflict", &PortState::HasConflict,
          "Whether there is a conflict between component counts at the port.");
    port.def(py::self == py::self)
        .def("__hash__",
             [](const PortView& p) { return HashOf(p.Node.Owner, p.Node.Id + "." + p.Name); })
        .def("__repr__", [](const PortView& p) {
            return py::str("<mox.Port {!r} of {!r}>").format(ToPython(p.Name), ToPython(p.Node.Id));
        });

    py::class_<EdgeView> edge(module, "Edge", py::is_final(), "An edge of a material.");
    edge.def_readonly("tail", &EdgeView::Tail, "The output at which the edge starts.")
        .def_readonly("head", &EdgeView::Head, "The input at which the edge ends.");
    MakeRecord(edge, {"tail", "head"});
}

void BindNode(py::module_& module)
{
    py::class_<NodeView>(
        module, "Node", py::is_final(),
        "A node of a material. Each use looks up the node by its id and raises StaleError if the "
        "node no longer exists. node[\"out_colour\"] returns the port with this name.")
        .def_property_readonly(
            "id", [](const NodeView& n) { return ToPython(n.Id); },
            "The id of the node in the document.")
        .def_property_readonly(
            "material", [](const NodeView& n) { return n.Owner; },
            "The material that the node belongs to.")
        .def_property_readonly(
            "type", [](const NodeView& n) { return ToPython(n.Type()); },
            "The name of the node type.")
        .def_property_readonly(
            "title", [](const NodeView& n) { return ToPython(n.Title()); },
            "The title that editors show.")
        .def_property_readonly("line", &NodeView::Line,
                               "The line of the node in the file, counted from 1. It is 0 if the "
                               "node was added after the file was read.")
        .def_property_readonly(
            "is_placeholder", &NodeView::IsPlaceholder,
            "Whether the node is a placeholder because no plug-in provides its type.")
        .def_property_readonly(
            "values", [](const NodeView& n) { return ToDict(n.Values()); },
            "The values of the properties, as a new dictionary with the names as keys. A value is "
            "a bool, an int, a float or a str. A colour is a tuple of three numbers, and a "
            "reference is the id of a node or None.")
        .def_property_readonly(
            "position", &NodeView::Position,
            "The position of the upper left corner in an editor: x and y in pixels.")
        .def_property_readonly(
            "inputs", [](const NodeView& n) { return PortsOf(n, true); }, "The input ports.")
        .def_property_readonly(
            "outputs", [](const NodeView& n) { return PortsOf(n, false); }, "The output ports.")
        .def(
            "__getitem__",
            [](const NodeView& n, const std::string& name) {
                if (!HasPort(n, name)) {
                    throw py::key_error(Compose("node ", Host::Excerpt(n.Id), " has no port ",
                                                Host::Excerpt(name),
                                                Host::SuggestName(name, PortNamesOf(n))));
                }
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

} // namespace

void BindViews(py::module_& module)
{
    BindNode(module);
    BindPort(module);
}

} // namespace Mox::Python
