#include "Bindings.h"
#include "Convert.h"
#include "Programs.h"
#include "Targets.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace Mox::Python {

namespace {

using py::literals::operator""_a;

using WithoutLock = py::call_guard<py::gil_scoped_release>;

using ProgramHandle = std::shared_ptr<const Program>;

/// One stage of a program in one target language.
struct StageView
{
    ProgramHandle Owner;
    std::string Target;
    const Program::File* File;
};

/// Both stages in one target language.
struct TargetView
{
    ProgramHandle Owner;
    std::string Target;

    StageView Stage(const char* stage) const
    {
        return {Owner, Target, &Owner->Find(ExtensionOf(Target, stage))};
    }
};

py::tuple LineNodes(const StageView& stage)
{
    const std::vector<std::string>& ids = stage.File->LineNodes;
    py::tuple nodes(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i)
        nodes[i] = ids[i].empty() ? py::object(py::none()) : ToPython(ids[i]);
    return nodes;
}

py::object ReadReflection(const Program& program)
{
    for (const Program::File& file : program.Files) {
        if (file.Extension == ".reflection.json")
            return ToPython(Host::Json::parse(file.Bytes));
    }
    return py::dict();
}

void BindStages(py::module_& module)
{
    py::class_<StageView>(module, "Stage", py::is_final(),
                          "The program of one stage for one target.")
        .def_property_readonly(
            "text",
            [](const StageView& stage) {
                if (Tool::IsBinaryTarget(stage.Target))
                    throw py::type_error("a SPIR-V module has no text; use the attribute bytes");
                return ToPython(stage.File->Bytes);
            },
            "The source of the program. Raises TypeError for SPIR-V.")
        .def_property_readonly(
            "bytes", [](const StageView& stage) { return py::bytes(stage.File->Bytes); },
            "The source in UTF-8, or a SPIR-V module in the byte order of the machine.")
        .def_property_readonly("nodes", &LineNodes,
                               "The id of the node that each line of the source comes from, or "
                               "None for a line that comes from no node. It is empty for SPIR-V.")
        .def("__repr__", [](const StageView& stage) {
            return py::str("<mox.Stage in {}, {} bytes>")
                .format(stage.Target, stage.File->Bytes.size());
        });
    py::class_<TargetView>(module, "TargetProgram", py::is_final(),
                           "A vertex program and a fragment program for one target.")
        .def_property_readonly(
            "vertex", [](const TargetView& target) { return target.Stage("vertex"); },
            "The vertex program.")
        .def_property_readonly(
            "fragment", [](const TargetView& target) { return target.Stage("fragment"); },
            "The fragment program.")
        .def("__repr__", [](const TargetView& target) {
            return py::str("<mox.TargetProgram in {}>").format(target.Target);
        });
}

void BindProgram(py::module_& module)
{
    py::class_<Program, std::shared_ptr<Program>>(
        module, "Program", py::is_final(),
        "The programs of a material for one or more targets. If the material has an error, it has "
        "no programs, and looking up a program raises the first error.")
        .def_property_readonly(
            "problems",
            [](const Program& program) { return py::tuple(py::cast(program.Problems.Problems())); },
            "The problems of the material, as a tuple of Problem objects.")
        .def_property_readonly(
            "failed", [](const Program& program) { return program.Problems.HasErrors(); },
            "Whether the material has an error.")
        .def_property_readonly(
            "targets", [](const Program& program) { return py::tuple(py::cast(program.Targets)); },
            "The targets that were requested.")
        .def(
            "__getitem__",
            [](const std::shared_ptr<Program>& program, const std::string& target) {
                if (!program)
                    throw py::type_error("expected a Program");
                if (std::ranges::find(program->Targets, target) == program->Targets.end())
                    throw py::key_error("the program was not compiled for the target " + target);
                program->Find(ExtensionOf(target, "vertex"));
                return TargetView{program, target};
            },
            "target"_a)
        .def(
            "__contains__",
            [](const Program& program, const py::object& target) {
                return py::isinstance<py::str>(target) &&
                       std::ranges::find(program.Targets, target.cast<std::string>()) !=
                           program.Targets.end();
            },
            "target"_a)
        .def_property_readonly(
            "files",
            [](const Program& program) {
                py::dict files;
                for (const Program::File& file : program.Files)
                    files[ToPython(file.Extension)] = py::bytes(file.Bytes);
                return files;
            },
            "The contents of the files that mox export writes, as a dictionary from extensions, "
            "such as \".vertex.cg\", to bytes.")
        .def_property_readonly("reflection", &ReadReflection,
                               "The reflection of the programs as a dictionary, in the form that "
                               "docs/targets.md describes. It is empty if Cg was the only target.")
        .def("__repr__", [](const Program& program) {
            return py::str("<mox.Program in {}{}>")
                .format(py::str(", ").attr("join")(program.Targets),
                        program.Problems.HasErrors() ? ", failed" : "");
        });
}

void BindExport(py::module_& module)
{
    py::class_<Host::LeftOutput> left(
        module, "LeftOutput", py::is_final(),
        "An output of an earlier export whose material no longer exists.");
    left.def_property_readonly(
            "file", [](const Host::LeftOutput& output) { return output.File; },
            "The file of the output.")
        .def_property_readonly(
            "reason", [](const Host::LeftOutput& output) { return ToPython(output.Reason); },
            "The reason why the output belongs to no material.")
        .def_readonly("removed", &Host::LeftOutput::IsRemoved, "Whether the output was removed.");
    MakeRecord(left, {"file", "reason", "removed"});

    py::class_<ExportSummary> summary(module, "ExportSummary", py::is_final(),
                                      "The results of an export.");
    summary
        .def_readonly("exported", &ExportSummary::Exported,
                      "The number of materials that were exported.")
        .def_readonly("failed", &ExportSummary::Failed,
                      "The number of materials with errors, which were not exported.")
        .def_readonly("distinct", &ExportSummary::Distinct,
                      "The number of different programs among the exported materials.")
        .def_property_readonly(
            "problems", [](const ExportSummary& s) { return py::tuple(py::cast(s.Problems)); },
            "The problems of all materials, in order.")
        .def_property_readonly(
            "outputs", [](const ExportSummary& s) { return py::tuple(py::cast(s.Outputs)); },
            "All output files, including those that were already up to date.")
        .def_property_readonly(
            "left", [](const ExportSummary& s) { return py::tuple(py::cast(s.Left)); },
            "The outputs of earlier exports whose materials no longer exist.");
    MakeRecord(summary, {"exported", "failed", "distinct", "problems", "outputs", "left"});
}

} // namespace

