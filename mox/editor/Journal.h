#pragma once

#include "mox/graph/GraphChange.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// The content of a journal: a document, and the changes made to it since.
struct JournalContent
{
    std::string Document; ///< its text
    std::vector<GraphChange> Changes;
};

/// A file beside a document with the changes made since the document was saved, so that they
/// outlive the process. Each line is JSON: first the document as it was, then the changes in order.
/// What has been appended is in the hands of the system: if the process is killed, nothing is lost,
/// but a loss of power may cost the last changes.
class Journal
{
public:
    /// Opens nothing.
    /// @param document file to which the journal belongs
    explicit Journal(const std::filesystem::path& document);
    ~Journal();

    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    const std::filesystem::path& File() const { return _file; }

    /// What an earlier process left; nothing if there is no journal. A last line that is incomplete
    /// was never acknowledged and is ignored.
    /// @throws HostError if the file cannot be read or is not a journal
    std::optional<JournalContent> Read() const;

    /// Starts a new journal, which replaces the old one as a whole.
    /// @throws HostError if it cannot be written; the old one stays then
    void Start(const std::string& document);

    /// Whether changes can be appended. If not, call Start.
    bool IsStarted() const { return _descriptor >= 0; }

    /// Bytes of the changes since Start.
    std::size_t Size() const { return _size - _startSize; }

    /// The journal must be started.
    /// @throws HostError if it cannot be written; what it held before stays then
    void Append(const GraphChange& change);

    /// Removes the last change, for example because it was refused.
    void TakeBack();

    /// Removes the file.
    void Remove();

private:
    /// @throws HostError if the name is not that of a regular file
    bool IsThere() const;
    void Close();

    std::filesystem::path _file;
    int _descriptor = -1;
    std::size_t _startSize = 0;
    std::size_t _size = 0;
    std::size_t _sizeBefore = 0; ///< without what was appended last
};

} // namespace Mox::Host
