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
    Function = 0,             ///< a Cg function with a port for each parameter
    InterfaceParameter = 1,   ///< a value identified by (name, flags): one node for each key
    VaryingParameter = 2,     ///< a vertex attribute of the program
    UniformParameter = 3,     ///< a run-time constant of the program
    CgRegisterParameter = 4,  ///< a value in a fixed register or semantic
    InterpolantParameter = 5, ///< a value passed from the vertex to the fragment stage
};

/// A port of a shader node.
struct MOX_API ShaderPort
{
    std::string Name;
    ShaderType Type;
};

extern template class MOX_API DiGraphNode<ShaderNode, ShaderEdge>;

/// A node of the shader graph: a Cg function with its code, or a parameter of the program.
///
/// The Create functions return complete and valid nodes; afterwards only their edge lists change.
/// The value of a parameter is read from the output port "read" and written to the input port
/// "write".
class MOX_API ShaderNode : public DiGraphNode<ShaderNode, ShaderEdge>
{
public:
    explicit ShaderNode(ShaderNodeKind kind);
    ~ShaderNode();

    /// Makes a function node with a port for each parameter, in the order of the parameters.
    /// @throws ShaderError if the name of a port is not a valid Cg name
    static ShaderNodeHandle CreateFunctionNode(const ShaderFunction& function);

    /// @throws ShaderError if name is not a valid Cg name; likewise CreateUniformParameter
    static ShaderNodeHandle CreateVaryingParameter(const std::string& name, const ShaderType& type);
    static ShaderNodeHandle CreateUniformParameter(const std::string& name, const ShaderType& type);

    /// Makes a value that materials and host share by name and flags. Any name is allowed.
    static ShaderNodeHandle CreateInterfaceParameter(const std::string& name, std::int32_t flags,
                                                     const ShaderType& type);

    /// Makes a value in a register, with a port "write" if shaders write the register and a port
    /// "read" otherwise.
    /// @throws ShaderError if the type of the register is unknown
    static ShaderNodeHandle CreateRegisterParameter(const ShaderRegister& shaderRegister,
                                                    const ShaderType& type);

    /// Makes a value that the vertex stage writes and the fragment stage reads.
    static ShaderNodeHandle CreateInterpolantParameter(const ShaderType& type);

    /// Copies name, code, level and parameters; the previous ports are removed.
    void LoadFunction(const ShaderFunction& function);

    /// Replaces the ports with those of a parameter with this Kind, Type and Register.
    /// @throws ShaderError if Kind is not a parameter or the type of the register is unknown; the
    ///        node then has no ports
    void CreateParameterPorts();

    /// Checks the name of a varying or uniform parameter, or the port names of a function, inputs
    /// first. The name of a function is not checked.
    /// @throws ShaderError for the first invalid name
    void ValidateNames() const;

    /// Describes the node for messages, on one line.
    /// @throws ShaderError if Kind, or the type of a parameter, is invalid
    std::string Describe() const;

    /// Index of the first port with that name, or -1.
    std::int32_t FindInputPort(const std::string& name) const;
    std::int32_t FindOutputPort(const std::string& name) const;

    /// @throws ShaderError if there is no such port
    const ShaderPort& GetInputPort(const std::string& name) const;
    const ShaderPort& GetOutputPort(const std::string& name) const;

    /// Whether a name starts with a letter or underscore, followed by letters, digits and
    /// underscores, all ASCII. Reserved words are accepted.
    static bool IsValidCgName(const std::string& name);

    ShaderNodeKind Kind;
    std::string Name; ///< of a function; the Cg name or key of a parameter
    ShaderLevel Level = ShaderLevel::Automatic;
    std::string Code;                                              ///< body of a function
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1); ///< of the value of a parameter
    std::int32_t Flags = 0;  ///< of an interface parameter, part of its key
    ShaderRegister Register; ///< of a register parameter
    std::vector<ShaderPort> Inputs;
    std::vector<ShaderPort> Outputs;

private:
    static ShaderNodeHandle CreateNamedParameter(ShaderNodeKind kind, const std::string& name,
                                                 const ShaderType& type);
};
