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

/// A copy of a material, opened and resolved, with all that is wrong so far.
struct OpenedCopy
{
    Host::MaterialGraph Graph;
    Host::ProblemList Problems;
    std::filesystem::path File;
};

/// A material that Python edits: its graph, its history and its file. Every operation takes a lock
/// of the object, and none holds the interpreter's lock meanwhile, so that threads may share it.
class Material : public std::enable_shared_from_this<Material>
{
public:
    /// @param file empty if the material has none yet
    /// @param text content of the file
    /// @param reading problems of reading it
    Material(std::shared_ptr<const Library> library, Host::MaterialDocument document,
             std::filesystem::path file, std::string text, Host::ProblemList reading);

    /// @throws HostError if the file cannot be read; what is wrong with its content is a problem
    static std::shared_ptr<Material> Open(std::shared_ptr<const Library> library,
                                          const std::filesystem::path& file);

    /// @param file as it is named in messages
    static std::shared_ptr<Material> Parse(std::shared_ptr<const Library> library,
                                           const std::string& text, const std::string& file);

    const Library& GetLibrary() const { return *_library; }
    const std::shared_ptr<const Library>& LibraryHandle() const { return _library; }

    /// Calls work with the graph. It must not touch Python objects.
    template <class Work>
    auto Use(Work work) const
    {
        const py::gil_scoped_release release;
        const std::lock_guard lock(_mutex);
        return work(std::as_const(_graph));
    }

    /// The same with the number of a node.
    /// @throws StaleView if there is no such node
    template <class Work>
    auto UseNode(const std::string& id, Work work) const
    {
        return Use(
            [&](const Host::MaterialGraph& graph) { return work(graph, FindNode(graph, id)); });
    }

    std::filesystem::path File() const;

    /// The document in its canonical form.
    /// @throws HostError if something in the file could not be read
    std::string Text() const;

    bool IsUnsaved() const;
    std::string UndoTitle() const;
    std::string RedoTitle() const;

    /// A copy of the material for work that takes its time.
    OpenedCopy OpenCopy() const;
    Host::MaterialDocument CopyDocument() const;

    /// What mox check finds. Keeps the result until the material changes.
    std::vector<Host::Problem> Problems() const;

    /// The same, found again.
    std::vector<Host::Problem> Check() const;

    /// Run-time parameters with the document's values.
    /// @throws FaultyMaterial if the material has an error
    std::vector<Host::PluginBinding> Bindings() const;

    /// Makes a change as one step of the history.
    /// @param title for people; empty for one that is made from the change
    /// @returns whether it had an effect
    /// @throws HostError if it does not fit; nothing has changed then
    bool Apply(const Host::GraphChange& change, const std::string& title);

    /// @returns false if there was nothing to undo or redo
    bool Undo();
    bool Redo();

    /// Lays out nodes, or all if none are named, as one step of the history.
    bool LayOut(const std::vector<std::string>& ids);

    /// Writes the document.
    /// @param file nothing for the material's own, else it becomes that
    /// @param force also replaces a file that has changed, is read-only or has other hard links
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
    std::string _saved;                       ///< content of the file when it was read or saved
    std::optional<std::uint64_t> _savedState; ///< of the history; none if there is no file

    mutable std::optional<std::uint64_t> _checkedState; ///< to which _problems belong
    mutable std::vector<Host::Problem> _problems;
};

} // namespace Mox::Python
