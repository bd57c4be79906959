#include "RoadFiles.h"

#include "mox/Text.h"

#include <fstream>
#include <set>
#include <unistd.h>

namespace Mox::Bench {

std::filesystem::path FileOf(Shape shape, std::size_t nodeCount)
{
    // A file of an earlier run may be that of another version.
    static std::set<std::filesystem::path> made;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / Materials::Compose("mox_bench_", getuid());
    const std::filesystem::path file =
        folder / Materials::Compose(static_cast<int>(shape), "_", nodeCount, ".xml");
    if (made.insert(file).second) {
        std::filesystem::create_directories(folder);
        std::ofstream(file) << MakeDocument(shape, nodeCount);
    }
    return file;
}

} // namespace Mox::Bench
