#pragma once

#include <boost/noncopyable.hpp>

#include <filesystem>

namespace Mox::Host {

/// The right to edit a document, which only one object has at a time, in whatever process. A file
/// beside the document stands for it. A process that is killed loses it.
class DocumentLock : private boost::noncopyable
{
public:
    /// @param document need not exist
    /// @throws HostError if somebody else has the right, naming the process, or if the file cannot
    ///         be made
    explicit DocumentLock(const std::filesystem::path& document);

    /// Gives the right back and removes the file.
    ~DocumentLock();

private:
    bool Take();

    std::filesystem::path _document; ///< as it is named in messages
    std::filesystem::path _file;
    int _descriptor = -1;
};

} // namespace Mox::Host
