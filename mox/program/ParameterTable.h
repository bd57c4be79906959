#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgNames.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/StageChoice.h"

#include <cstddef>
#include <map>
#include <vector>

namespace Mox::Host {

/// Collects the parameters of a pair of programs and assigns their Cg names and registers. Nodes
/// with the same owner (material or environment), kind and name share one parameter.
class ParameterTable
{
public:
    /// @param problems receives an error for a name with two types, for two values in one register,
    ///        and for more samplers, streams or constants than there are registers; and a warning
    ///        for a binding with the name of an environment value
    ParameterTable(const ProgramGraph& graph, const StageChoice& stages, CgNames& names,
                   ProblemList& problems);

    const std::vector<ProgramParameter>& Parameters() const { return _parameters; }

    /// Index of the parameter that a node of the program represents.
    std::size_t IndexOf(std::size_t node) const { return _indices.at(node); }

private:
    void Collect(const ProgramGraph& graph, const StageChoice& stages, ProblemList& problems);
    void WarnOfEnvironmentNames(ProblemList& problems) const;
    void GiveNames(CgNames& names);
    void GiveRegisters(const ProgramGraph& graph, ProblemList& problems);

    std::vector<ProgramParameter> _parameters;
    std::map<std::size_t, std::size_t> _indices; ///< by node of the program
};

} // namespace Mox::Host
