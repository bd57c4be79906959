#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/// A temporary folder that is deleted with its content.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "mox XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            std::abort();
        _path = pattern;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(_path); }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return _path; }

    /// Writes a file, creating its folders if necessary.
    std::filesystem::path Write(const std::string& name, std::string_view bytes = "") const
    {
        const std::filesystem::path file = _path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    std::string Read(const std::string& name) const
    {
        std::ifstream stream(_path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// Number of entries in the folder itself, including hidden ones.
    std::ptrdiff_t Count() const
    {
        return std::distance(std::filesystem::directory_iterator(_path), {});
    }

private:
    std::filesystem::path _path;
};
