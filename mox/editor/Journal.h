#pragma once

#include "mox/graph/GraphChange.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// What a journal holds: a document, and the changes that were made of it since.
struct JournalContent
{
    std::string Document; ///< its text
    std::vector<GraphChange> Changes;
};

/// A file beside a document that holds what was changed since the document was saved, so that it
/// outlives the process. Each line is JSON: first the document as it was, then the changes in their
/// order. What has been appended is with the system, so a process that is killed loses nothing; a
/// loss of power may.
class Journal
{
public:
    /// Opens nothing.
    /// @param document file that the journal belongs to
    explicit Journal(const std::filesystem::path& document);
    ~Journal();

    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    const std::filesystem::path& File() const { return _file; }

    /// What an earlier process has left; nothing if there is no journal. A last line that is not
    /// whole was never acknowledged and does not count.
    /// @throws HostError if the journal cannot be read or is not one
    std::optional<JournalContent> Read() const;

    /// Begins anew; the old journal is replaced in one go.
    /// @throws HostError if it cannot be written; the old one stays then
    void Start(const std::string& document);

    /// Whether changes can be appended. If not, Start makes it so.
    bool IsStarted() const { return _descriptor >= 0; }

    /// Bytes of the changes since Start.
    std::size_t Size() const { return _size - _startSize; }

    /// The journal must be started.
    /// @throws HostError if it cannot be written; what it held before stays then
    void Append(const GraphChange& change);

    /// Removes what was appended last, since it was not done after all.
    void TakeBack();

    /// Removes the file.
    void Remove();

private:
    /// @throws HostError if something else has the name
    bool IsThere() const;
    void Close();

    std::filesystem::path _file;
    int _descriptor = -1;
    std::size_t _startSize = 0;
    std::size_t _size = 0;
    std::size_t _sizeBefore = 0; ///< without what was appended last
};

} // namespace Mox::Host
