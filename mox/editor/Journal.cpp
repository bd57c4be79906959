#include "mox/editor/Journal.h"

#include "mox/Text.h"
#include "mox/editor/CompanionFile.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/json/JsonCursor.h"
#include "mox/json/StepJson.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr int journalVersion = 1;

/// Everything in a journal was accepted before, so it must not be refused now because of its size.
constexpr JsonLimits journalLimits = {.Bytes = std::numeric_limits<std::size_t>::max(),
                                      .Values = std::numeric_limits<std::size_t>::max()};

HostError WriteError(const std::filesystem::path& file, int error)
{
    return {Place(file.string()),
            Compose("cannot be written: ", std::generic_category().message(error))};
}

/// @returns 0 or the value of errno
int WriteAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return errno;
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return 0;
}

std::string ReadHeader(const JsonCursor& header)
{
    header.AllowOnly({"version", "document"});
    const JsonCursor version = header.Member("version");
    if (version.Integer() != journalVersion)
        version.Refuse(
            Compose("this version of the journal is not supported, expected ", journalVersion));
    return header.Member("document").Text();
}

} // namespace

Journal::Journal(const std::filesystem::path& document)
    : _file(CompanionFile(document, "mox-journal"))
{}

Journal::~Journal()
{
    Close();
}

std::optional<JournalContent> Journal::Read() const
{
    if (!IsThere())
        return std::nullopt;
    const std::string text = ReadFile(_file);
    std::optional<JournalContent> content;
    std::string_view rest = text;
    for (std::size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
        const Json line = ParseJson(rest.substr(0, end), _file.string(), journalLimits);
        const JsonCursor cursor(line, _file.string());
        if (content)
            content->Changes.push_back(ReadSteps(cursor));
        else
            content.emplace().Document = ReadHeader(cursor);
        rest.remove_prefix(end + 1);
    }
    return content;
}

void Journal::Start(const std::string& document)
{
    const std::string header =
        FormatJson({{"version", journalVersion}, {"document", document}}) + "\n";
    IsThere(); // rejects a symbolic link, whose target AtomicFile would replace
    AtomicFile file(_file);
    file.Write(header);
    file.Commit(Durability::Deferred);
    Close(); // closes the descriptor of the replaced file
    _descriptor = open(_file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW);
    if (_descriptor < 0)
        throw WriteError(_file, errno);
    _startSize = _size = _sizeBefore = header.size();
}

void Journal::Append(const GraphChange& change)
{
    const std::string line = FormatJson(StepsToJson(change)) + "\n";
    _sizeBefore = _size;
    _size += line.size();
    if (const int error = WriteAll(_descriptor, line)) {
        TakeBack();
        throw WriteError(_file, error);
    }
}

void Journal::TakeBack()
{
    // Truncating needs no space, so it works even on a full disk. If it fails anyway, nothing more
    // may be appended to this file.
    _size = _sizeBefore;
    if (ftruncate(_descriptor, static_cast<off_t>(_size)) != 0)
        Close();
}

void Journal::Remove()
{
    Close();
    std::error_code error;
    std::filesystem::remove(_file, error);
    if (error)
        throw HostError(Place(_file.string()), Compose("cannot be removed: ", error.message()));
}

bool Journal::IsThere() const
{
    std::error_code error;
    const auto status = std::filesystem::symlink_status(_file, error);
    if (status.type() == std::filesystem::file_type::not_found)
        return false;
    if (!std::filesystem::is_regular_file(status))
        throw HostError(Place(_file.string()), "is not a regular file");
    return true;
}

void Journal::Close()
{
    if (_descriptor >= 0)
        close(std::exchange(_descriptor, -1));
}

} // namespace Mox::Host
