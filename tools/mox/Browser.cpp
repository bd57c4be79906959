#include "Browser.h"

#include "mox/Text.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <unistd.h>

namespace Mox::Tool {

namespace {

bool IsSet(const char* name)
{
    const char* value = std::getenv(name);
    return value && *value;
}

/// Creates a folder that only this user can read, in a location that the system cleans up.
std::filesystem::path MakePrivateFolder()
{
    const std::filesystem::path parent = IsSet("XDG_RUNTIME_DIR")
                                             ? std::filesystem::path(std::getenv("XDG_RUNTIME_DIR"))
                                             : std::filesystem::temp_directory_path();
    std::string pattern = (parent / "mox-edit-XXXXXX").string();
    return mkdtemp(pattern.data()) ? std::filesystem::path(pattern) : std::filesystem::path();
}

/// Opens a file with the desktop's default program. It runs independently and does not inherit this
/// program's open files, so that no other process waits for it to end.
bool StartDesktopProgram(const std::string& file)
{
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    std::string program = "xdg-open";
    std::string argument = file;
    char* const arguments[] = {program.data(), argument.data(), nullptr};
    const int error =
        posix_spawnp(nullptr, program.c_str(), &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0;
}

} // namespace

Browser::~Browser()
{
    RemoveFolder();
}

bool Browser::Open(const std::string& address)
{
    if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY"))
        return false;
    {
        const auto delay = Host::DelayEnd();
        _folder = MakePrivateFolder();
        if (_folder.empty())
            return false;
        _cleanup.emplace([this] { RemoveFolder(); });
    }
    const std::filesystem::path file = _folder / "editor.html";
    std::ofstream stream(file);
    stream << "<!doctype html><meta charset=\"utf-8\"><title>Mox</title>"
              "<meta http-equiv=\"refresh\" content=\"0;url="
           << address << "\">\n";
    stream.close();
    return stream && StartDesktopProgram(file.string());
}

void Browser::RemoveFolder() noexcept
{
    std::error_code error;
    if (!_folder.empty())
        std::filesystem::remove_all(_folder, error);
}

} // namespace Mox::Tool
