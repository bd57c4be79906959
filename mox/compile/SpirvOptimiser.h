#pragma once

#include "mox/compile/SpirvModule.h"

#include <string>

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

} // namespace Mox::Host
