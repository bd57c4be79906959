#include "tests/numbers/CaseDrawer.h"

#include <numeric>
#include <random>

using namespace Mox;

std::vector<Numbers> CaseDrawer::MakeInputs(std::uint32_t seed)
{
    std::mt19937 random(seed);
    std::vector<Numbers> inputs(3 * Count);
    for (Numbers& input : inputs) {
        for (float& number : input)
            number = static_cast<float>(random() % 65) / 8.0f - 4.0f;
    }
    return inputs;
}

Host::DrawCall CaseDrawer::MakeCall(std::size_t expressions, const std::vector<Numbers>& inputs)
{
    const auto rows = static_cast<float>(expressions);
    Host::DrawCall call;
    for (std::uint32_t location = 0; location <= 4; ++location) {
        const std::uint32_t components = location == 0 ? 2 : location == 4 ? 1 : 4;
        call.Streams.push_back({location, components, {}});
    }
    for (std::size_t row = 0; row < expressions; ++row) {
        for (std::size_t column = 0; column < Count; ++column) {
            for (const auto& [x, y] :
                 {std::pair(0.0f, 0.0f), std::pair(1.0f, 0.0f), std::pair(0.5f, 1.0f)}) {
                auto& places = call.Streams[0].Values;
                places.push_back(2.0f * (static_cast<float>(column) + x) / Count - 1.0f);
                places.push_back(2.0f * (static_cast<float>(row) + y) / rows - 1.0f);
                for (std::size_t input = 0; input < 3; ++input) {
                    const Numbers& value = inputs[3 * column + input];
                    auto& values = call.Streams[1 + input].Values;
                    values.insert(values.end(), value.begin(), value.end());
                }
                call.Streams[4].Values.push_back(static_cast<float>(row));
            }
        }
    }
    call.Indices.resize(call.Streams[4].Values.size());
    std::iota(call.Indices.begin(), call.Indices.end(), 0u);
    call.State.TestsDepth = false;
    call.State.WritesDepth = false;
    call.State.WritesAlpha = true;
    return call;
}

std::vector<Numbers> CaseDrawer::Draw(const Host::SpirvWords& vertex,
                                      const Host::SpirvWords& fragment, std::size_t expressions,
                                      const std::vector<Numbers>& inputs,
                                      const std::vector<Host::DrawUniforms>& uniforms) const
{
    Host::DrawCall call = MakeCall(expressions, inputs);
    call.Uniforms = uniforms;
    call.Vertex = {vertex, "main"};
    call.Fragment = {fragment, "main"};
    return FloatTarget(_device, Count, static_cast<std::uint32_t>(expressions)).Draw(call);
}
