#pragma once

#include "mox/editor/DocumentLock.h"
#include "mox/editor/Journal.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// Parses the content of a file as a document; empty content is an empty document.
/// @param file name, for messages
/// @throws HostError if the content breaks the rules of documents
MaterialDocument ParseEdited(const std::string& file, const std::string& text);

/// A document that is being edited: its graph, its history, its file, and the journal of changes
/// that have not been saved yet. The graph is always resolved.
class EditedDocument
{
public:
    /// Opens a document; a file that does not exist is treated as an empty document.
    /// @param plugins must outlive the object
    /// @throws HostError if the document is already being edited, or if the file cannot be read or
    ///         breaks the rules of documents, because saving it would then lose content
    EditedDocument(const std::filesystem::path& file, const PluginSet& plugins);

    const MaterialGraph& Graph() const { return _opened->Graph; }
    const std::filesystem::path& File() const { return _file; }

    /// Increases with every change of the document, including undo and redo.
    std::uint64_t Revision() const { return _revision; }

    std::string UndoTitle() const { return _opened->History.UndoTitle(); }
    std::string RedoTitle() const { return _opened->History.RedoTitle(); }

    /// Whether the document differs from what was last read or saved.
    bool IsUnsaved() const;

    /// Changes the document and writes the change to the journal, or does neither.
    /// @param gesture as for ChangeHistory::Do
    /// @returns what has changed, including changes caused by resolution; may be empty
    /// @throws HostError if the change cannot be applied, if the journal cannot be written, or
    ///         while an earlier journal is waiting
    ChangedRecords Apply(const GraphChange& change, const std::string& gesture = {});
    ChangedRecords Undo();
    ChangedRecords Redo();

    /// Writes the document to its file and removes the journal.
    /// @param force overwrites the file even if it has changed since it was read
    /// @throws HostError if the file cannot be written, has changed, is read-only or has other hard
    ///         links
    void Save(bool force);

    /// The content of the file; empty if it does not exist.
    /// @throws HostError if it cannot be read
    std::string ReadText() const;

    /// Whether the content of the file has changed since it was last read or saved.
    bool HasFileChanged() const;

    /// Describes how the file differs from the document, one difference per string.
    /// @throws HostError if the file does not exist, cannot be read or is not a document
    std::vector<std::string> CompareWithFile() const;

    /// Replaces the document with the current content of the file and starts a new history and
    /// journal.
    /// @throws HostError as CompareWithFile does, without changing anything
    void Reload();

    /// The changes that an earlier process left in the journal. The document cannot be changed
    /// until they are restored or discarded.
    const std::optional<JournalContent>& Waiting() const { return _waiting; }

    /// Why an earlier process's journal cannot be restored; empty if it can, or if there is none.
    const std::string& JournalFailure() const { return _journalFailure; }

    /// Restores the unsaved document of an earlier process.
    /// @throws HostError if no journal is waiting or it cannot be written, without changing
    ///         anything
    void Restore();

    /// Removes the journal of an earlier process.
    /// @throws HostError if there is none
    void Discard();

private:
    /// Cannot be moved, because its members refer to the graph.
    struct Opened
    {
        Opened(MaterialDocument document, const PluginSet& plugins);

        /// @returns the nodes that were resolved
        std::vector<std::size_t> Resolve();

        MaterialGraph Graph;
        ChangeHistory History;
        GraphResolver Resolver;
    };

    using HistoryStep = ChangedRecords (ChangeHistory::*)();

    std::unique_ptr<Opened> Open(const std::string& text) const;
    std::unique_ptr<Opened> Replay(const JournalContent& content) const;
    void FindJournal();
    void RequireNoneWaiting() const;
    ChangedRecords Go(HistoryStep step, HistoryStep back);
    void KeepState();
    void Begin(std::unique_ptr<Opened> opened);
    ChangedRecords Finish(ChangedRecords records);

    std::filesystem::path _file;
    DocumentLock _lock;
    const PluginSet& _plugins;
    std::string _saved; ///< content of the file when it was last read or saved
    std::unique_ptr<Opened> _opened;
    std::optional<std::uint64_t>
        _savedState; ///< state in the history that matches the file, if any
    std::uint64_t _revision = 0;
    Journal _journal;
    std::optional<JournalContent> _waiting;
    std::string _journalFailure;
};

} // namespace Mox::Host
