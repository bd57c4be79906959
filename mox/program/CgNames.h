#pragma once

#include <string>
#include <unordered_map>

namespace Mox::Host {

/// Converts any string to a Cg name that resembles it: each run of characters that are not allowed
/// in a name becomes one underscore; a leading digit gets an underscore before it, a reserved word
/// of Cg one after it.
std::string ToSafeCgName(const std::string& text);

/// The names already in use in a pair of programs.
class CgNames
{
public:
    /// Marks a name as used.
    void Take(const std::string& name) { _taken.try_emplace(name, 1); }

    /// Reserves and returns an unused name: the result of ToSafeCgName or, if that is in use, the
    /// same with "_2", "_3" and so on appended.
    std::string Claim(const std::string& wanted);

private:
    std::unordered_map<std::string, int> _taken; ///< with the last number appended to each name
};

} // namespace Mox::Host
