#pragma once

#include <boost/noncopyable.hpp>

#include <filesystem>

namespace Mox::Host {

/// The exclusive right to edit a document; only one object across all processes can hold it. It is
/// a lock on a file next to the document, so it is released even if the process is killed.
class DocumentLock : private boost::noncopyable
{
public:
    /// @param document need not exist
    /// @throws HostError if another object holds the right (the message names its process), if the
    ///         lock file cannot be created, or if it belongs to another user, in which case it is
    ///         left alone
    explicit DocumentLock(const std::filesystem::path& document);

    /// Releases the lock and removes the file.
    ~DocumentLock();

private:
    bool Take();

    std::filesystem::path _document; ///< as messages name it
    std::filesystem::path _file;
    int _descriptor = -1;
};

} // namespace Mox::Host
