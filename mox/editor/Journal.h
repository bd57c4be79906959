#pragma once

#include "mox/graph/GraphChange.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// The content of a journal: a document and the changes made to it since.
struct JournalContent
{
    std::string Document; ///< in XML
    std::vector<GraphChange> Changes;
};

/// A file next to a document that records the changes since the last save, so that they survive a
/// crash. Each line is JSON: first the document without the changes, then the changes in order.
/// Appended data is passed to the operating system: nothing is lost if the process is killed, but a
/// power failure may lose the last changes.
class Journal
{
public:
    /// Does not open the file.
    /// @param document file to which the journal belongs
    explicit Journal(const std::filesystem::path& document);
    ~Journal();

    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    const std::filesystem::path& File() const { return _file; }

    /// Reads what an earlier process left; empty if there is no journal. An incomplete last line
    /// was never acknowledged and is ignored.
    /// @throws HostError if the file cannot be read or is not a journal
    std::optional<JournalContent> Read() const;

    /// Starts a new journal that atomically replaces the old one.
    /// @throws HostError if it cannot be written; the old journal is kept in that case
    void Start(const std::string& document);

    /// Whether changes can be appended. If not, call Start first.
    bool IsStarted() const { return _descriptor >= 0; }

    /// Bytes of changes appended since Start.
    std::size_t Size() const { return _size - _startSize; }

    /// Appends a change; the journal must be started.
    /// @throws HostError if it cannot be written; the previous content is kept in that case
    void Append(const GraphChange& change);

    /// Removes the last change, for example because it was refused.
    void TakeBack();

    /// Deletes the file.
    void Remove();

private:
    /// @throws HostError if the path exists but is not a regular file
    bool IsThere() const;
    void Close();

    std::filesystem::path _file;
    int _descriptor = -1;
    std::size_t _startSize = 0;
    std::size_t _size = 0;
    std::size_t _sizeBefore = 0; ///< size before the last change was appended
};

} // namespace Mox::Host
