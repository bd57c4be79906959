#include "mox/editor/CompanionFile.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"

namespace Mox::Host {

std::filesystem::path CompanionFile(const std::filesystem::path& document,
                                    std::string_view extension)
{
    const std::filesystem::path target = TargetOf(document);
    return target.parent_path() /
           Materials::Compose(".", target.filename().string(), ".", extension);
}

} // namespace Mox::Host
