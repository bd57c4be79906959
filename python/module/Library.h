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

/// What materials require: the plug-ins with their node types, and the environment. A library is
/// immutable, so any thread may use it.
class Library : public std::enable_shared_from_this<Library>
{
public:
    /// @param plugins folders searched for plug-ins before the default ones
    /// @param nodes folders searched for node files before all others
    /// @param environment folder; empty for the one installed with the library mox_materials
    /// @throws HostError if a folder or its content cannot be used
    Library(const Paths& plugins, const Paths& nodes, const std::filesystem::path& environment);

    const Host::PluginSet& Plugins() const { return _plugins; }
    const Host::Environment& Environment() const { return _environment; }
    const Host::NodeFiles& NodeFiles() const { return *_nodeFiles; }

    /// Used to check that programs can be exported in every language.
    const Host::ProgramFormat& TargetCheck() const { return *_targetCheck; }

    /// All available node types, in the order of the plug-ins.
    const std::vector<Host::CatalogueEntry>& Catalogue() const;

    /// @returns null if there is no such type
    const Host::CatalogueEntry* FindType(const std::string& name) const;

    /// All problems of materials, as mox check reports them.
    /// @param files and folders
    Host::ProblemList Check(const Paths& files, std::size_t threads) const;

private:
    Host::PluginSet _plugins;
    std::unique_ptr<const Host::NodeFiles> _nodeFiles;
    Host::Environment _environment;
    std::unique_ptr<const Host::ProgramFormat> _targetCheck;
    std::vector<std::string> _nodeFolders; ///< as given by the caller
    bool _isOwnEnvironment;                ///< whether the caller specified it
    std::string _nodePath;                 ///< in effect when the plug-ins were loaded

    mutable std::once_flag _described;
    mutable std::vector<Host::CatalogueEntry> _catalogue;
};

/// Calls work for each number below a count, on several threads.
/// @param threads 0 for one per processor
/// @throws the exception for the lowest number whose call has failed, after all calls have ended
void ForEachParallel(std::size_t count, std::size_t threads,
                     const std::function<void(std::size_t)>& work);

/// The number of threads to use; 0 stands for one per processor.
std::size_t ThreadCount(std::size_t threads);

} // namespace Mox::Python
