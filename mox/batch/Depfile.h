#pragma once

#include "mox/host/AtomicFile.h"

#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

namespace Mox::Host {

/// Rules for Make and Ninja that say which inputs the outputs of a run hang on. They are written as
/// they come, and the file appears when all of them stand.
class Depfile
{
public:
    /// @throws HostError as AtomicFile does
    explicit Depfile(const std::filesystem::path& file) : _file(file) {}

    /// A rule for outputs. The inputs get empty rules too: then Make runs again, and does not
    /// complain, when one of them has gone.
    /// @throws HostError if a name holds a line break, which no rule can hold, or as AtomicFile
    /// does
    void Add(const std::vector<std::filesystem::path>& outputs,
             const std::vector<std::filesystem::path>& inputs);

    /// @throws HostError as AtomicFile does
    void Commit() { _file.Commit(); }

private:
    AtomicFile _file;
    std::unordered_set<std::string> _emptyRules;
};

} // namespace Mox::Host
