#pragma once

#include "mox/program/CgNames.h"
#include "mox/program/ProgramGraph.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// One function of a program, with all nodes that are calls of it.
struct ProgramFunction
{
    std::string CgName;
    const ShaderNode* Definition;
    std::vector<std::size_t> Nodes; ///< of the program graph, the one that has the definition first
};

/// The functions of a pair of programs. Different ones of one name get names of their own.
class FunctionTable
{
public:
    FunctionTable(const ProgramGraph& graph, CgNames& names);

    const std::vector<ProgramFunction>& Functions() const { return _functions; }
    const ProgramFunction& FunctionOf(std::size_t node) const { return _functions[_indices[node]]; }

private:
    std::vector<ProgramFunction> _functions;
    std::vector<std::size_t> _indices; ///< of the function of each node that calls one
};

/// The head of a function or entry point: name and parameters in brackets.
std::string FormatSignature(const ShaderNode& function, const std::string& name);

} // namespace Mox::Host
