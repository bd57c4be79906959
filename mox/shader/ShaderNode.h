#pragma once

#include "mox/Export.h"
#include "mox/authoring/DiGraphNode.h"
#include "mox/shader/ShaderEdge.h"
#include "mox/shader/ShaderFunction.h"
#include "mox/shader/ShaderRegister.h"
#include "mox/shader/ShaderType.h"

#include <cstdint>
#include <string>
#include <vector>

enum class ShaderNodeKind : std::int32_t
{
    Function = 0,             ///< a Cg function; ports come from its parameters
    InterfaceParameter = 1,   ///< a value known by (name, flags): one node for each key
    VaryingParameter = 2,     ///< a per-vertex input of the program
    UniformParameter = 3,     ///< a run-time constant of the program
    CgRegisterParameter = 4,  ///< a value on a fixed register or semantic
    InterpolantParameter = 5, ///< a value handed from the vertex to the fragment stage
};

/// One port of a shader node.
struct MOX_API ShaderPort
{
    std::string Name;
    ShaderType Type;
};

extern template class MOX_API DiGraphNode<ShaderNode, ShaderEdge>;

/// Unit of the shader graph: one Cg function with its code, or one parameter of the program.
///
/// Made whole and valid by one of the Create functions; after that only its edge lists change.
/// Parameters offer their value on the output port "read" and take one on the input port "write".
class MOX_API ShaderNode : public DiGraphNode<ShaderNode, ShaderEdge>
{
public:
    explicit ShaderNode(ShaderNodeKind kind);
    ~ShaderNode();

    /// A function node with a port for each parameter, in the parameters' order.
    /// @throws ShaderError if a port name is no Cg name
    static ShaderNodeHandle CreateFunctionNode(const ShaderFunction& function);

    /// @throws ShaderError if name is no Cg name, as does CreateUniformParameter
    static ShaderNodeHandle CreateVaryingParameter(const std::string& name, const ShaderType& type);
    static ShaderNodeHandle CreateUniformParameter(const std::string& name, const ShaderType& type);

    /// A value that materials and host share by name and flags. Any name is good.
    static ShaderNodeHandle CreateInterfaceParameter(const std::string& name, std::int32_t flags,
                                                     const ShaderType& type);

    /// A value on a register: a port "write" where a shader writes the register, else "read".
    /// @throws ShaderError if the register's class is unknown
    static ShaderNodeHandle CreateRegisterParameter(const ShaderRegister& shaderRegister,
                                                    const ShaderType& type);

    /// A value that is written in the vertex stage and read in the fragment stage.
    static ShaderNodeHandle CreateInterpolantParameter(const ShaderType& type);

    /// Takes over name, code, level and parameters; the ports so far are dropped.
    void LoadFunction(const ShaderFunction& function);

    /// Replaces the ports by those that a parameter of this Kind, Type and Register has.
    /// @throws ShaderError if Kind is no parameter or the register's class is unknown; the node has
    ///         no ports then
    void CreateParameterPorts();

    /// Checks the name of a varying or uniform parameter, and of a function its port names, inputs
    /// first; the name of a function is free.
    /// @throws ShaderError at the first bad name
    void ValidateNames() const;

    /// The node as messages name it, in one line.
    /// @throws ShaderError if Kind, or the type of a parameter, has no text
    std::string Describe() const;

    /// Position of the first port of that name, or -1.
    std::int32_t FindInputPort(const std::string& name) const;
    std::int32_t FindOutputPort(const std::string& name) const;

    /// @throws ShaderError if there is no such port
    const ShaderPort& GetInputPort(const std::string& name) const;
    const ShaderPort& GetOutputPort(const std::string& name) const;

    /// A letter or underscore, then letters, digits and underscores, all ASCII. Reserved words
    /// pass.
    static bool IsValidCgName(const std::string& name);

    ShaderNodeKind Kind;
    std::string Name; ///< of a function, or the Cg name or key of a parameter
    ShaderLevel Level = ShaderLevel::Automatic;
    std::string Code;                                              ///< body of a function
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1); ///< value of a parameter
    std::int32_t Flags = 0;  ///< second half of the key of an interface parameter
    ShaderRegister Register; ///< where a parameter stands, if anywhere
    std::vector<ShaderPort> Inputs;
    std::vector<ShaderPort> Outputs;

private:
    static ShaderNodeHandle CreateNamedParameter(ShaderNodeKind kind, const std::string& name,
                                                 const ShaderType& type);
};
