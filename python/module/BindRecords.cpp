#include "Bindings.h"
#include "Convert.h"
#include "mox/document/MaterialDiff.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphChange.h"
#include "mox/host/Excerpt.h"
#include "mox/host/Problem.h"
#include "mox/json/ChangeJson.h"
#include "mox/json/ProblemReport.h"
#include "mox/json/RecordJson.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace Mox::Python {

namespace {

using py::literals::operator""_a;

using WithoutLock = py::call_guard<py::gil_scoped_release>;

Host::Problem MakeProblem(const py::handle&, const std::string& rule, const std::string& message,
                          const std::string& severity,
                          const std::optional<std::filesystem::path>& file, std::optional<int> line,
                          std::optional<int> column, const std::optional<std::string>& node,
                          const std::optional<std::string>& port)
{
    if (severity != "error" && severity != "warning")
        throw py::value_error("the severity of a problem must be \"error\" or \"warning\"");
    return {severity == "error" ? Host::Severity::Error : Host::Severity::Warning, rule,
            Host::Place(file ? file->string() : "", line.value_or(0), node.value_or(""),
                        port.value_or(""), column.value_or(0)),
            message};
}

void BindProblem(py::module_& module)
{
    using Host::Problem;
    py::class_<Problem> problem(module, "Problem", py::is_final(),
                                "A problem of a material, as mox check reports it. Custom rules "
                                "can create problems of their own.");
    problem
        .def_property_readonly(
            "severity", [](const Problem& p) { return Host::GetSeverityName(p.Level); },
            "The severity: \"error\" if the material cannot be exported, otherwise \"warning\".")
        .def_property_readonly(
            "rule", [](const Problem& p) { return ToPython(p.Rule); },
            "The rule that the material breaks, such as \"open-input\". docs/checks.md lists all "
            "rules.")
        .def_property_readonly(
            "file", [](const Problem& p) { return TextOrNone(p.Where.File); },
            "The name of the file, or None if it is not known.")
        .def_property_readonly(
            "line", [](const Problem& p) { return NumberOrNone(p.Where.Line); },
            "The line in the file, counted from 1, or None if it is not known.")
        .def_property_readonly(
            "column", [](const Problem& p) { return NumberOrNone(p.Where.Column); },
            "The column in the line, counted from 1, or None if it is not known.")
        .def_property_readonly(
            "node", [](const Problem& p) { return TextOrNone(p.Where.Node); },
            "The id of the node, or None if the problem does not concern a node.")
        .def_property_readonly(
            "port", [](const Problem& p) { return TextOrNone(p.Where.Port); },
            "The Cg name of the port, or None if the problem does not concern a port.")
        .def_property_readonly(
            "message", [](const Problem& p) { return ToPython(p.Message); },
            "The message, without the location.")
        .def(
            "__str__", [](const Problem& p) { return ToPython(p.Format()); },
            "Returns the location and the message on one line.");
    DefineNew(problem, &MakeProblem, "rule"_a, "message"_a, py::kw_only(), "severity"_a = "warning",
              "file"_a = py::none(), "line"_a = py::none(), "column"_a = py::none(),
              "node"_a = py::none(), "port"_a = py::none());
    MakeRecord(problem, {"severity", "rule", "file", "line", "column", "node", "port", "message"});
}

void BindChange(py::module_& module)
{
    using Host::GraphChange;
    py::class_<GraphChange>(module, "Change", py::is_final(),
                            "A change to a material: a list of steps that are applied completely "
                            "or not at all. A change can be stored, and it can be applied to any "
                            "material for which its steps are valid.")
        .def_static(
            "from_json",
            [](const std::string& text, const std::string& source) {
                return Host::ParseChangeJson(text, source);
            },
            "text"_a, py::kw_only(), "source"_a = "change", WithoutLock(),
            "Creates a change from the JSON that docs/json.md describes.\n\nsource is the name "
            "that messages use for the JSON. Raises Error with the line, or with the JSON pointer "
            "of the invalid value.")
        .def(
            "to_json", [](const GraphChange& change) { return Host::FormatChangeAsJson(change); },
            "Returns the change as JSON.")
        .def_property_readonly(
            "summary", [](const GraphChange& change) { return ToPython(change.Summary()); },
            "A description of the first step and the number of further steps, on one line.")
        .def(
            "__len__", [](const GraphChange& change) { return change.Steps.size(); },
            "Returns the number of steps.")
        .def(
            "__str__", [](const GraphChange& change) { return ToPython(change.Format()); },
            "Returns a description with one line for each step.")
        .def("__repr__", [](const GraphChange& change) {
            return py::str("<mox.Change: {}>").format(ToPython(change.Summary()));
        });
}

/// The values of a binding; nothing for a binding with a string default.
std::optional<std::vector<float>> ValuesOf(const Host::PluginBinding& binding)
{
    if (binding.Texture() || binding.Stream() != Materials::StreamType::Float)
        return std::nullopt;
    std::vector<float> values(binding.GetCount());
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = binding.GetDefault(static_cast<std::uint32_t>(i));
    return values;
}

void BindBinding(py::module_& module)
{
    using Host::PluginBinding;
    py::class_<PluginBinding>(module, "Binding", py::is_final(),
                              "A run-time parameter of a material: a constant, a texture or a "
                              "stream of the mesh, with its initial value.")
        .def_property_readonly(
            "name", [](const PluginBinding& b) { return ToPython(b.Tag()); },
            "The name of the parameter.")
        .def_property_readonly(
            "stream", [](const PluginBinding& b) { return ToPython(b.StreamName()); },
            "The kind of data, such as \"float\", \"texture\" or \"uv\".")
        .def_property_readonly(
            "group", [](const PluginBinding& b) { return ToPython(b.Group()); },
            "The group in which editors show the parameter.")
        .def_property_readonly(
            "values",
            [](const PluginBinding& b) -> py::object {
                const auto values = ValuesOf(b);
                if (!values)
                    return py::none();
                py::tuple numbers(values->size());
                for (std::size_t i = 0; i < values->size(); ++i)
                    numbers[i] = ToPython(Value((*values)[i]));
                return numbers;
            },
            "The numbers of a constant, or None for a texture or a stream.")
        .def_property_readonly(
            "file",
            [](const PluginBinding& b) { return TextOrNone(b.Texture() ? b.Texture()->File : ""); },
            "The file of a texture, relative to the folder of the material, or None if there is no "
            "file.")
        .def_property_readonly(
            "is_srgb", [](const PluginBinding& b) { return b.Texture() && b.Texture()->IsSrgb; },
            "Whether the parameter is a texture with sRGB colours.")
        .def_property_readonly(
            "usage",
            [](const PluginBinding& b) {
                return TextOrNone(b.Texture() ? b.Texture()->UsageHint : "");
            },
            "The purpose of a texture, such as \"Normal\", or None if it is not specified.")
        .def("__repr__", [](const PluginBinding& b) {
            return py::str("<mox.Binding {!r} ({})>")
                .format(ToPython(b.Tag()), ToPython(b.StreamName()));
        });
    module.def(
        "read_bindings", &Host::ReadBindings, "file"_a, WithoutLock(),
        "Reads a bindings document, as mox bindings --read does, and returns a list of Binding "
        "objects.\n\nRaises Error with the file and the line if the document is invalid.");
}

/// Converts an edge to a tuple (tail, tail port, head, head port), or None.
py::object ToTuple(const std::optional<Host::DocumentEdge>& edge)
{
    if (!edge)
        return py::none();
    return py::make_tuple(ToPython(edge->Tail), ToPython(edge->TailPort), ToPython(edge->Head),
                          ToPython(edge->HeadPort));
}

void BindDifference(py::module_& module)
{
    using Host::MaterialDifference;
    py::class_<MaterialDifference> difference(module, "Difference", py::is_final(),
                                              "A difference between two materials.");
    difference
        .def_property_readonly(
            "kind",
            [](const MaterialDifference& d) {
                constexpr const char* words[] = {"added", "removed", "changed"};
                return words[static_cast<std::size_t>(d.Kind)];
            },
            "The kind of difference: \"added\", \"removed\" or \"changed\".")
        .def_property_readonly(
            "node", [](const MaterialDifference& d) { return TextOrNone(d.Node); },
            "The id of the node that differs, or None if the difference does not concern a node. "
            "For a removed node, it is the id in the first material.")
        .def_property_readonly(
            "property", [](const MaterialDifference& d) { return TextOrNone(d.Property); },
            "The name of the property that differs, or None if the difference does not concern a "
            "property.")
        .def_property_readonly(
            "edge_before", [](const MaterialDifference& d) { return ToTuple(d.EdgeBefore); },
            "An edge that only the first material has, as a tuple of tail, tail port, head and "
            "head port, or None.")
        .def_property_readonly(
            "edge_after", [](const MaterialDifference& d) { return ToTuple(d.EdgeAfter); },
            "An edge that only the second material has, as a tuple like edge_before, or None.")
        .def_property_readonly(
            "text", [](const MaterialDifference& d) { return ToPython(d.Text); },
            "A description of the difference.")
        .def("__str__",
             [](const MaterialDifference& d) { return ToPython(Host::MessageLine(d.Text)); });
    MakeRecord(difference, {"kind", "node", "property", "edge_before", "edge_after", "text"});
}

void BindReports(py::module_& module)
{
    module.def(
        "format_problems",
        [](const std::vector<Host::Problem>& problems, const std::string& format) {
            if (format == "text")
                return ToPython(Host::FormatProblemsAsText(problems));
            if (format == "json")
                return ToPython(Host::FormatProblemsAsJson(problems));
            if (format == "sarif")
                return ToPython(Host::FormatProblemsAsSarif(problems, MOX_VERSION));
            throw py::value_error("the format must be \"text\", \"json\" or \"sarif\"");
        },
        "problems"_a, "format"_a = "text",
        "Returns problems as a string in the form that mox check prints.\n\nformat is \"text\", "
        "\"json\" or \"sarif\".");
    module.def(
        "format_differences",
        [](const std::vector<Host::MaterialDifference>& differences, const std::string& format) {
            if (format == "json")
                return ToPython(Host::FormatDifferencesAsJson(differences));
            if (format != "text")
                throw py::value_error("the format must be \"text\" or \"json\"");
            std::string text;
            for (const Host::MaterialDifference& difference : differences)
                text += Host::MessageLine(difference.Text) + "\n";
            return ToPython(text);
        },
        "differences"_a, "format"_a = "text",
        "Returns differences as a string in the form that mox diff prints.\n\nformat is \"text\" "
        "or \"json\".");
    module.def(
        "format_bindings",
        [](const std::vector<Host::PluginBinding>& bindings, const std::string& format) {
            if (format == "xml")
                return ToPython(Host::FormatBindings(bindings));
            if (format == "json")
                return ToPython(Host::FormatBindingsAsJson(bindings));
            throw py::value_error("the format must be \"xml\" or \"json\"");
        },
        "bindings"_a, "format"_a = "xml",
        "Returns bindings as a document in the form that mox bindings prints.\n\nformat is \"xml\" "
        "or \"json\".");
}

} // namespace

void BindRecords(py::module_& module)
{
    BindProblem(module);
    BindChange(module);
    BindDifference(module);
    BindBinding(module);
    BindReports(module);
}

} // namespace Mox::Python
