#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/// An empty folder that goes away with all that is in it.
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

    /// Writes a file, with the folders that it needs.
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

    /// Number of entries of the folder itself, hidden ones too.
    std::ptrdiff_t Count() const
    {
        return std::distance(std::filesystem::directory_iterator(_path), {});
    }

private:
    std::filesystem::path _path;
};
