// Prints the two Cg programs of a material, and what is wrong with it.

#include <exception>
#include <iostream>
#include <mox/graph/OpenMaterial.h>
#include <mox/program/MaterialProgram.h>

using namespace Mox::Host;

namespace {

/// @returns whether the material has programs
bool PrintMaterial(const char* file)
{
    PluginSet plugins;
    plugins.LoadFolder(DefaultPluginFolder());
    const Environment environment = ReadEnvironment(DefaultEnvironmentFolder());

    ProblemList problems;
    const MaterialGraph graph = OpenMaterial(file, plugins, problems);
    const CgProgram program = BuildMaterialProgram(graph, environment, {}, problems);
    for (const Problem& problem : problems.Problems())
        std::cerr << problem.Format() << '\n';
    if (problems.HasErrors())
        return false;
    std::cout << program.Vertex.Text << "\n// ------\n" << program.Fragment.Text;
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "Usage: print_material FILE\n";
        return 2;
    }
    try {
        return PrintMaterial(argv[1]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
