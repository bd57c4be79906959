#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// A new random seed, which is printed too, so that a failure can be seen again.
std::uint32_t DrawSeed();

/// Documents that follow the schema, and nothing else, from a random source: parts of the one with
/// everything, whose texts are wild and whose nodes and edges mean nothing.
class DocumentMaker
{
public:
    explicit DocumentMaker(std::uint32_t seed);

    Mox::Host::MaterialDocument Make();

    /// A random number below end, which is above 0.
    std::size_t Below(std::size_t end);

private:
    template <class Record>
    void Thin(std::vector<Record>& records)
    {
        std::erase_if(records, [this](const Record&) { return Below(2) == 0; });
    }

    Mox::Host::DocumentComments Comments();
    std::string Text();

    std::mt19937 _random;
    const Mox::Host::MaterialDocument _everything;
};
