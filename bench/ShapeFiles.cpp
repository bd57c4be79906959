#include "ShapeFiles.h"

#include "mox/Text.h"

#include <fstream>
#include <set>
#include <unistd.h>

namespace Mox::Bench {

std::filesystem::path TemporaryFolder()
{
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / Materials::Compose("mox_bench_", getuid());
    std::filesystem::create_directories(folder);
    return folder;
}

std::filesystem::path FileOf(Shape shape, std::size_t nodeCount)
{
    // A file left by an earlier run may come from a different version.
    static std::set<std::filesystem::path> made;
    std::filesystem::path file =
        TemporaryFolder() / Materials::Compose(static_cast<int>(shape), "_", nodeCount, ".xml");
    if (made.insert(file).second)
        std::ofstream(file) << MakeDocument(shape, nodeCount);
    return file;
}

} // namespace Mox::Bench
