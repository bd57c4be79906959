#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

/// A new random seed, which is printed too, so that a failure can be seen again.
std::uint32_t DrawSeed();

/// Documents that follow the schema, and nothing else, from a random source: their texts are wild
/// and their nodes and edges mean nothing.
class DocumentMaker
{
public:
    explicit DocumentMaker(std::uint32_t seed) : _random(seed) {}

    Mox::Host::MaterialDocument Make();

    /// A random number below end, which is above 0.
    std::size_t Below(std::size_t end);

private:
    Mox::Host::DocumentNode MakeNode(const std::string& id);
    Mox::Host::DocumentProperty MakeProperty();
    Mox::Host::DocumentBinding MakeBinding(const std::string& tag);
    Mox::Host::DocumentComments Comments();
    std::string Text();

    std::mt19937 _random;
};
