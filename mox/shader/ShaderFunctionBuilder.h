#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderEdge.h"
#include "mox/shader/ShaderFunction.h"
#include "mox/shader/ShaderType.h"

#include <sstream>
#include <string>

namespace Mox::Materials {
class GuiPort;
}

/// Composes one Cg function: parameters and body text in any interleaving, then Build.
///
/// While it is being filled, its own Level, Name and Code stay at their defaults. A builder that
/// ran out of memory is of no use any more.
class MOX_API ShaderFunctionBuilder : public ShaderFunction
{
public:
    ShaderFunctionBuilder();
    ~ShaderFunctionBuilder();

    /// Add a parameter. Inputs and outputs share one name space.
    /// @throws std::string, not ShaderError, if the name is taken; nothing is added then
    void AddInput(const ShaderType& type, const std::string& name);
    void AddOutput(const ShaderType& type, const std::string& name);

    /// Add a parameter with the name and type of an authoring port.
    /// @throws ShaderError if the port's count or precision is not known
    /// @throws std::string if the name is taken
    void AddInputPort(const Mox::Materials::GuiPort& port);
    void AddOutputPort(const Mox::Materials::GuiPort& port);

    /// Appends text to the body unchanged; callers bring tabs, terminators and newlines.
    void AppendCode(const std::string& text);

    /// Appends a local variable that holds value in every component. Only float and half have
    /// literals.
    /// @throws ShaderError for any other component type; the body is of no use then
    void DeclareConstant(const ShaderType& type, const std::string& name, float value);

    /// Gives an input without an edge a local value under the name that the body uses.
    /// @throws ShaderError as AddInputPort and DeclareConstant do
    void DeclareConstantForPort(const Mox::Materials::GuiPort& port, float value);

    /// A new function node from the parameters and the body so far. The builder does not change, so
    /// it may go on and build again.
    /// @throws ShaderError if a parameter name is no Cg name
    ShaderNodeHandle Build(ShaderLevel level, const std::string& name) const;

    std::ostringstream Body; ///< in the classic locale

private:
    void AddParameter(ShaderDirection direction, const ShaderType& type, const std::string& name);
};
