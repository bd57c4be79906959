#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiPort.h"
#include "mox/shader/ShaderFunction.h"
#include "mox/shader/ShaderNode.h"
#include "mox/shader/ShaderType.h"

#include <sstream>
#include <string>

/// Builds one Cg function: parameters and body code can be added in any order, followed by Build.
///
/// While the function is being built, its own Level, Name and Code keep their defaults. After
/// running out of memory, a builder cannot be used any more.
class MOX_API ShaderFunctionBuilder : public ShaderFunction
{
public:
    ShaderFunctionBuilder();
    ~ShaderFunctionBuilder();

    /// Add a parameter. Input and output names must be distinct.
    /// @throws std::string, not ShaderError, if the name is taken, in which case nothing is added
    void AddInput(const ShaderType& type, const std::string& name);
    void AddOutput(const ShaderType& type, const std::string& name);

    /// Add a parameter with the name and type of an authoring port.
    /// @throws ShaderError if the port's count or precision is unknown
    /// @throws std::string if the name is taken
    void AddInputPort(const Mox::Materials::GuiPort& port);
    void AddOutputPort(const Mox::Materials::GuiPort& port);

    /// Appends code to the body unchanged, so it must include tabs, semicolons and newlines.
    void AppendCode(const std::string& text);

    /// Appends a local variable with the same value in every component. Only float and half are
    /// supported.
    /// @throws ShaderError for any other component type, after which the body is unusable
    void DeclareConstant(const ShaderType& type, const std::string& name, float value);

    /// Declares a local constant for an unconnected input, under the name that the body uses.
    /// @throws ShaderError as AddInputPort and DeclareConstant do
    void DeclareConstantForPort(const Mox::Materials::GuiPort& port, float value);

    /// Makes a new function node from the current parameters and body. The builder does not change
    /// and can be used again.
    /// @throws ShaderError if the name of a parameter is not a valid Cg name
    ShaderNodeHandle Build(ShaderLevel level, const std::string& name) const;

    std::ostringstream Body; ///< in the classic locale
};
