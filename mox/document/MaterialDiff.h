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
    std::string Text;     ///< all of it in words, a line
    std::string Node;     ///< id of the node it belongs to, in the first material if it is removed
    std::string Property; ///< of that node; empty if the node as a whole is meant
    std::optional<DocumentEdge> EdgeBefore; ///< an edge that only the first material has
    std::optional<DocumentEdge> EdgeAfter;  ///< an edge that only the second one has
};

/// Compares two materials by meaning; nothing if they mean the same.
///
/// Numbers are compared as numbers, a property that is left out as its default, and the order of
/// nodes, edges and properties does not count. A node that only got another id is told as renamed,
/// and edges that follow its new id are the same; EdgeBefore has the ids of the second material
/// for nodes that both have.
/// @param plugins know the defaults; of a type that none offers only what is stored is compared
std::vector<MaterialDifference> FindDifferences(const MaterialDocument& before,
                                                const MaterialDocument& after,
                                                const PluginSet& plugins);

/// The same in words alone.
std::vector<std::string> DescribeDifferences(const MaterialDocument& before,
                                             const MaterialDocument& after,
                                             const PluginSet& plugins);

} // namespace Mox::Host
