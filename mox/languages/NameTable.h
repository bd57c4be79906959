#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Mox::Languages {

/// Words as a set, from a list with spaces between them.
using Words = std::unordered_set<std::string>;
Words SplitWords(std::string_view list);

/// The names that a program uses, in scopes within one another.
class NameTable
{
public:
    /// @param reserved words that no name may be; must outlive the table
    explicit NameTable(const Words& reserved) : _reserved(reserved) {}

    /// Takes a name: the wanted one if the language allows it and no scope around has it, else one
    /// with an underscore or a number after it. There are never two underscores in a row.
    std::string Claim(std::string_view wanted);

    /// Whether Claim would take this very name.
    bool IsFree(const std::string& name) const
    {
        return !_taken.contains(name) && !_reserved.contains(name);
    }

    /// Frees names for as long as nothing sees what they are of.
    void Hide(const std::vector<std::string>& names);
    void Show(const std::vector<std::string>& names);

    void OpenScope() { _scopes.push_back(_order.size()); }
    void CloseScope();

private:
    const Words& _reserved;
    std::unordered_map<std::string, int> _taken; ///< with the number to try next
    std::vector<std::string> _order;
    std::vector<std::size_t> _scopes;
};

} // namespace Mox::Languages
