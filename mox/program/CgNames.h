#pragma once

#include <string>
#include <unordered_map>

namespace Mox::Host {

/// A Cg name as close as possible to any text: what no Cg name may hold becomes one underscore, an
/// underscore goes before a leading digit and behind a word that Cg has itself.
std::string ToSafeCgName(const std::string& text);

/// The names that are taken in a pair of programs.
class CgNames
{
public:
    /// Takes a name that the text uses already.
    void Take(const std::string& name) { _taken.try_emplace(name, firstNumber); }

    /// Takes a safe name that nobody has: that of ToSafeCgName, or else with "_2", "_3" and so on
    /// behind it.
    std::string Claim(const std::string& wanted);

private:
    static constexpr int firstNumber = 2;

    /// For each name that is taken the number to try behind it when it is wanted again.
    std::unordered_map<std::string, int> _taken;
};

} // namespace Mox::Host
