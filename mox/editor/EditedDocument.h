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

/// The document that the text of a file holds; an empty text is an empty document.
/// @param file name, for messages
/// @throws HostError if the text breaks the rules of documents
MaterialDocument ParseEdited(const std::string& file, const std::string& text);

/// A document that is being edited: its graph, its history, its file, and the journal of the
/// changes that are not in the file yet. The graph is always resolved.
class EditedDocument
{
public:
    /// Opens a document; a file that does not exist is an empty document.
    /// @param plugins must outlive the object
    /// @throws HostError if the document is being edited already, or if the file cannot be read or
    ///         breaks the rules of documents, so that saving it would lose something
    EditedDocument(const std::filesystem::path& file, const PluginSet& plugins);

    const MaterialGraph& Graph() const { return _opened->Graph; }
    const std::filesystem::path& File() const { return _file; }

    /// Grows with every change of the document, undoing included.
    std::uint64_t Revision() const { return _revision; }

    std::string UndoTitle() const { return _opened->History.UndoTitle(); }
    std::string RedoTitle() const { return _opened->History.RedoTitle(); }

    /// Whether the document differs from the one that was read or saved last.
    bool IsUnsaved() const;

    /// Changes the document and writes the change to the journal, or does neither.
    /// @param gesture as for ChangeHistory::Do
    /// @returns what has changed, by resolution too; may be empty
    /// @throws HostError if the change does not fit, if the journal cannot be written, or while an
    ///         earlier journal waits
    ChangedRecords Apply(const GraphChange& change, const std::string& gesture = {});
    ChangedRecords Undo();
    ChangedRecords Redo();

    /// Writes the document to its file and removes the journal.
    /// @param force also replaces a file that has changed since it was read
    /// @throws HostError if the file cannot be written, or has changed, is read-only or has other
    ///         hard links
    void Save(bool force);

    /// The content of the file; an empty text if it does not exist.
    /// @throws HostError if it cannot be read
    std::string ReadText() const;

    /// Whether the content of the file has changed since it was read or saved last.
    bool HasFileChanged() const;

    /// How the file differs from the document, in words, one difference each.
    /// @throws HostError if the file does not exist, cannot be read or is not a document
    std::vector<std::string> CompareWithFile() const;

    /// Replaces the document by what the file holds now. History and journal begin anew.
    /// @throws HostError as CompareWithFile does; nothing has changed then
    void Reload();

    /// The changes that an earlier process left in the journal. The document cannot be changed
    /// until they are restored or discarded.
    const std::optional<JournalContent>& Waiting() const { return _waiting; }

    /// Why the journal of an earlier process cannot be restored; empty if it can or there is none.
    const std::string& JournalFailure() const { return _journalFailure; }

    /// Restores the unsaved document of an earlier process.
    /// @throws HostError if nothing waits or the journal cannot be written; nothing has changed
    /// then
    void Restore();

    /// Removes the journal of an earlier process.
    /// @throws HostError if there is none
    void Discard();

private:
    /// None of this can be moved, as the members refer to the graph.
    struct Opened
    {
        Opened(MaterialDocument document, const PluginSet& plugins);

        MaterialGraph Graph;
        ChangeHistory History;
        GraphResolver Resolver;
    };

    using HistoryStep = ChangedRecords (ChangeHistory::*)();

    std::unique_ptr<Opened> Open(const std::string& name, const std::string& text) const;
    std::unique_ptr<Opened> Replay(const JournalContent& content) const;
    void FindJournal();
    void RequireNoneWaiting() const;
    ChangedRecords Go(HistoryStep step, HistoryStep back);
    void KeepState();
    void Begin(std::unique_ptr<Opened> opened);
    ChangedRecords Finish(ChangedRecords records);
    std::vector<std::size_t> Resolve();

    std::filesystem::path _file;
    DocumentLock _lock;
    const PluginSet& _plugins;
    std::string _saved; ///< content of the file when it was read or saved last
    std::unique_ptr<Opened> _opened;
    std::optional<std::uint64_t>
        _savedState; ///< of the history; none if the file has none of its states
    std::uint64_t _revision = 0;
    Journal _journal;
    std::optional<JournalContent> _waiting;
    std::string _journalFailure;
};

} // namespace Mox::Host
