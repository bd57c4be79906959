#include "Commands.h"

#include <exception>
#include <iostream>

namespace {

constexpr int failureStatus = 1; ///< the input is bad
constexpr int usageStatus = 2;   ///< the command line is bad

} // namespace

int main(int argc, char** argv)
{
    CLI::App program("Works with materials: their documents, node types and shader programs.",
                     "mox");
    program.require_subcommand(1);
    Mox::Tool::CommonOptions common;
    program.add_option("--plugins", common.PluginFolders,
                       "Folder with plug-ins, besides the one that belongs to the program");
    Mox::Tool::AddCatalogueCommand(program, common);
    Mox::Tool::AddExportCommand(program, common);
    Mox::Tool::AddBindingsCommand(program, common);
    Mox::Tool::AddNewCommand(program, common);
#ifdef MOX_WITH_PREVIEW
    Mox::Tool::AddPreviewCommand(program, common);
#endif
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : usageStatus;
    } catch (const std::exception& error) {
        std::cerr << "mox: " << error.what() << '\n';
        return failureStatus;
    }
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "mox: the output cannot be written\n";
        return failureStatus;
    }
    return 0;
}
