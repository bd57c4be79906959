#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// A part of a formula: constants, the name of a value, or a call of a node.
struct Expression
{
    std::string Name; ///< of a value or a node; empty for constants
    bool IsCall = false;
    std::vector<float> Numbers;
    std::vector<Expression> Arguments; ///< of a call
};

/// A formula from the table of standard nodes, such as "t = add( a, 1 ); multiply( t, t )".
struct Formula
{
    struct Step
    {
        std::string Name; ///< name for references in later steps; empty for the result
        Expression Value;
    };

    bool IsEmpty() const { return Steps.empty(); }

    std::vector<Step> Steps; ///< the last step computes the result
};

/// Parses a formula. Calls may be nested up to 32 levels deep.
/// @throws HostError if it is not a valid formula
Formula ParseFormula(std::string_view text);

} // namespace Mox::Host
