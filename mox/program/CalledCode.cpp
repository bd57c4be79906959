#include "mox/program/CalledCode.h"

#include "mox/Identifier.h"

#include <algorithm>
#include <unordered_set>

namespace Mox::Host {

std::set<std::size_t> FindCalledCode(const std::vector<EnvironmentCode>& code,
                                     const std::vector<std::string_view>& bodies)
{
    std::unordered_set<std::string_view> words;
    const auto read = [&](std::string_view text) {
        ForEachWord(text, [&](std::string_view word, std::size_t) { words.insert(word); });
    };
    std::for_each(bodies.begin(), bodies.end(), read);
    std::set<std::size_t> called;
    for (bool isGrowing = true; isGrowing;) {
        isGrowing = false;
        for (std::size_t i = 0; i < code.size(); ++i) {
            const std::vector<std::string>& names = code[i].Provides;
            const auto isCalled = [&](const std::string& name) { return words.contains(name); };
            if (!std::any_of(names.begin(), names.end(), isCalled) || !called.insert(i).second)
                continue;
            isGrowing = true;
            read(code[i].Text);
        }
    }
    return called;
}

} // namespace Mox::Host
