#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstdint>

/// A valid material of random nodes, types, settings and edges: it exports without an error. All
/// node types of the plug-ins occur over many seeds, and the same seed gives the same material.
/// @param nodeCount nodes besides the surface, at least 1
Mox::Host::MaterialDocument MakeRandomMaterial(std::uint32_t seed, int nodeCount);
