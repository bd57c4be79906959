#pragma once

#include "mox/preview/VulkanDevice.h"
#include "tests/numbers/FloatTarget.h"

#include <cstdint>
#include <string>
#include <vector>

/// Draws the programs of CgCases, one triangle per expression and set of inputs.
class CaseDrawer
{
public:
    /// The number of sets of inputs.
    static constexpr std::size_t Count = 64;

    const std::vector<std::string>& ValidationMessages() const
    {
        return _device.ValidationMessages();
    }

    /// Multiples of 1/8 from -4 to 4: "a", "b" and "c" of each set, one after another.
    static std::vector<Numbers> MakeInputs(std::uint32_t seed);

    /// Makes the draw call, without programs.
    static Mox::Host::DrawCall MakeCall(std::size_t expressions,
                                        const std::vector<Numbers>& inputs);

    /// @returns the results of each expression for every set of inputs
    std::vector<Numbers> Draw(const Mox::Host::SpirvWords& vertex,
                              const Mox::Host::SpirvWords& fragment, std::size_t expressions,
                              const std::vector<Numbers>& inputs,
                              const std::vector<Mox::Host::DrawUniforms>& uniforms = {}) const;

private:
    Mox::Host::VulkanDevice _device{true};
};
