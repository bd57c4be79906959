#include "mox/compile/SpirvOptimiser.h"

#include <spirv-tools/libspirv.hpp>
#include <spirv-tools/optimizer.hpp>

namespace Mox::Host {

namespace {

constexpr spv_target_env environment = SPV_ENV_VULKAN_1_0;

/// Runs the passes that are registered by a function, and the validator.
template <class RegisterPasses>
OptimisedModule Optimise(const SpirvWords& words, RegisterPasses registerPasses)
{
    OptimisedModule result;
    const auto listen = [&](spv_message_level_t level, const char*, const spv_position_t&,
                            const char* message) {
        if (level <= SPV_MSG_ERROR)
            result.Failure += (result.Failure.empty() ? "" : "; ") + std::string(message);
    };

    spvtools::Optimizer optimiser(environment);
    optimiser.SetMessageConsumer(listen);
    registerPasses(optimiser);
    optimiser.RegisterPass(spvtools::CreateCompactIdsPass());
    spvtools::OptimizerOptions options;
    options.set_run_validator(false); // samplers as function parameters are not legal yet
    if (!optimiser.Run(words.data(), words.size(), &result.Module, options)) {
        if (result.Failure.empty())
            result.Failure = "the optimiser failed";
        return result;
    }

    spvtools::SpirvTools validator(environment);
    validator.SetMessageConsumer(listen);
    if (!validator.Validate(result.Module) && result.Failure.empty())
        result.Failure = "the module is not valid";
    return result;
}

} // namespace

OptimisedModule OptimiseModule(const SpirvWords& words)
{
    return Optimise(words, [](spvtools::Optimizer& optimiser) {
        optimiser.RegisterLegalizationPasses();
        optimiser.RegisterPerformancePasses();
    });
}

OptimisedModule DropOutputs(const SpirvWords& words,
                            const std::unordered_set<std::uint32_t>& wantedLocations)
{
    std::unordered_set<std::uint32_t> locations = wantedLocations;
    std::unordered_set<std::uint32_t> builtIns; // the position counts without standing here
    return Optimise(words, [&](spvtools::Optimizer& optimiser) {
        constexpr bool keepsInterface = false;
        constexpr bool dropsOutputs = true;
        optimiser.RegisterPass(
            spvtools::CreateEliminateDeadOutputStoresPass(&locations, &builtIns));
        optimiser.RegisterPass(spvtools::CreateAggressiveDCEPass(keepsInterface, dropsOutputs));
        optimiser.RegisterPass(spvtools::CreateRemoveUnusedInterfaceVariablesPass());
    });
}

} // namespace Mox::Host
