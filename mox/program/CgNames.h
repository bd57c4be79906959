#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

/// Whether Cg has the word itself: a keyword, a type or a function of its library.
bool IsReservedCgWord(const std::string& word);

/// A Cg name as close as possible to any text: what no Cg name may hold becomes one underscore, an
/// underscore goes before a leading digit and behind a word that Cg has itself.
std::string ToSafeCgName(const std::string& text);

/// The names that are taken in a pair of programs.
class CgNames
{
public:
    /// Takes a name that the text uses already.
    void Take(const std::string& name) { _taken.insert(name); }

    bool IsTaken(const std::string& name) const { return _taken.contains(name); }

    /// Takes a safe name that nobody has: that of ToSafeCgName, or else with "_2", "_3" and so on
    /// behind it.
    std::string Claim(const std::string& wanted);

private:
    std::unordered_set<std::string> _taken;
    std::unordered_map<std::string, int> _lastNumbers; ///< behind each name that was wanted again
};

} // namespace Mox::Host
