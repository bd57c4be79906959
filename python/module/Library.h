#pragma once

#include "mox/document/Catalogue.h"
#include "mox/host/PluginSet.h"
#include "mox/nodefile/NodeFiles.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Mox::Python {

using Paths = std::vector<std::filesystem::path>;

/// The plug-ins with their node types, and the environment: what materials need. It does not change
/// once it is made, so any thread may use it.
class Library : public std::enable_shared_from_this<Library>
{
public:
    /// @param plugins folders that are searched for plug-ins before the usual ones
    /// @param nodes folders that are searched for node files before all others
    /// @param environment folder; empty for the one that belongs to the library mox_materials
    /// @throws HostError if a folder or what is in it cannot be used
    Library(const Paths& plugins, const Paths& nodes, const std::filesystem::path& environment);

    const Host::PluginSet& Plugins() const { return _plugins; }
    const Host::Environment& Environment() const { return _environment; }
    const Host::NodeFiles& NodeFiles() const { return *_nodeFiles; }

    /// Shows whether programs can be exported in every language.
    const Host::ProgramFormat& TargetCheck() const { return *_targetCheck; }

    /// All types that can be made, in the order of the plug-ins.
    const std::vector<Host::CatalogueEntry>& Catalogue() const;

    /// @returns null if there is no such type
    const Host::CatalogueEntry* FindType(const std::string& name) const;

    /// All problems of materials, as mox check finds them.
    /// @param files and folders
    Host::ProblemList Check(const Paths& files, std::size_t threads) const;

private:
    Host::PluginSet _plugins;
    std::unique_ptr<const Host::NodeFiles> _nodeFiles;
    Host::Environment _environment;
    std::unique_ptr<const Host::ProgramFormat> _targetCheck;
    std::vector<std::string> _nodeFolders; ///< those that were named
    bool _isOwnEnvironment;                ///< one that was named
    std::string _nodePath;                 ///< with which the plug-ins were loaded

    mutable std::once_flag _described;
    mutable std::vector<Host::CatalogueEntry> _catalogue;
};

/// Calls work with the numbers below a count, on several threads.
/// @param threads 0 for as many as there are processors
/// @throws the exception of the lowest number that has thrown one, when all calls are done
void ForEachParallel(std::size_t count, std::size_t threads,
                     const std::function<void(std::size_t)>& work);

/// Number of threads that a caller means; 0 stands for as many as there are processors.
std::size_t ThreadCount(std::size_t threads);

} // namespace Mox::Python
