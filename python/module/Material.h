#pragma once

#include "Convert.h"
#include "Library.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginBinding.h"
#include "mox/host/Problem.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Python {

/// A copy of a material, loaded and resolved, with the problems found so far.
struct OpenedCopy
{
    Host::MaterialGraph Graph;
    Host::ProblemList Problems;
    std::filesystem::path File;
};

/// A material being edited from Python: its graph, its history and its file. Every operation locks
/// the object, and none holds the interpreter's lock meanwhile, so threads may share it.
class Material : public std::enable_shared_from_this<Material>
{
public:
    /// @param file empty if the material has none yet
    /// @param text content of the file
    /// @param reading problems found while reading it
    Material(std::shared_ptr<const Library> library, Host::MaterialDocument document,
             std::filesystem::path file, std::string text, Host::ProblemList reading);

    /// @throws HostError if the file cannot be read; errors in its content become problems
    static std::shared_ptr<Material> Open(std::shared_ptr<const Library> library,
                                          const std::filesystem::path& file);

    /// @param file name of the file, for messages
    static std::shared_ptr<Material> Parse(std::shared_ptr<const Library> library,
                                           const std::string& text, const std::string& file);

    /// @param state as DescribeState returns it
    /// @param file name of the state, for messages
    /// @throws HostError if it is not a state; violations of the rules of documents become problems
    static std::shared_ptr<Material> FromState(std::shared_ptr<const Library> library,
                                               const Host::Json& state, const std::string& file);

    const Library& GetLibrary() const { return *_library; }
    const std::shared_ptr<const Library>& LibraryHandle() const { return _library; }

    /// Calls a function with the graph. The function must not access Python objects.
    template <class Work>
    auto Use(Work work) const
    {
        const py::gil_scoped_release release;
        const std::lock_guard lock(_mutex);
        return work(std::as_const(_graph));
    }

    /// Calls a function with the graph and the number of a node.
    /// @throws StaleView if there is no such node
    template <class Work>
    auto UseNode(const std::string& id, Work work) const
    {
        return Use(
            [&](const Host::MaterialGraph& graph) { return work(graph, FindNode(graph, id)); });
    }

    std::filesystem::path File() const;

    /// @throws HostError if something in the file could not be read
    void RequireComplete() const;

    /// The document in canonical form.
    /// @throws HostError if something in the file could not be read
    std::string Text() const;

    bool IsUnsaved() const;
    std::string UndoTitle() const;
    std::string RedoTitle() const;

    /// Copies the material for long-running work.
    OpenedCopy OpenCopy() const;
    Host::MaterialDocument CopyDocument() const;

    /// What mox check reports. The result is cached until the material changes.
    std::vector<Host::Problem> Problems() const;

    /// Like Problems, but without the cache.
    std::vector<Host::Problem> Check() const;

    /// Run-time parameters with the document's values.
    /// @throws FaultyMaterial if the material has an error
    std::vector<Host::PluginBinding> Bindings() const;

    /// Applies a change as one step of the history.
    /// @param title shown to the user; if empty, derived from the change
    /// @returns whether it had an effect
    /// @throws HostError if it cannot be applied, without changing anything
    bool Apply(const Host::GraphChange& change, const std::string& title);

    /// @returns false if there was nothing to undo or redo
    bool Undo();
    bool Redo();

    /// Lays out the given nodes, or all if none are given, as one step of the history.
    bool LayOut(const std::vector<std::string>& ids);

    /// Writes the document.
    /// @param file if empty, the material's own file; otherwise it becomes the material's file
    /// @param force overwrites a file even if it has changed, is read-only or has other hard links
    void Save(const std::optional<std::filesystem::path>& file, bool force);

private:
    static std::size_t FindNode(const Host::MaterialGraph& graph, const std::string& id);

    Host::MaterialDocument CopyDocument(const Host::MaterialGraph& graph) const;
    void RequireSaveable(const std::filesystem::path& file, bool isOwn, bool force) const;
    void Resolve();

    const std::shared_ptr<const Library> _library;
    mutable std::mutex _mutex;
    Host::MaterialGraph _graph;
    Host::ChangeHistory _history;
    Host::GraphResolver _resolver;
    const Host::ProblemList _reading;
    std::filesystem::path _file;
    std::string _saved;                       ///< content of the file when it was last read or
                                              ///< saved
    std::optional<std::uint64_t> _savedState; ///< state in the history that matches the file, if
                                              ///< any

    mutable std::optional<std::uint64_t> _checkedState; ///< state for which _problems was computed
    mutable std::vector<Host::Problem> _problems;
};

} // namespace Mox::Python
