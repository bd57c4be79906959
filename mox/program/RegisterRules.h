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

/// Which register each value of a program has. No two values have the same one.
class RegisterRules
{
public:
    /// @param problems takes two values in one register, and a register that does not exist
    explicit RegisterRules(ProblemList& problems) : _problems(problems) {}

    /// Takes the register of a register parameter. Several that read one register as one type are
    /// one value.
    void Enter(const ProgramNode& node);

    /// Takes the parameter's own register if it has one, and else gives it the first that is free
    /// in all stages that read it. Uniforms that are no samplers need none.
    void GiveRegister(ProgramParameter& parameter);

    /// Reports what takes more registers than there are.
    void CheckCounts(const std::vector<ProgramParameter>& parameters) const;

private:
    using Key = std::pair<ShaderRegisterType, std::int32_t>;

    struct Owner
    {
        std::string Text;
        ShaderType Type;
        bool IsReadable; ///< by further register parameters
    };

    void Take(const ShaderRegister& place, const Owner& owner, const Place& where);
    std::int32_t FindFree(ShaderRegisterType type);

    ProblemList& _problems;
    std::map<Key, Owner> _owners;
    std::map<ShaderRegisterType, std::int32_t> _firstFree; ///< all before it are taken
};

} // namespace Mox::Host
