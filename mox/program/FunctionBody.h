#pragma once

#include "mox/cg/Module.h"
#include "mox/shader/ShaderNode.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// One component of one input of a function.
struct InputComponent
{
    std::size_t Input;
    std::size_t Component;
};

/// For each component of each output of a function, the input component that it copies.
using CopiedComponents = std::vector<std::vector<InputComponent>>;

/// Number of components of a value; for a vector, its columns.
std::size_t ComponentCount(const ShaderType& type);

/// Analyses the body of a function.
class FunctionBody
{
public:
    /// @param function must outlive this object
    /// @param code source of the functions that the body may call
    explicit FunctionBody(const ShaderNode& function, const std::string& code = {});

    /// Returns what the function copies, if all it does is assign components of inputs to
    /// components of outputs of the same component type; returns nothing for any other function.
    /// For such a function, interpolating the result is equivalent to copying the interpolated
    /// inputs.
    std::optional<CopiedComponents> FindCopies() const;

    /// Whether the body declares a variable with this name whose value is 0, as nodes do for an
    /// unconnected input. Declarations after the first error in the body are not found.
    bool DeclaresZero(const std::string& name) const;

private:
    const ShaderNode& _function;
    std::unique_ptr<Cg::Module> _module;
    Cg::Statements _statements; ///< the statements before the first error
    bool _isWhole = false;      ///< whether _statements contains the entire body
};

} // namespace Mox::Host
