#pragma once

#include "mox/shader/ShaderNode.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_set>

namespace Mox::Host {

/// Functions that are equal in name, parameters and body are one definition. Their levels may
/// differ.
class FunctionSet
{
public:
    /// The first of all functions so far that are equal to this one.
    /// @param function is referred to and must live as long as the set
    const ShaderNode& DefinitionOf(const ShaderNode& function)
    {
        return **_definitions.insert(&function).first;
    }

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

    std::unordered_set<const ShaderNode*, Hash, Same> _definitions;
};

} // namespace Mox::Host
