#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// A part of a formula: numbers, the name of a value, or the call of a node.
struct Expression
{
    std::string Name; ///< of a value or a node; empty for numbers
    bool IsCall = false;
    std::vector<float> Numbers;
    std::vector<Expression> Arguments; ///< of a call
};

/// A formula of the table of standard nodes, such as "t = add( a, 1 ); multiply( t, t )".
struct Formula
{
    struct Step
    {
        std::string Name; ///< under which later steps know the value; empty for the result
        Expression Value;
    };

    bool IsEmpty() const { return Steps.empty(); }

    std::vector<Step> Steps; ///< the last one is the result
};

/// @throws HostError if the text is not a formula. Arguments may be nested only 32 deep.
Formula ParseFormula(std::string_view text);

} // namespace Mox::Host
