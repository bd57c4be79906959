#pragma once

#include <filesystem>
#include <string_view>

namespace Mox::Host {

/// An open file, which is closed with the object.
class OpenFile
{
public:
    /// @param descriptor becomes the object's; -1 for none
    explicit OpenFile(int descriptor) : _descriptor(descriptor) {}
    ~OpenFile() { Close(); }

    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&& other) noexcept;

    int Descriptor() const { return _descriptor; }
    bool IsOpen() const { return _descriptor >= 0; }
    void Close();

    /// The same file under a descriptor that is not one of the first four, which a child process
    /// uses for its own files.
    /// @throws std::system_error if there is no further descriptor
    OpenFile Above(int descriptor) &&;

private:
    int _descriptor;
};

/// Opens a file to read it. Pipes and devices, which may have no end or wait for ever, are refused.
/// @throws HostError naming the file if it cannot be opened or is not a regular file
OpenFile OpenRegularFile(const std::filesystem::path& file);

/// A new file that has no name and holds some bytes in memory, to be read from its start.
/// @throws std::system_error if there is no memory for it
OpenFile MakeMemoryFile(std::string_view bytes);

} // namespace Mox::Host
