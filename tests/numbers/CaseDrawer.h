#pragma once

#include "mox/preview/VulkanDevice.h"
#include "tests/numbers/FloatTarget.h"

#include <cstdint>
#include <string>
#include <vector>

/// Draws the programs of CgCases: a triangle for each expression and set of inputs.
class CaseDrawer
{
public:
    /// How many sets of inputs there are.
    static constexpr std::size_t Count = 64;

    const std::vector<std::string>& ValidationMessages() const
    {
        return _device.ValidationMessages();
    }

    /// Numbers of eighths from -4 to 4: "a", "b" and "c" of each set, one after another.
    static std::vector<Numbers> MakeInputs(std::uint32_t seed);

    /// What is drawn, without programs.
    static Mox::Host::DrawCall MakeCall(std::size_t expressions,
                                        const std::vector<Numbers>& inputs);

    /// @returns for each expression the result of every set of inputs
    std::vector<Numbers> Draw(const Mox::Host::SpirvWords& vertex,
                              const Mox::Host::SpirvWords& fragment, std::size_t expressions,
                              const std::vector<Numbers>& inputs,
                              const std::vector<Mox::Host::DrawUniforms>& uniforms = {}) const;

private:
    Mox::Host::VulkanDevice _device{true};
};
