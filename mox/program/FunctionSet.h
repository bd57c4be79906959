#pragma once

#include "mox/shader/ShaderNode.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_set>

namespace Mox::Host {

/// Merges functions with equal name, parameters and body into one definition. Their levels may
/// differ.
class FunctionSet
{
public:
    /// Returns the first function passed to this set that equals the given one.
    /// @param function must outlive the set
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
