#pragma once

#include "mox/compile/SpirvModule.h"

#include <string>
#include <unordered_set>

namespace Mox::Host {

/// A module that passed the validator, or why there is none.
struct OptimisedModule
{
    SpirvWords Module;
    std::string Failure; ///< empty unless the optimiser or the validator complained
};

/// Makes a module of the front end legal for Vulkan 1.0 and as fast as the optimiser knows, and
/// validates it. Safe in parallel.
OptimisedModule OptimiseModule(const SpirvWords& words);

/// Takes out of a vertex module what it puts out at other locations than these, and what it reads
/// for that alone. Safe in parallel.
/// @param words an optimised module
OptimisedModule DropOutputs(const SpirvWords& words,
                            const std::unordered_set<std::uint32_t>& wantedLocations);

} // namespace Mox::Host
