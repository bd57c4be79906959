#include "mox/languages/NameTable.h"

#include "mox/Identifier.h"
#include "mox/Text.h"

#include <algorithm>

namespace Mox::Languages {

namespace {

constexpr int firstNumber = 2;

}

Words SplitWords(std::string_view list)
{
    Words words;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find_first_of(" \n"), list.size());
        if (end > 0)
            words.emplace(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return words;
}

std::string NameTable::Claim(std::string_view wanted)
{
    std::string name;
    for (const char c : wanted) {
        if (c != '_' || !name.ends_with('_'))
            name += c;
    }
    if (name.empty() || name == "_" || IsDigit(name[0]))
        name.insert(0, "v");
    const auto addUnderscore = [&] {
        if (!name.ends_with('_'))
            name += '_';
    };
    if (name.starts_with("gl_"))
        name.insert(0, "v_");
    else if (_reserved.contains(name))
        addUnderscore();
    if (const auto taken = _taken.find(name); taken != _taken.end() || _reserved.contains(name)) {
        int unused = firstNumber;
        int& number = taken == _taken.end() ? unused : taken->second;
        addUnderscore();
        const std::string base = name;
        do
            name = Materials::Compose(base, number++);
        while (_taken.contains(name) || _reserved.contains(name));
    }
    _taken.emplace(name, firstNumber);
    _order.push_back(name);
    return name;
}

void NameTable::Hide(const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        _taken.erase(name);
}

void NameTable::Show(const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        _taken.emplace(name, firstNumber);
}

void NameTable::CloseScope()
{
    for (; _order.size() > _scopes.back(); _order.pop_back())
        _taken.erase(_order.back());
    _scopes.pop_back();
}

} // namespace Mox::Languages
