#pragma once

#include "mox/shader/ShaderNode.h"

#include <cstddef>
#include <functional>
#include <unordered_map>

namespace Mox::Host {

/// Numbers for functions, from 0: one for all that are equal in name, parameters and body. Their
/// levels may differ.
class FunctionNumbers
{
public:
    /// @param function is referred to and must live as long as the numbers are asked for
    std::size_t NumberOf(const ShaderNode& function)
    {
        return _numbers.try_emplace(&function, _numbers.size()).first->second;
    }

    std::size_t Count() const { return _numbers.size(); }

private:
    struct Hash
    {
        std::size_t operator()(const ShaderNode* function) const
        {
            return std::hash<std::string>()(function->Code);
        }
    };

    struct Same
    {
        bool operator()(const ShaderNode* a, const ShaderNode* b) const;
    };

    std::unordered_map<const ShaderNode*, std::size_t, Hash, Same> _numbers;
};

} // namespace Mox::Host
