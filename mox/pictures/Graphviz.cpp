#include "mox/pictures/Graphviz.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/EndCleanup.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <boost/archive/iterators/base64_from_binary.hpp>
#include <boost/archive/iterators/transform_width.hpp>
#include <boost/noncopyable.hpp>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;
namespace fs = std::filesystem;

/// A temporary folder that is removed with the object.
class TemporaryFolder : private boost::noncopyable
{
public:
    TemporaryFolder()
    {
        std::error_code error;
        std::string name = fs::temp_directory_path(error) / "mox-XXXXXX";
        if (error) {
            throw HostError(
                {}, Compose("there is no folder for temporary files (TMPDIR, TMP, TEMP, TEMPDIR): ",
                            error.message()));
        }
        const auto delay = DelayEnd();
        if (!mkdtemp(name.data()))
            throw HostError(name, Compose("cannot be created: ", strerror(errno)));
        _path = name;
    }

    ~TemporaryFolder()
    {
        // If two threads removed the folder at the same time, each could stop at a file that the
        // other has just removed.
        const auto delay = DelayEnd();
        Remove();
    }

    fs::path operator/(const std::string& name) const { return _path / name; }
    const fs::path& Path() const { return _path; }

private:
    void Remove()
    {
        std::error_code ignored;
        fs::remove_all(_path, ignored);
    }

    fs::path _path; ///< empty until the folder exists
    const EndCleanup _cleanup{[this] { Remove(); }};
};

/// @returns the status from waitpid; nothing if another thread has already waited for the child
std::optional<int> WaitFor(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return {};
    }
    return status;
}

/// Runs a program without input; its output is written to a file.
/// @returns its exit status, or 128 plus the number of the signal that ended it
int RunProgram(std::vector<std::string> arguments, const fs::path& messages)
{
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, messages.c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0600);
    posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    posix_spawnattr_t ownGroup; // so that its child processes can be killed with it
    posix_spawnattr_init(&ownGroup);
    posix_spawnattr_setflags(&ownGroup, POSIX_SPAWN_SETPGROUP);
    std::atomic<pid_t> child = 0;
    const EndCleanup killGroup([&child] {
        if (child != 0 && kill(-child, SIGKILL) == 0)
            WaitFor(child);
    });
    {
        const auto delay = DelayEnd();
        pid_t started = 0;
        const int error =
            posix_spawnp(&started, pointers.front(), &files, &ownGroup, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&ownGroup);
        if (error != 0) {
            throw HostError({},
                            Compose("cannot run \"", arguments.front(), "\": ", strerror(error)));
        }
        child = started;
    }
    const std::optional<int> result = WaitFor(child);
    child = 0;
    if (!result)
        throw HostError({}, "cannot wait for the process that runs Graphviz");
    const int status = *result;
    constexpr int signalStatus = 128;
    return WIFEXITED(status) ? WEXITSTATUS(status) : signalStatus + WTERMSIG(status);
}

/// Throws if Graphviz failed when run under "env" and "timeout".
void RequireSuccess(int status, const fs::path& messages)
{
    constexpr int timedOut = 124;
    constexpr int killed = 137;
    constexpr int notFound = 127;
    if (status == 0)
        return;
    if (status == notFound)
        throw HostError({}, "cannot find the Graphviz program \"dot\", which draws diagrams");
    if (status == timedOut || status == killed)
        throw HostError({}, "Graphviz did not finish the diagram within two minutes");
    const std::string text = ReadFile(messages);
    throw HostError({}, Compose("Graphviz cannot draw the graph: status ", status, " ",
                                text.substr(0, text.find('\n'))));
}

std::string EncodeBase64(const std::string& bytes)
{
    using namespace boost::archive::iterators;
    using Digits = base64_from_binary<transform_width<std::string::const_iterator, 6, 8>>;
    std::string text(Digits(bytes.begin()), Digits(bytes.end()));
    text.append((3 - bytes.size() % 3) % 3, '=');
    return text;
}

/// Replaces the file names of images with their data. No text in a drawing can be mistaken for the
/// start of an element, since "<" is always escaped.
std::string EmbedImages(const std::string& svg, const TemporaryFolder& folder)
{
    constexpr std::string_view opening = "<image xlink:href=\"";
    std::string embedded;
    std::size_t done = 0;
    for (std::size_t start = 0; (start = svg.find(opening, done)) != std::string::npos;) {
        start += opening.size();
        const std::size_t end = svg.find('"', start);
        const std::string file = svg.substr(start, end - start);
        embedded += Compose(std::string_view(svg).substr(done, start - done),
                            "data:image/png;base64,", EncodeBase64(ReadFile(folder / file)));
        done = end;
    }
    return embedded + svg.substr(done);
}

} // namespace

std::string RenderPicture(const Drawing& drawing, PictureFormat format)
{
    constexpr std::size_t maxDotSize = std::size_t(32) << 20; // a larger graph takes too long
    if (drawing.Dot.size() > maxDotSize)
        throw HostError({}, "the graph is too large to draw");
    const TemporaryFolder folder;
    AtomicFile dot(folder / "drawing.dot");
    dot.Write(drawing.Dot);
    dot.Commit(Durability::Deferred);
    for (const auto& [file, image] : drawing.Images)
        WritePng(image, folder / file);
    const bool isSvg = format == PictureFormat::Svg;
    const fs::path messages = folder / "messages";
    // Another locale could write numbers with decimal commas.
    RequireSuccess(RunProgram({"env", "--chdir=" + folder.Path().string(), "LC_ALL=C", "timeout",
                               "--kill-after=5", "2m", "dot", isSvg ? "-Tsvg" : "-Tpng", "-o",
                               "drawn", "drawing.dot"},
                              messages),
                   messages);
    std::string drawn = ReadFile(folder / "drawn");
    return isSvg ? EmbedImages(drawn, folder) : drawn;
}

} // namespace Mox::Host
