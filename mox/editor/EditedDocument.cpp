#include "mox/editor/EditedDocument.h"

#include "mox/Text.h"
#include "mox/document/MaterialDiff.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/interchange/ReadMaterial.h"

#include <utility>

namespace Mox::Host {

namespace {

/// A larger journal is replaced by one that starts with the current document.
constexpr std::size_t mostJournalBytes = 8U << 20U;

/// Only regular files are read: reading from something like a pipe might never end.
std::string ReadExisting(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_other(file, error))
        throw HostError(Place(file.string()), "cannot be read: it is not a regular file");
    return ReadFile(file);
}

} // namespace

MaterialDocument ParseEdited(const std::string& file, const std::string& text)
{
    RefuseMaterialX(file, text);
    if (!text.empty())
        return ParseMaterialDocument(file, text);
    MaterialDocument document;
    document.File = file;
    return document;
}

EditedDocument::Opened::Opened(MaterialDocument document, const PluginSet& plugins)
    : Graph(std::move(document), NodeMaker(plugins)), History(Graph), Resolver(Graph)
{
    Resolve();
}

std::vector<std::size_t> EditedDocument::Opened::Resolve()
{
    ProblemList problems; // discarded; problems are computed again on request
    return Resolver.Resolve(problems);
}

EditedDocument::EditedDocument(const std::filesystem::path& file, const PluginSet& plugins)
    : _file(file), _lock(file), _plugins(plugins), _saved(ReadText()), _opened(Open(_saved)),
      _savedState(_opened->History.State()), _journal(file)
{
    FindJournal();
}

bool EditedDocument::IsUnsaved() const
{
    return _savedState != _opened->History.State();
}

ChangedRecords EditedDocument::Apply(const GraphChange& change, const std::string& gesture)
{
    RequireNoneWaiting();
    if (!_journal.IsStarted() || _journal.Size() > mostJournalBytes)
        _journal.Start(FormatMaterialDocument(Graph().Document()));
    _journal.Append(change);
    const auto takeBack = [this] {
        _journal.TakeBack();
        if (!IsUnsaved())
            _journal.Remove();
    };
    ChangedRecords records;
    try {
        records = _opened->History.Do(change, gesture);
    } catch (...) {
        takeBack();
        throw;
    }
    if (records.IsEmpty())
        takeBack();
    return Finish(std::move(records));
}

ChangedRecords EditedDocument::Undo()
{
    return Go(&ChangeHistory::Undo, &ChangeHistory::Redo);
}

ChangedRecords EditedDocument::Redo()
{
    return Go(&ChangeHistory::Redo, &ChangeHistory::Undo);
}

void EditedDocument::Save(bool force)
{
    RequireNoneWaiting();
    if (!force && HasFileChanged()) {
        throw HostError(Place(_file.string()),
                        "has changed on disk since it was read, and these changes would be lost");
    }
    const std::string obstacle = force ? "" : ObstacleToReplacing(_file);
    if (!obstacle.empty())
        throw HostError(Place(_file.string()), obstacle);
    std::string text = FormatMaterialDocument(Graph().Document());
    WriteIfChanged(_file, text);
    _saved = std::move(text);
    _savedState = _opened->History.State();
    _journal.Remove();
}

std::string EditedDocument::ReadText() const
{
    std::error_code error;
    const bool isMissing = !std::filesystem::exists(_file, error) && !error;
    return isMissing ? std::string() : ReadExisting(_file);
}

bool EditedDocument::HasFileChanged() const
{
    return ReadText() != _saved;
}

std::vector<std::string> EditedDocument::CompareWithFile() const
{
    return DescribeDifferences(
        Graph().Document(), ParseMaterialDocument(_file.string(), ReadExisting(_file)), _plugins);
}

void EditedDocument::Reload()
{
    RequireNoneWaiting();
    std::string text = ReadExisting(_file);
    auto opened = std::make_unique<Opened>(ParseMaterialDocument(_file.string(), text), _plugins);
    _journal.Remove();
    _saved = std::move(text);
    Begin(std::move(opened));
    _savedState = _opened->History.State();
}

void EditedDocument::Restore()
{
    if (!_waiting)
        throw HostError(Place(_file.string()), "there are no unsaved changes to restore");
    std::unique_ptr<Opened> opened = Replay(*_waiting);
    _journal.Start(FormatMaterialDocument(opened->Graph.Document()));
    _waiting.reset();
    Begin(std::move(opened));
    _savedState.reset();
}

void EditedDocument::Discard()
{
    if (!_waiting && _journalFailure.empty())
        throw HostError(Place(_file.string()), "there are no unsaved changes to discard");
    _journal.Remove();
    _waiting.reset();
    _journalFailure.clear();
}

std::unique_ptr<EditedDocument::Opened> EditedDocument::Open(const std::string& text) const
{
    return std::make_unique<Opened>(ParseEdited(_file.string(), text), _plugins);
}

/// Rebuilds the document of an earlier process. Only its last change may be invalid: the process
/// may have ended before it could remove a refused change from the journal.
std::unique_ptr<EditedDocument::Opened> EditedDocument::Replay(const JournalContent& content) const
{
    std::unique_ptr<Opened> opened = Open(content.Document);
    for (const GraphChange& change : content.Changes) {
        try {
            opened->History.Do(change);
        } catch (const HostError&) {
            if (&change != &content.Changes.back())
                throw;
        }
    }
    opened->Resolve();
    return opened;
}

/// Looks for a journal left by an earlier process. If replaying it yields what the file already
/// holds, the journal is removed.
void EditedDocument::FindJournal()
{
    try {
        _waiting = _journal.Read();
        if (_waiting && FormatMaterialDocument(Replay(*_waiting)->Graph.Document()) ==
                            FormatMaterialDocument(Graph().Document()))
            Discard();
    } catch (const HostError& error) {
        _waiting.reset();
        _journalFailure = error.what();
    }
}

void EditedDocument::RequireNoneWaiting() const
{
    if (_waiting || !_journalFailure.empty()) {
        throw HostError(Place(_file.string()),
                        "restore or discard the unsaved changes from the earlier session first");
    }
}

/// Moves one step through the history and brings the journal up to date, or does neither.
ChangedRecords EditedDocument::Go(HistoryStep step, HistoryStep back)
{
    RequireNoneWaiting();
    ChangedRecords records = (_opened->History.*step)();
    if (records.IsEmpty())
        return records;
    try {
        KeepState();
    } catch (...) {
        (_opened->History.*back)();
        _opened->Resolve();
        throw;
    }
    return Finish(std::move(records));
}

/// Restarts the journal from the current document.
void EditedDocument::KeepState()
{
    if (IsUnsaved())
        _journal.Start(FormatMaterialDocument(Graph().Document()));
    else
        _journal.Remove();
}

void EditedDocument::Begin(std::unique_ptr<Opened> opened)
{
    _opened = std::move(opened);
    ++_revision;
}

ChangedRecords EditedDocument::Finish(ChangedRecords records)
{
    if (records.IsEmpty())
        return records;
    ++_revision;
    for (const std::size_t node : _opened->Resolve())
        records.Nodes.insert(node);
    return records;
}

} // namespace Mox::Host
