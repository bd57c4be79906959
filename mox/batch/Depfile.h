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

/// Whether a file name can be written in a rule so that GNU Make and Ninja both read exactly that
/// name. This is impossible for names with control characters or one of "%&'*;<=>?[^`|, for names
/// that end in a backslash or a space, and for a few rarer combinations.
bool IsDepfileName(const std::filesystem::path& name);

/// Rules for Make and Ninja that list the inputs on which the outputs of a run depend. The rules
/// are written as they are added; Commit makes the file appear.
class Depfile
{
public:
    /// @throws HostError as AtomicFile does
    explicit Depfile(const std::filesystem::path& file) : _name(file) { _file.emplace(file); }

    /// Adds a rule, and an empty rule for each input, so that Make rebuilds without an error after
    /// an input has been deleted. Files whose names cannot be written are omitted; a rule without
    /// outputs is omitted entirely. If the depfile cannot be written, or is itself one of the
    /// outputs or inputs, Commit reports it.
    /// @param problems receives one warning for the outputs of a rule, and one for each omitted
    ///        input when it first occurs
    void Add(const std::vector<std::filesystem::path>& outputs,
             const std::vector<std::filesystem::path>& inputs, ProblemList& problems);

    /// @throws HostError if the file cannot be written, or would replace an output or input
    void Commit();

private:
    void Write(const std::string& rules);
    void Fail(const HostError& error);
    void RequireOther(const std::filesystem::path& named);

    const std::filesystem::path _name;
    std::optional<AtomicFile> _file; ///< empty after a failure
    std::optional<HostError> _failure;
    std::unordered_set<std::string> _inputs; ///< inputs that already have an empty rule or a
                                             ///< warning
};

} // namespace Mox::Host
