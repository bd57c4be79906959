#pragma once

#include "mox/host/AtomicFile.h"
#include "mox/host/HostError.h"
#include "mox/host/Problem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace Mox::Host {

/// Whether a rule can name a file such that GNU Make and Ninja read the same name and nothing else.
/// Names with control characters or one of "%&'*;<=>?[^`|, with a backslash or a blank at the end,
/// and with a few rarer combinations have no such spelling.
bool IsDepfileName(const std::filesystem::path& name);

/// Rules for Make and Ninja that list the inputs on which the outputs of a run depend. The rules
/// are written as they are added, and the file appears with Commit.
class Depfile
{
public:
    /// @throws HostError as AtomicFile does
    explicit Depfile(const std::filesystem::path& file) : _name(file) { _file.emplace(file); }

    /// Adds a rule. The inputs get empty rules too: with these, Make runs again, without an error,
    /// when one of them was deleted. A file without a name for rules is left out; a rule without
    /// outputs is left out as a whole. If the file cannot be written, or is itself among the
    /// outputs or inputs, Commit reports it.
    /// @param problems receives a warning for each input that is left out, when it comes first, and
    /// one
    ///        for the outputs of a rule
    void Add(const std::vector<std::filesystem::path>& outputs,
             const std::vector<std::filesystem::path>& inputs, ProblemList& problems);

    /// @throws HostError if the file cannot be written, or would replace an output or input
    void Commit();

private:
    void Write(const std::string& rules);
    void Fail(const HostError& error);
    void RequireOther(const std::filesystem::path& named);

    const std::filesystem::path _name;
    std::optional<AtomicFile> _file; ///< nothing after a failure
    std::optional<HostError> _failure;
    std::unordered_set<std::string> _inputs; ///< those that have their empty rules or warnings
};

} // namespace Mox::Host
