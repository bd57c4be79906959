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

/// The numbers of a value such as "1, 0.5, 0", with one comma between two of them; spaces around a
/// number are ignored.
/// @returns nothing if a part is not a finite decimal number
std::optional<std::vector<float>> ParseNumbers(std::string_view text);

/// The run-time parameters of a material with their values: those of the caller win over those of
/// the document, and these over the nodes' own.
class PreviewBindings
{
public:
    /// @throws HostError naming the node that fails
    explicit PreviewBindings(const MaterialGraph& graph);

    /// Gives the bindings of that name a value in its attribute form: numbers with commas between
    /// them, or the file of a texture.
    /// @returns false if there is no such binding
    /// @throws HostError if the text is no value for it
    bool Set(const std::string& name, const std::string& value);

    /// The binding that a parameter stands for; null if there is none, or if the parameter is a
    /// value of the environment.
    const PluginBinding* Find(const ProgramParameter& parameter) const;

    /// The names in quotes, with commas between them.
    std::string ListNames() const;

private:
    std::vector<PluginBinding> _bindings;
    std::map<std::pair<ParameterKind, std::string>, std::size_t> _byName; ///< the first ones
};

} // namespace Mox::Host
