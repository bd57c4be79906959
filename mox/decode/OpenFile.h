#pragma once

#include <filesystem>
#include <string_view>

namespace Mox::Host {

/// An open file, which is closed by the destructor.
class OpenFile
{
public:
    /// @param descriptor owned by the object; -1 for none
    explicit OpenFile(int descriptor) : _descriptor(descriptor) {}
    ~OpenFile() { Close(); }

    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&& other) noexcept;

    int Descriptor() const { return _descriptor; }
    bool IsOpen() const { return _descriptor >= 0; }
    void Close();

    /// Returns the same file with a descriptor above the given one, since a child process uses the
    /// first four for its own files.
    /// @throws std::system_error if no descriptor is available
    OpenFile Above(int descriptor) &&;

private:
    int _descriptor;
};

/// Opens a file for reading. Pipes and devices are rejected because reading them may never end or
/// may block forever.
/// @throws HostError naming the file if it cannot be opened or is not a regular file
OpenFile OpenRegularFile(const std::filesystem::path& file);

/// Creates an unnamed in-memory file with the given bytes, positioned at its start.
/// @throws std::system_error if there is not enough memory
OpenFile MakeMemoryFile(std::string_view bytes);

} // namespace Mox::Host
