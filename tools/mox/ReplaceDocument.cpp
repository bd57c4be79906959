#include "ReplaceDocument.h"

#include "mox/host/AtomicFile.h"
#include "mox/host/HostError.h"

namespace Mox::Tool {

void RequireReplaceable(const std::string& file)
{
    const std::string obstacle = Host::ObstacleToReplacing(file);
    if (!obstacle.empty())
        throw Host::HostError(Host::Place(file), obstacle + "; --force replaces it all the same");
}

} // namespace Mox::Tool
