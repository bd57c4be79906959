#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/ProgramPlan.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Assigns registers to the values of a program. No two values share a register.
class RegisterRules
{
public:
    /// @param problems receives an error for two values in one register, and for a register that
    ///        does not exist
    explicit RegisterRules(ProblemList& problems) : _problems(problems) {}

    /// Reserves the register of a register parameter. Parameters that read the same register with
    /// the same type count as one value.
    void Enter(const ProgramNode& node);

    /// Reserves the parameter's own register if it has one; otherwise assigns the first register
    /// that is free in all stages that read the parameter. Uniforms other than samplers need no
    /// register.
    void GiveRegister(ProgramParameter& parameter);

    /// Reports kinds of parameters that need more registers than exist.
    void CheckCounts(const std::vector<ProgramParameter>& parameters) const;

private:
    using Key = std::pair<ShaderRegisterType, std::int32_t>;

    struct Owner
    {
        std::string Text;
        ShaderType Type;
        bool IsReadable; ///< by other register parameters
    };

    void Take(const ShaderRegister& place, const Owner& owner, const Place& where);
    std::int32_t FindFree(ShaderRegisterType type);

    ProblemList& _problems;
    std::map<Key, Owner> _owners;
    std::map<ShaderRegisterType, std::int32_t> _firstFree; ///< all registers before it are taken
};

} // namespace Mox::Host
