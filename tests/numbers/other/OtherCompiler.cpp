#include "tests/numbers/other/OtherCompiler.h"

#include "tests/support/Files.h"
#include "tests/support/GlslModule.h"

#include <spirv-tools/libspirv.hpp>
#include <spirv-tools/optimizer.hpp>
#include <stdexcept>

using Mox::Host::SpirvWords;

SpirvWords CompileAsHlsl(const std::string& text)
{
    static const std::string prelude = ReadText(MOX_TEST_DATA "/numbers/other/prelude.hlsl");
    const SpirvWords plain = CompileWithGlslang(prelude + text, GlslangInput::Hlsl, false);
    std::string failure;
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
    const bool isOptimised = optimiser.Run(plain.data(), plain.size(), &module, options);
    spvtools::SpirvTools validator(SPV_ENV_VULKAN_1_0);
    validator.SetMessageConsumer(listen);
    if (!isOptimised || !validator.Validate(module))
        throw std::runtime_error(failure);
    return module;
}
