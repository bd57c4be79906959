#pragma once

#include "mox/cg/Module.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace Mox::Cg {

/// Finds the parameters that the outputs of functions depend on. The analysis is conservative:
/// where a dependency depends on control flow, it is assumed to exist.
class Dependencies
{
public:
    /// Analyses all functions of a lowered module except "main". The module must outlive this
    /// object.
    explicit Dependencies(const Module& module);

    /// A set of parameters, indexed by their position.
    using Set = std::vector<bool>;

    /// @param output position of an output parameter
    const Set& OfOutput(const Function& function, std::size_t output) const;
    const Set& OfResult(const Function& function) const;

    /// The parameters that determine whether the function discards the fragment.
    const Set& OfDiscard(const Function& function) const;

    /// Calls a visitor with each variable that a value depends on.
    void VisitReads(const Expression& value,
                    const std::function<void(const Variable*)>& visit) const;

private:
    class Reader;

    struct Summary
    {
        std::vector<Set> Outputs; ///< by parameter position; empty for inputs
        Set Result;
        Set Discard;
    };

    std::unordered_map<const Function*, Summary> _summaries;
};

} // namespace Mox::Cg
