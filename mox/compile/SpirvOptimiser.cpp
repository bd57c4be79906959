#include "mox/compile/SpirvOptimiser.h"

#include <spirv-tools/libspirv.hpp>
#include <spirv-tools/optimizer.hpp>

namespace Mox::Host {

OptimisedModule OptimiseModule(const SpirvWords& words)
{
    constexpr spv_target_env environment = SPV_ENV_VULKAN_1_0;
    OptimisedModule result;
    const auto listen = [&](spv_message_level_t level, const char*, const spv_position_t&,
                            const char* message) {
        if (level <= SPV_MSG_ERROR)
            result.Failure += (result.Failure.empty() ? "" : "; ") + std::string(message);
    };

    spvtools::Optimizer optimiser(environment);
    optimiser.SetMessageConsumer(listen);
    optimiser.RegisterLegalizationPasses();
    optimiser.RegisterPerformancePasses();
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

} // namespace Mox::Host
