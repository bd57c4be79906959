#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <random>
#include <string>

/// Returns the seed in the environment variable MOX_RANDOM_SEED, otherwise a new random seed.
/// Prints it, so that a failure can be reproduced.
inline std::uint32_t DrawSeed()
{
    const char* const wanted = std::getenv("MOX_RANDOM_SEED");
    const std::uint32_t seed =
        wanted ? static_cast<std::uint32_t>(std::stoul(wanted)) : std::random_device()();
    std::cout << "seed " << seed << "\n";
    return seed;
}

/// Random choices; the same seed gives the same sequence.
class Random
{
public:
    explicit Random(std::uint32_t seed) : _engine(seed) {}

    /// A number below end, which must be positive.
    std::size_t Below(std::size_t end)
    {
        return std::uniform_int_distribution(std::size_t(0), end - 1)(_engine);
    }

    template <class Container>
    decltype(auto) Pick(const Container& container)
    {
        return container[Below(std::size(container))];
    }

private:
    std::mt19937 _engine;
};
