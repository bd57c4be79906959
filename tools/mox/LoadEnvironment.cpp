#include "LoadEnvironment.h"

namespace Mox::Tool {

void AddEnvironmentOption(CLI::App& command, std::string& folder)
{
    command
        .add_option("--environment", folder,
                    "Environment folder; by default the one installed with mox")
        ->type_name("DIR");
}

Host::Environment LoadEnvironment(const std::string& folder)
{
    return Host::ReadEnvironment(folder.empty() ? Host::DefaultEnvironmentFolder()
                                                : std::filesystem::path(folder));
}

} // namespace Mox::Tool
