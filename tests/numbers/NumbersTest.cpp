#include "tests/numbers/NumbersTest.h"

#include "mox/Text.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

using Mox::Materials::Compose;

std::vector<Numbers> NumbersTest::Evaluate(const std::string& material,
                                           const RunInputs& inputs) const
{
    try {
        return Get().Evaluate(material, inputs);
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what() << "\n" << material;
        return {};
    }
}

void NumbersTest::Compare(const std::string& material, const RunInputs& inputs, std::size_t count,
                          const Expectation& expected, Comparison& comparison) const
{
    const std::vector<Numbers> results = Evaluate(material, inputs);
    for (std::size_t i = 0; i < results.size(); ++i) {
        for (std::size_t at = 0; at < count; ++at) {
            comparison.Check(results[i][at], expected(i, at), [&] {
                std::string text = Compose("number ", at, " of");
                for (const auto& [name, values] : inputs.Streams)
                    text += Compose(" ", name, " ", Show(values[i]));
                text += Compose(" in\n", material);
                return text;
            });
        }
    }
}

std::vector<Numbers> NumbersTest::MakeValues(std::size_t seed, std::size_t count)
{
    std::vector<float> special = {0.0f,  1.0f,  -1.0f, 0.5f,   2.0f,  -2.0f,
                                  -0.5f, 0.25f, 1e-3f, -1e-3f, 100.0f};
    for (const auto& [value, side] : {std::pair(0.5f, 0.0f), std::pair(0.5f, 1.0f),
                                      std::pair(1.0f, 0.0f), std::pair(1.0f, 2.0f)})
        special.push_back(std::nextafter(value, side));
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    // Distributions differ between standard libraries; the engine does not.
    const auto next = [&] {
        const std::uint32_t bits = random();
        const std::uint32_t rest = bits / 2;
        return bits % 2 == 0 ? special[rest % special.size()]
                             : static_cast<float>(rest) / 268435456.0f - 4.0f;
    };
    std::vector<Numbers> values(count);
    for (Numbers& value : values)
        std::generate(value.begin(), value.end(), next);
    return values;
}

std::string WriteSink(const char* precision, const std::string& ports)
{
    std::string text = Compose("sink Sink:", precision, "\n");
    std::istringstream names(ports);
    int input = 0;
    for (std::string name; names >> name; ++input)
        text += Compose("node.", name, " -> sink.in_", input, "\n");
    return text;
}
