#pragma once

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <random>

/// Returns a new random seed and prints it, so that a failure can be reproduced.
inline std::uint32_t DrawSeed()
{
    const std::uint32_t seed = std::random_device()();
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
