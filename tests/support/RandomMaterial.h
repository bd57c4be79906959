#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstdint>

enum class RandomTypes
{
    All,
    Compiled ///< without those of node files
};

/// A valid material of random nodes, types, settings and edges: it exports without an error. All
/// the node types occur over many seeds, and the same seed gives the same material.
/// @param nodeCount nodes besides the surface, at least 1
Mox::Host::MaterialDocument MakeRandomMaterial(std::uint32_t seed, int nodeCount,
                                               RandomTypes types = RandomTypes::All);
