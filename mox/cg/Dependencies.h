#pragma once

#include "mox/cg/Module.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace Mox::Cg {

/// Which parameters the outputs of functions depend on. Where the flow decides, the answer is that
/// there is a dependency.
class Dependencies
{
public:
    /// Reads all functions of a lowered module but "main", which must outlive the object.
    explicit Dependencies(const Module& module);

    /// Parameters, by their place.
    using Set = std::vector<bool>;

    /// @param output place of a parameter for an output
    const Set& OfOutput(const Function& function, std::size_t output) const;
    const Set& OfResult(const Function& function) const;

    /// What decides whether the function discards.
    const Set& OfDiscard(const Function& function) const;

    /// Calls a visitor with each variable that a value depends on.
    void VisitReads(const Expression& value,
                    const std::function<void(const Variable*)>& visit) const;

private:
    class Reader;

    struct Summary
    {
        std::vector<Set> Outputs; ///< by the place of the parameter; empty for inputs
        Set Result;
        Set Discard;
    };

    std::unordered_map<const Function*, Summary> _summaries;
};

} // namespace Mox::Cg
