#include "mox/decode/DecodeProcess.h"

#include "mox/Text.h"
#include "mox/decode/DecodedFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// The last of the descriptors that are open in the program.
constexpr int folderDescriptor = 3;

/// The initial state of a new process: its files, and no blocked or ignored signals.
class SpawnSettings : private boost::noncopyable
{
public:
    SpawnSettings(const OpenFile& input, const OpenFile& output, const OpenFile& folder)
    {
        posix_spawn_file_actions_init(&_files);
        posix_spawnattr_init(&_attributes);
        posix_spawn_file_actions_adddup2(&_files, input.Descriptor(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&_files, output.Descriptor(), STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&_files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (folder.IsOpen())
            posix_spawn_file_actions_adddup2(&_files, folder.Descriptor(), folderDescriptor);
        posix_spawn_file_actions_addclosefrom_np(&_files, folder.IsOpen() ? folderDescriptor + 1
                                                                          : folderDescriptor);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&_attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&_attributes, &signals);
        posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }

    ~SpawnSettings()
    {
        posix_spawnattr_destroy(&_attributes);
        posix_spawn_file_actions_destroy(&_files);
    }

    const posix_spawn_file_actions_t* Files() const { return &_files; }
    const posix_spawnattr_t* Attributes() const { return &_attributes; }

private:
    posix_spawn_file_actions_t _files = {};
    posix_spawnattr_t _attributes = {};
};

pid_t Start(const std::filesystem::path& program, std::vector<std::string> arguments,
            const SpawnSettings& settings)
{
    std::string name = program.string();
    std::vector<char*> pointers = {name.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t process = 0;
    const int error = posix_spawn(&process, name.c_str(), settings.Files(), settings.Attributes(),
                                  pointers.data(), environ);
    if (error == ENOMEM)
        throw std::bad_alloc();
    if (error != 0) {
        throw DecodeError(Compose("cannot run the decoder \"", name,
                                  "\": ", std::generic_category().message(error)));
    }
    return process;
}

} // namespace

DecodeProcess::DecodeProcess(const std::filesystem::path& program, const std::string& what,
                             OpenFile file, OpenFile folder, const DecodeLimits& limits)
    : _deadline(std::chrono::steady_clock::now() + std::chrono::seconds(limits.Seconds)),
      _seconds(limits.Seconds), _answer(-1), _cleanup([this] {
          if (_process != 0)
              kill(_process, SIGKILL);
      })
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(),
                                "cannot create a pipe to a decoder");
    _answer = OpenFile(ends[0]);
    OpenFile output(ends[1]);
    output = std::move(output).Above(folderDescriptor);
    file = std::move(file).Above(folderDescriptor);
    if (folder.IsOpen())
        folder = std::move(folder).Above(folderDescriptor);
    const auto delay = DelayEnd();
    _process =
        Start(program, {what, Compose(limits.Side), Compose(limits.Bytes), Compose(limits.Seconds)},
              SpawnSettings(file, output, folder));
}

DecodeProcess::~DecodeProcess()
{
    End();
}

void DecodeProcess::Read(std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        const std::size_t count = ReadSome(bytes);
        bytes = bytes.subspan(count);
        if (count > 0)
            continue;
        const int status = End();
        if (WIFSIGNALED(status)) {
            const char* name = sigdescr_np(WTERMSIG(status));
            throw DecodeError(Compose("the decoder failed: ", name ? name : "unknown signal"));
        }
        throw DecodeError("the decoder failed: its output is incomplete");
    }
}

void DecodeProcess::RequireEnd()
{
    std::byte next{};
    if (ReadSome({&next, 1}) > 0)
        throw DecodeError("the decoder failed: its output is too long");
}

std::size_t DecodeProcess::ReadSome(std::span<std::byte> bytes)
{
    using namespace std::chrono;
    constexpr milliseconds longestWait = 1min; // per call of poll
    while (true) {
        const auto left = ceil<milliseconds>(_deadline - steady_clock::now());
        if (left <= 0ms) {
            throw DecodeError(
                Compose("decoding takes longer than the limit of ", _seconds, " seconds"));
        }
        pollfd answer = {_answer.Descriptor(), POLLIN, 0};
        const int ready = poll(&answer, 1, static_cast<int>(std::min(left, longestWait).count()));
        if (ready > 0) {
            const ssize_t count = read(_answer.Descriptor(), bytes.data(), bytes.size());
            if (count >= 0)
                return static_cast<std::size_t>(count);
        }
        if (ready != 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "cannot read from a decoder");
    }
}

int DecodeProcess::End()
{
    const auto delay = DelayEnd();
    if (_process == 0)
        return 0;
    // A process that has closed its output may still be running. If it has exited, it keeps its
    // status.
    kill(_process, SIGKILL);
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(_process, &status, 0);
    } while (ended < 0 && errno == EINTR);
    _process = 0;
    return ended < 0 ? 0 : status;
}

} // namespace Mox::Host
