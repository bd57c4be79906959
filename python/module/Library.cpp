#include "Library.h"

#include "LoadPlugins.h"
#include "Targets.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/batch/StartThreads.h"
#include "mox/check/EnvironmentCheck.h"
#include "mox/check/MaterialCheck.h"
#include "mox/check/NodeFileCheck.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/interchange/ReadMaterial.h"
#include "mox/nodefile/NodeFolders.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <exception>
#include <optional>
#include <thread>

namespace Mox::Python {

namespace {

/// Sets the environment variable with the folders of node files for the lifetime of the object,
/// then restores it. Only one such object can exist at a time; others wait for it.
class NodePath
{
public:
    /// @param path empty to leave the variable as it is
    explicit NodePath(const std::string& path = {}) : _lock(mutex)
    {
        if (const char* value = std::getenv(Host::nodePathVariable))
            _before = value;
        if (!path.empty())
            setenv(Host::nodePathVariable, path.c_str(), true);
    }

    ~NodePath()
    {
        if (_before)
            setenv(Host::nodePathVariable, _before->c_str(), true);
        else
            unsetenv(Host::nodePathVariable);
    }

    NodePath(const NodePath&) = delete;
    NodePath& operator=(const NodePath&) = delete;

    static std::string Current()
    {
        const char* value = std::getenv(Host::nodePathVariable);
        return value ? value : "";
    }

private:
    static inline std::mutex mutex;

    std::lock_guard<std::mutex> _lock;
    std::optional<std::string> _before;
};

std::vector<std::string> ToStrings(const Paths& paths)
{
    std::vector<std::string> strings;
    for (const std::filesystem::path& path : paths)
        strings.push_back(path.string());
    return strings;
}

} // namespace

Library::Library(const Paths& plugins, const Paths& nodes, const std::filesystem::path& environment)
    : _environment(Host::ReadEnvironment(environment.empty() ? Host::DefaultEnvironmentFolder()
                                                             : environment)),
      _targetCheck(Tool::MakeTargetCheck()), _nodeFolders(ToStrings(nodes)),
      _isOwnEnvironment(!environment.empty())
{
    const NodePath nodePath;
    _plugins = Tool::LoadPlugins({ToStrings(plugins), _nodeFolders});
    _nodeFiles = std::make_unique<const Host::NodeFiles>(_plugins);
    _nodePath = NodePath::Current();
}

const std::vector<Host::CatalogueEntry>& Library::Catalogue() const
{
    std::call_once(_described, [this] {
        Host::ProblemList problems; // reports missing types
        _catalogue = Host::DescribeCatalogue(_plugins, {}, problems);
    });
    return _catalogue;
}

const Host::CatalogueEntry* Library::FindType(const std::string& name) const
{
    const auto& entries = Catalogue();
    const auto entry = std::ranges::find(
        entries, name, [](const Host::CatalogueEntry& type) { return type.Type.TypeName; });
    return entry == entries.end() ? nullptr : &*entry;
}

Host::ProblemList Library::Check(const Paths& files, std::size_t threads) const
{
    std::vector<Host::MaterialFile> materials;
    if (!files.empty())
        materials = Host::FindMaterials(files, static_cast<unsigned>(ThreadCount(threads)));
    Host::ProblemList problems;
    if (_isOwnEnvironment)
        Host::CheckEnvironment(_environment, problems);
    if (!_nodeFolders.empty()) {
        const NodePath nodePath(_nodePath);
        Host::CheckNodeFiles(_nodeFolders, _plugins, _environment, problems);
    }
    std::vector<Host::ProblemList> found(materials.size());
    ForEachParallel(materials.size(), threads, [&](std::size_t i) {
        const std::string& file = materials[i].Document;
        const auto graph =
            Host::OpenMaterial(Host::ReadMaterial(file, found[i]), _plugins, found[i]);
        Host::CheckMaterial(graph, file, _environment, _targetCheck.get(), found[i]);
    });
    for (const Host::ProblemList& ofMaterial : found)
        problems.Append(ofMaterial);
    return problems;
}

std::size_t ThreadCount(std::size_t threads)
{
    constexpr std::size_t mostThreads = 1024;
    return std::min(threads > 0 ? threads : std::max(1U, std::thread::hardware_concurrency()),
                    mostThreads);
}

void ForEachParallel(std::size_t count, std::size_t threads,
                     const std::function<void(std::size_t)>& work)
{
    std::vector<std::exception_ptr> failures(count);
    std::atomic<std::size_t> next = 0;
    const auto workOn = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            try {
                work(i);
            } catch (...) {
                failures[i] = std::current_exception();
            }
        }
    };
    if (const std::size_t wanted = std::min(ThreadCount(threads), count); wanted > 1)
        Host::StartThreads(wanted, workOn); // the destructors of the threads wait for them
    else
        workOn();
    for (const std::exception_ptr& failure : failures) {
        if (failure)
            std::rethrow_exception(failure);
    }
}

} // namespace Mox::Python
