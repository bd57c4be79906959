#include "tests/numbers/other/OtherCompiler.h"

#include "tests/numbers/other/FrontEnd.h"
#include "tests/numbers/other/ModuleLayout.h"

#include <spirv-tools/libspirv.hpp>
#include <spirv-tools/optimizer.hpp>
#include <stdexcept>

using namespace Mox::Host;

SpirvWords CompileAsHlsl(const std::string& text, ProgramStage stage)
{
    static const FrontEnd frontEnd;
    std::string failure;
    const FrontEndResult read = frontEnd.Read(text, stage);
    for (const FrontEndMessage& message : read.Messages)
        failure += message.Text + "\n";
    if (!failure.empty())
        throw std::runtime_error(failure);
    const SpirvWords placed = LayOutModule(read.Module);

    const auto listen = [&](spv_message_level_t level, const char*, const spv_position_t&,
                            const char* message) {
        if (level <= SPV_MSG_ERROR)
            failure += std::string(message) + "\n";
    };
    spvtools::Optimizer optimiser(SPV_ENV_VULKAN_1_0);
    optimiser.SetMessageConsumer(listen);
    optimiser.RegisterLegalizationPasses();
    optimiser.RegisterPerformancePasses();
    spvtools::OptimizerOptions options;
    options.set_run_validator(false); // the module is not legal yet
    SpirvWords module;
    const bool isOptimised = optimiser.Run(placed.data(), placed.size(), &module, options);
    spvtools::SpirvTools validator(SPV_ENV_VULKAN_1_0);
    validator.SetMessageConsumer(listen);
    if (!isOptimised || !validator.Validate(module))
        throw std::runtime_error(failure);
    return module;
}
