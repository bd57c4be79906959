#pragma once

#include "mox/program/CgNames.h"
#include "mox/program/CgProgram.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/StagePlan.h"

#include <map>
#include <string>
#include <vector>

namespace Mox::Host {

/// The parameters of a pair of programs: those of one kind, name and type are one. Gives them their
/// names and registers.
class ParameterTable
{
public:
    /// @param originalNames what a node calls a parameter whose name in the graph is a stand-in
    /// @param problems takes a name with two types, and more samplers, streams or constants than
    ///        there are registers for
    ParameterTable(const ProgramGraph& graph, const StagePlan& plan,
                   const std::map<std::string, std::string>& originalNames, CgNames& names,
                   ProblemList& problems);

    const std::vector<ProgramParameter>& Parameters() const { return _parameters; }

    /// The parameter that a node of the program stands for.
    const ProgramParameter& ParameterOf(std::size_t node) const
    {
        return _parameters[_indices.at(node)];
    }

private:
    void Collect(const ProgramGraph& graph, const StagePlan& plan,
                 const std::map<std::string, std::string>& originalNames, ProblemList& problems);
    void GiveNames(CgNames& names);
    void GiveRegisters(ProblemList& problems);

    std::vector<ProgramParameter> _parameters;
    std::map<std::size_t, std::size_t> _indices; ///< from a node of the program
};

} // namespace Mox::Host
