// Opens a material, edits it and finds all its problems, then writes its programs in ESSL, an image
// and the edited document into a folder.

#include <exception>
#include <iostream>
#include <mox/check/MaterialCheck.h>
#include <mox/graph/ChangeHistory.h>
#include <mox/graph/GraphResolver.h>
#include <mox/graph/OpenMaterial.h>
#include <mox/host/AtomicFile.h>
#include <mox/host/File.h>
#include <mox/layout/MaterialLayout.h>
#include <mox/preview/MaterialPreview.h>
#include <mox/preview/MeshShapes.h>
#include <mox/program/MaterialProgram.h>
#include <mox/targets/TargetFormat.h>

using namespace Mox::Host;
namespace fs = std::filesystem;

namespace {

/// State shared by all materials. Create it once and reuse it.
struct Library
{
    Library() { Plugins.LoadFolder(DefaultPluginFolder()); }

    PluginSet Plugins;
    Environment Surroundings = ReadEnvironment(DefaultEnvironmentFolder());
    TargetFormat Essl{{CompileTarget::Essl}, Mox::Languages::Precision::Full, {}};
    FileDecoder Textures;
};

/// Changes consist of steps that can be undone. This one arranges the nodes; a second change is
/// made and then undone.
void Edit(MaterialGraph& graph)
{
    ChangeHistory history(graph);
    history.Do(LayOutMaterial(graph));

    GraphChange removal;
    for (const DocumentNode& node : graph.Document().Nodes)
        removal.Steps.emplace_back(RemoveNode{node.Id});
    history.Do(removal);
    std::cout << "undoing: " << history.UndoTitle() << '\n';
    history.Undo();
}

/// @param output path of the programs, up to their extensions
void WritePrograms(const MaterialGraph& graph, const Library& library, const fs::path& file,
                   const fs::path& output, ProblemList& problems)
{
    const CgProgram program = BuildMaterialProgram(graph, library.Surroundings, {}, problems);
    const std::vector<ProgramFile> files =
        WriteProgram(library.Essl, program, graph, file, problems);
    problems.ThrowFirstError();
    for (std::size_t i = 0; i < files.size(); ++i)
        WriteIfChanged(output.string() + library.Essl.Endings()[i], files[i].Text);
}

/// On a machine without a Vulkan device, everything else still works.
void WriteImage(const MaterialGraph& graph, Library& library, const fs::path& output)
{
    try {
        const MaterialPreview preview(library.Plugins, library.Surroundings, library.Textures);
        ProblemList problems; // CheckMaterial has reported all but undecodable textures
        WritePng(preview.RenderMaterial(graph.Document(), MakeSphere(), {}, problems), output);
    } catch (const HostError& error) {
        std::cerr << "no image: " << error.what() << '\n';
    }
}

/// @returns whether the programs were written
bool BuildMaterial(const fs::path& file, const fs::path& folder)
{
    Library library;
    ProblemList problems;
    MaterialGraph graph =
        LoadMaterial(ReadMaterialDocument(file, problems), library.Plugins, problems);
    Edit(graph);
    ResolveGraph(graph, problems);
    CheckMaterial(graph, file, library.Surroundings, &library.Essl, problems);
    for (const Problem& problem : problems.Problems())
        std::cerr << GetSeverityName(problem.Level) << ": " << problem.Format() << '\n';
    if (problems.HasErrors())
        return false;

    CreateFolder(folder);
    const fs::path output = folder / file.stem();
    ProblemList known; // CheckMaterial has reported these
    WritePrograms(graph, library, file, output, known);
    WriteImage(graph, library, output.string() + ".png");
    WriteIfChanged(output.string() + ".xml", FormatMaterialDocument(graph.Document()));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "Usage: build_material FILE FOLDER\n";
        return 2;
    }
    try {
        return BuildMaterial(argv[1], argv[2]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
