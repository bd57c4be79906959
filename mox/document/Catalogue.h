#pragma once

#include "mox/host/PluginNode.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// A port of a new node.
struct CataloguePort
{
    std::string Name;
    std::string Label;
    std::optional<std::int32_t> Components; ///< if the node fixes their number
    std::string Precision;                  ///< word of the component type if the node fixes it

    bool operator==(const CataloguePort& other) const = default;
};

using CataloguePorts = std::vector<CataloguePort>;

/// The ports that a new node has after one value of one property was set.
struct CatalogueVariant
{
    std::string Property;
    std::string Value;
    std::optional<CataloguePorts> Inputs;  ///< if they differ from the usual ones
    std::optional<CataloguePorts> Outputs; ///< likewise
};

/// A node type with what a new node of it has.
struct CatalogueEntry
{
    std::filesystem::path Plugin; ///< file of the plug-in that offers it
    PluginType Type;
    std::int32_t Version = 0; ///< of the properties
    CataloguePorts Inputs;
    CataloguePorts Outputs;
    std::vector<CatalogueVariant> Variants; ///< in the order of properties and of their values
    std::vector<boost::shared_ptr<Materials::GuiProperty>> Properties; ///< with their defaults
};

/// Describes the types of all plug-ins, or of those named, in the order of the plug-ins.
/// @param types the only ones, or nothing for all
/// @param problems takes the types that cannot be created, and node files whose types another
///        plug-in supplies; the result lacks both
/// @throws HostError if no plug-in offers one of them
std::vector<CatalogueEntry> DescribeCatalogue(const PluginSet& plugins,
                                              const std::vector<std::string>& types,
                                              ProblemList& problems);

/// A node as it stands in a document, with all its properties in the order of its bag.
/// @param id under which the node stands in the document
std::string FormatNodeFragment(const PluginNode& node, const std::string& id);

} // namespace Mox::Host
