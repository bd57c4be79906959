#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Mox::Languages {

using Words = std::unordered_set<std::string>;

/// Splits a list of words separated by spaces into a set.
Words SplitWords(std::string_view list);

/// The names used in a program, in nested scopes.
class NameTable
{
public:
    /// @param reserved words that cannot be used as names; must outlive the table
    explicit NameTable(const Words& reserved) : _reserved(reserved) {}

    /// Reserves and returns a name: the wanted one if the language allows it and no enclosing scope
    /// uses it, otherwise one with an underscore or a number appended. Names never contain two
    /// consecutive underscores.
    std::string Claim(std::string_view wanted);

    /// Whether Claim would return this name unchanged.
    bool IsFree(const std::string& name) const
    {
        return !_taken.contains(name) && !_reserved.contains(name);
    }

    /// Frees names while the things that they refer to are not visible.
    void Hide(const std::vector<std::string>& names);
    void Show(const std::vector<std::string>& names);

    void OpenScope() { _scopes.push_back(_order.size()); }
    void CloseScope();

private:
    const Words& _reserved;
    std::unordered_map<std::string, int> _taken; ///< each with the next number to try
    std::vector<std::string> _order;
    std::vector<std::size_t> _scopes;
};

} // namespace Mox::Languages