void BindPrograms(py::module_& module)
{
    module.attr("targets") = py::tuple(py::cast(Tool::TargetWords()));
    BindStages(module);
    BindProgram(module);
    BindExport(module);
    auto library = module.attr("Library").cast<py::class_<Library, std::shared_ptr<Library>>>();
    library.def(
        "compile_many",
        [](const Library& self, const Paths& files, const std::vector<std::string>& targets,
           std::size_t threads, const std::string& precision, bool optimise, bool plain) {
            return CompileMany(self, files, {targets, precision, optimise, plain}, threads);
        },
        "files"_a, "targets"_a = py::make_tuple("cg"), py::kw_only(), "threads"_a = 0,
        "precision"_a = "full", "optimise"_a = false, "plain"_a = false, WithoutLock(),
        "Compiles several materials in parallel. Returns a list of Program objects in the order of "
        "files. If a material has an error, the attribute failed of its Program is "
        "True.\n\nthreads is the number of threads; 0 means one per processor.");
    library.def(
        "export",
        [](const Library& self, const Paths& files, const std::filesystem::path& output,
           const std::vector<std::string>& targets, std::size_t threads,
           const std::string& precision, bool optimise, bool plain, bool byContent,
           bool shaderGraph, bool prune, const std::optional<std::filesystem::path>& depfile,
           const std::string& depfileTarget) {
            return Export(self, files, output,
                          {{targets, precision, optimise, plain},
                           threads,
                           shaderGraph,
                           byContent,
                           prune,
                           depfile.value_or(""),
                           depfileTarget});
        },
        "files"_a, "output"_a, py::kw_only(), "targets"_a = py::make_tuple("cg"), "threads"_a = 0,
        "precision"_a = "full", "optimise"_a = false, "plain"_a = false, "by_content"_a = false,
        "shader_graph"_a = false, "prune"_a = false, "depfile"_a = py::none(),
        "depfile_target"_a = "", WithoutLock(),
        "Exports materials to the folder output, as mox export does, and returns an ExportSummary. "
        "files lists files and folders. If a material fails, the export continues with the "
        "others.\n\nRaises Error if a file or a folder cannot be used at all.");
}

} // namespace Mox::Python
