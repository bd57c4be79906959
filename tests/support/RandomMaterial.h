#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstdint>

enum class RandomTypes
{
    All,
    /// Without types defined by node files, which contain steep functions, and without functions
    /// that are undefined for some values: programs may compute anything for those.
    DefinedEverywhere
};

/// Makes a valid material with random nodes, types, settings and edges, which exports without an
/// error. All node types occur over many seeds, and the same seed gives the same material.
/// @param nodeCount nodes besides the surface, at least 1
Mox::Host::MaterialDocument MakeRandomMaterial(std::uint32_t seed, int nodeCount,
                                               RandomTypes types = RandomTypes::All);
