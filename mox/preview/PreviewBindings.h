#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/program/ProgramPlan.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Parses a value such as "1, 0.5, 0": numbers separated by single commas. Spaces around a number
/// are ignored.
/// @returns nothing if a part is not a finite decimal number
std::optional<std::vector<float>> ParseNumbers(std::string_view text);

/// The run-time parameters of a material and their values. The caller's values have precedence over
/// those of the document, and these over the defaults of the nodes.
class PreviewBindings
{
public:
    /// @throws HostError if a node fails; the error names the node
    explicit PreviewBindings(const MaterialGraph& graph);

    /// Sets the value of all bindings with a name: numbers separated by commas, or the file of a
    /// texture.
    /// @returns false if there is no such binding
    /// @throws HostError if the value is not valid for the binding
    bool Set(const std::string& name, const std::string& value);

    /// Returns the binding that a parameter represents; null if there is none, or if the parameter
    /// is a value of the environment.
    const PluginBinding* Find(const ProgramParameter& parameter) const;

    /// Returns the names in quotes, separated by commas.
    std::string ListNames() const;

private:
    std::vector<PluginBinding> _bindings;
    /// Index of the first binding of each kind and name.
    std::map<std::pair<ParameterKind, std::string>, std::size_t> _byName;
};

} // namespace Mox::Host
