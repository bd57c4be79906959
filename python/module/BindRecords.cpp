#include "Bindings.h"
#include "Convert.h"
#include "mox/document/MaterialDiff.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphChange.h"
#include "mox/host/Excerpt.h"
#include "mox/host/Problem.h"
#include "mox/json/ChangeJson.h"
#include "mox/json/ProblemReport.h"

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
        throw py::value_error("the severity of a problem is \"error\" or \"warning\"");
    return {severity == "error" ? Host::Severity::Error : Host::Severity::Warning, rule,
            Host::Place(file ? file->string() : "", line.value_or(0), node.value_or(""),
                        port.value_or(""), column.value_or(0)),
            message};
}

void BindProblem(py::module_& module)
{
    using Host::Problem;
    py::class_<Problem> problem(module, "Problem", py::is_final(),
                                "One thing that is wrong with a material, as mox check reports it. "
                                "Rules of a studio make their own.");
    problem
        .def_property_readonly(
            "severity", [](const Problem& p) { return Host::GetSeverityName(p.Level); },
            "\"error\" if the material cannot be exported, else \"warning\".")
        .def_property_readonly(
            "rule", [](const Problem& p) { return ToPython(p.Rule); },
            "Word for the kind of problem, such as \"open-input\"; docs/checks.md lists them.")
        .def_property_readonly(
            "file", [](const Problem& p) { return TextOrNone(p.Where.File); },
            "Name of the file, or None.")
        .def_property_readonly(
            "line", [](const Problem& p) { return NumberOrNone(p.Where.Line); },
            "Line in the file, from 1, or None.")
        .def_property_readonly(
            "column", [](const Problem& p) { return NumberOrNone(p.Where.Column); },
            "Column in the line, from 1, or None.")
        .def_property_readonly(
            "node", [](const Problem& p) { return TextOrNone(p.Where.Node); },
            "Id of the node, or None.")
        .def_property_readonly(
            "port", [](const Problem& p) { return TextOrNone(p.Where.Port); },
            "Cg name of the port, or None.")
        .def_property_readonly(
            "message", [](const Problem& p) { return ToPython(p.Message); },
            "What is wrong, without the place.")
        .def(
            "__str__", [](const Problem& p) { return ToPython(p.Format()); },
            "Place and message in one line.");
    DefineNew(problem, &MakeProblem, "rule"_a, "message"_a, py::kw_only(), "severity"_a = "warning",
              "file"_a = py::none(), "line"_a = py::none(), "column"_a = py::none(),
              "node"_a = py::none(), "port"_a = py::none());
    MakeRecord(problem, {"severity", "rule", "file", "line", "column", "node", "port", "message"});
}

void BindChange(py::module_& module)
{
    using Host::GraphChange;
    py::class_<GraphChange>(module, "Change", py::is_final(),
                            "A change of a material: steps that are made together or not at all. "
                            "It can be stored, and applied to any material in which it makes "
                            "sense.")
        .def_static(
            "from_json",
            [](const std::string& text, const std::string& source) {
                return Host::ParseChangeJson(text, source);
            },
            "text"_a, py::kw_only(), "source"_a = "change", WithoutLock(),
            "Reads the JSON form that docs/json.md describes.\n\n"
            "source is the name of the text in messages. Raises Error with the line, or with the "
            "JSON pointer of the value that is wrong.")
        .def(
            "to_json", [](const GraphChange& change) { return Host::FormatChangeAsJson(change); },
            "The change as JSON in lines.")
        .def_property_readonly(
            "summary", [](const GraphChange& change) { return ToPython(change.Summary()); },
            "The first step, and how many follow, in one line.")
        .def(
            "__len__", [](const GraphChange& change) { return change.Steps.size(); },
            "Number of steps.")
        .def(
            "__str__", [](const GraphChange& change) { return ToPython(change.Format()); },
            "One line for each step.")
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
                              "stream of the mesh, with the value that it has at first.")
        .def_property_readonly(
            "name", [](const PluginBinding& b) { return ToPython(b.Tag()); },
            "Name of the parameter.")
        .def_property_readonly(
            "stream", [](const PluginBinding& b) { return ToPython(b.StreamName()); },
            "What it carries: \"float\", \"texture\", \"uv\" and so on.")
        .def_property_readonly(
            "group", [](const PluginBinding& b) { return ToPython(b.Group()); },
            "Group in which editors show it.")
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
            "The numbers of a constant; None for textures and streams.")
        .def_property_readonly(
            "file",
            [](const PluginBinding& b) { return TextOrNone(b.Texture() ? b.Texture()->File : ""); },
            "The file of a texture, relative to the folder of the material, or None.")
        .def_property_readonly(
            "is_srgb", [](const PluginBinding& b) { return b.Texture() && b.Texture()->IsSrgb; },
            "Whether it is a texture that holds sRGB colours.")
        .def_property_readonly(
            "usage",
            [](const PluginBinding& b) {
                return TextOrNone(b.Texture() ? b.Texture()->UsageHint : "");
            },
            "What a texture is for, such as \"Normal\", or None.")
        .def("__repr__", [](const PluginBinding& b) {
            return py::str("<mox.Binding {!r} ({})>")
                .format(ToPython(b.Tag()), ToPython(b.StreamName()));
        });
    module.def("read_bindings", &Host::ReadBindings, "file"_a, WithoutLock(),
               "Reads a bindings document, as mox bindings --read does.\n\n"
               "Raises Error with file and line if it is not one.");
    module.def("format_bindings", &Host::FormatBindings, "bindings"_a,
               "Bindings as an XML document.");
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
                                              "One thing in which two materials differ.");
    difference
        .def_property_readonly(
            "kind",
            [](const MaterialDifference& d) {
                constexpr const char* words[] = {"added", "removed", "changed"};
                return words[static_cast<std::size_t>(d.Kind)];
            },
            "\"added\", \"removed\" or \"changed\".")
        .def_property_readonly(
            "node", [](const MaterialDifference& d) { return TextOrNone(d.Node); },
            "Id of the node that it belongs to, in the first material if it is removed, or None.")
        .def_property_readonly(
            "property", [](const MaterialDifference& d) { return TextOrNone(d.Property); },
            "Name of the node's property, or None if it is not about one.")
        .def_property_readonly(
            "edge_before", [](const MaterialDifference& d) { return ToTuple(d.EdgeBefore); },
            "An edge that only the first material has: tail, tail port, head and head port; or "
            "None.")
        .def_property_readonly(
            "edge_after", [](const MaterialDifference& d) { return ToTuple(d.EdgeAfter); },
            "An edge that only the second material has, or None.")
        .def_property_readonly(
            "text", [](const MaterialDifference& d) { return ToPython(d.Text); },
            "All of it as a sentence.")
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
            throw py::value_error("the format is \"text\", \"json\" or \"sarif\"");
        },
        "problems"_a, "format"_a = "text",
        "Problems as mox check prints them: \"text\", \"json\" or \"sarif\".");
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
