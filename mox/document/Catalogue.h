#pragma once

#include "mox/host/PluginNode.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// A port of a new node.
struct CataloguePort
{
    std::string Name;
    std::string Label;
    std::optional<std::int32_t> Components; ///< if the node fixes the number
    std::string Precision;                  ///< keyword of the component type, if the node fixes it

    bool operator==(const CataloguePort& other) const = default;
};

using CataloguePorts = std::vector<CataloguePort>;

/// The ports of a new node after one property has been set to one value.
struct CatalogueVariant
{
    std::string Property;
    std::string Value;
    std::optional<CataloguePorts> Inputs;  ///< if they differ from the default ports
    std::optional<CataloguePorts> Outputs; ///< if they differ from the default ports
};

/// A node type with the ports and properties of a new node.
struct CatalogueEntry
{
    PluginType Type;
    std::int32_t Version = 0; ///< version of the properties
    CataloguePorts Inputs;
    CataloguePorts Outputs;
    std::vector<CatalogueVariant> Variants; ///< in the order of the properties and their values
    std::vector<boost::shared_ptr<Materials::GuiProperty>> Properties; ///< with their defaults
};

/// Describes the types of all plug-ins, or only the given types, in the order of the plug-ins.
/// @param types the types to describe; empty for all
/// @param problems receives an error for each type that cannot be created, and a warning for each
///        node file whose type another plug-in supplies; the result contains neither
/// @throws HostError if no plug-in offers one of the types
std::vector<CatalogueEntry> DescribeCatalogue(const PluginSet& plugins,
                                              const std::vector<std::string>& types,
                                              ProblemList& problems);

/// Formats a node as it appears in a document, with all its properties in the order of its bag.
/// @param id the id of the node in the document
std::string FormatNodeFragment(const PluginNode& node, const std::string& id);

} // namespace Mox::Host
