#include "Bindings.h"
#include "Convert.h"
#include "Edit.h"
#include "Views.h"

#include <pybind11/stl.h>

namespace Mox::Python {

using py::literals::operator""_a;

void BindEdit(py::module_& module)
{
    py::class_<Edit, std::shared_ptr<Edit>>(
        module, "Edit", py::is_final(),
        "A change under construction. The end of the with block applies the change to the material "
        "as a single undo step. If a step is invalid or the block raises an exception, the "
        "material does not change. Arguments identify a node by its id or by a Node object.")
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
            "Adds a node.\n\nBy default, the id is derived from the type. values contains the "
            "properties that differ from their defaults. before is the node that follows the new "
            "node in the document. Returns the new node, whose ports can be connected immediately. "
            "If no plug-in offers the type, the node is a placeholder, and Material.problems "
            "contains a warning.")
        .def(
            "remove", [](Edit& edit, const py::object& node) { edit.Remove(ToId(node)); }, "node"_a,
            "Removes a node and its edges, and clears all references to the node.")
        .def(
            "rename",
            [](Edit& edit, const py::object& node, const std::string& id) {
                return edit.Rename(ToId(node), id);
            },
            "node"_a, "id"_a,
            "Changes the id of a node, and updates its edges and all references to it. Returns the "
            "node with its new id.")
        .def("connect", &Edit::Connect, "tail"_a, "head"_a, py::kw_only(), "replace"_a = false,
             "Adds an edge from an output to an input.\n\nIf the input already has an edge, "
             "replace=True removes that edge first. Otherwise the change is refused.")
        .def("disconnect", &Edit::Disconnect, "tail"_a, "head"_a, "Removes an edge.")
        .def(
            "set",
            [](Edit& edit, const py::object& node, const py::dict& values) {
                edit.Set(ToId(node), ToGivenValues(values));
            },
            "node"_a, "values"_a,
            "Sets properties of a node.\n\nvalues maps names of properties to numbers, strings or "
            "bools. A colour is a sequence of three numbers. A reference is a node or an id, or "
            "None for no node.")
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
            "Replaces the values that the document contains for a binding.\n\nvalues maps names of "
            "attributes, such as \"default\", to their values.")
        .def("remove_binding", &Edit::RemoveBinding, "stream"_a, "name"_a,
             "Removes the values that the document contains for a binding.")
        .def_property_readonly("change", &Edit::Change,
                               "A Change with the steps that have been added so far.")
        .def("__repr__", [](const Edit& edit) {
            return edit.IsOpen() ? "<mox.Edit, open>" : "<mox.Edit, ended>";
        });
}

} // namespace Mox::Python
