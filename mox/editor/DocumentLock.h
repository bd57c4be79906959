#pragma once

#include <boost/noncopyable.hpp>

#include <filesystem>

namespace Mox::Host {

/// The exclusive right to edit a document: only one object in all processes has it at a time. It is
/// a lock on a file beside the document, so a process that is killed loses it.
class DocumentLock : private boost::noncopyable
{
public:
    /// @param document need not exist
    /// @throws HostError if another object has the right, naming its process, if the file cannot be
    ///         created, or if it is one of another user, which is left as it is
    explicit DocumentLock(const std::filesystem::path& document);

    /// Releases the lock and removes the file.
    ~DocumentLock();

private:
    bool Take();

    std::filesystem::path _document; ///< as it is named in messages
    std::filesystem::path _file;
    int _descriptor = -1;
};

} // namespace Mox::Host
