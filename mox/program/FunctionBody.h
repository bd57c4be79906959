#pragma once

#include "mox/cg/Module.h"
#include "mox/shader/ShaderNode.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// A component of an input of a function.
struct InputComponent
{
    std::size_t Input;
    std::size_t Component;
};

/// For each output of a function, what each of its components copies.
using CopiedComponents = std::vector<std::vector<InputComponent>>;

/// Number of components of a value: of a vector its columns.
std::size_t ComponentCount(const ShaderType& type);

/// What can be read off the body of a function.
class FunctionBody
{
public:
    /// @param function must outlive the object
    /// @param code sources of functions that the body may call
    explicit FunctionBody(const ShaderNode& function, const std::string& code = {});

    /// What the function copies if it does nothing but assign components of inputs to components of
    /// outputs of the same component type; nothing for any other function. Interpolating the result
    /// of such a function is the same as copying the interpolated inputs.
    std::optional<CopiedComponents> FindCopies() const;

    /// Whether the body declares a variable of that name whose value is 0, as nodes do for an input
    /// without an edge. What follows the first error in the body is not known.
    bool DeclaresZero(const std::string& name) const;

private:
    const ShaderNode& _function;
    std::unique_ptr<Cg::Module> _module;
    Cg::Statements _statements; ///< as far as the body is understood
    bool _isWhole = false;      ///< false if only what precedes the first error is in _statements
};

} // namespace Mox::Host
