#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginSet.h"

#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

enum class DifferenceKind
{
    Added,
    Removed,
    Changed,
};

/// One difference between two materials.
struct MaterialDifference
{
    DifferenceKind Kind = DifferenceKind::Changed;
    std::string Text;     ///< complete description on one line
    std::string Node;     ///< id of the affected node; in the first material if it was removed
    std::string Property; ///< property of that node; empty if the whole node is affected
    std::optional<DocumentEdge> EdgeBefore; ///< an edge that only the first material has
    std::optional<DocumentEdge> EdgeAfter;  ///< an edge that only the second material has
};

/// Compares two materials by meaning; returns nothing if they are equivalent.
///
/// Numbers are compared as numbers, a missing property as its default value, and the order of
/// nodes, edges and properties is ignored. If only the id of a node changed, the node is
/// reported as renamed, and edges that only follow the new id are considered equal; EdgeBefore uses
/// the ids of the second material for nodes that both materials have.
/// @param plugins provide the default values; for a type that no plug-in offers, only the stored
///        properties are compared
std::vector<MaterialDifference> FindDifferences(const MaterialDocument& before,
                                                const MaterialDocument& after,
                                                const PluginSet& plugins);

/// Returns only the descriptions of the differences.
std::vector<std::string> DescribeDifferences(const MaterialDocument& before,
                                             const MaterialDocument& after,
                                             const PluginSet& plugins);

} // namespace Mox::Host
