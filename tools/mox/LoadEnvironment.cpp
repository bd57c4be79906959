#include "LoadEnvironment.h"

namespace Mox::Tool {

void AddEnvironmentOption(CLI::App& command, std::string& folder)
{
    command
        .add_option("--environment", folder,
                    "Folder with an environment instead of the one that belongs to the program")
        ->type_name("DIR");
}

Host::Environment LoadEnvironment(const std::string& folder)
{
    return Host::ReadEnvironment(folder.empty() ? Host::DefaultEnvironmentFolder()
                                                : std::filesystem::path(folder));
}

} // namespace Mox::Tool
