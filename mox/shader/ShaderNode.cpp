#include "mox/shader/ShaderNode.h"

#include "mox/Identifier.h"
#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

using Mox::Materials::Compose;

template class DiGraphNode<ShaderNode, ShaderEdge>;

namespace {

constexpr const char* readPort = "read";
constexpr const char* writePort = "write";

const char* LevelLetter(ShaderLevel level)
{
    switch (level) {
    case ShaderLevel::Vertex:
        return "v";
    case ShaderLevel::Fragment:
        return "f";
    case ShaderLevel::Automatic:
        return "*";
    }
    return "";
}

std::string DescribeNamedParameter(const char* kind, const ShaderNode& node)
{
    std::string value = node.Type.Format();
    if (node.Register.Type != ShaderRegisterType::RegisterUnknown)
        value += " : " + node.Register.FormatRegister();
    return Compose(kind, " parameter \"", node.Name, "\" (", value, ")");
}

std::string DescribeRegisterParameter(const ShaderNode& node)
{
    const std::string place = node.Register.FormatRegister();
    return Compose("Cg register parameter ", place, " (", node.Type.Format(), ")");
}

void RequireCgName(const char* what, const std::string& name)
{
    if (!ShaderNode::IsValidCgName(name))
        throw ShaderError(Compose(what, " name \"", name, "\" is not a valid Cg variable name"));
}

std::int32_t FindPort(const std::vector<ShaderPort>& ports, const std::string& name)
{
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&](const ShaderPort& port) { return port.Name == name; });
    return found == ports.end() ? -1 : static_cast<std::int32_t>(found - ports.begin());
}

} // namespace

ShaderNode::ShaderNode(ShaderNodeKind kind) : Kind(kind)
{}

ShaderNode::~ShaderNode() = default;

ShaderNodeHandle ShaderNode::CreateFunctionNode(const ShaderFunction& function)
{
    auto node = boost::make_shared<ShaderNode>(ShaderNodeKind::Function);
    node->LoadFunction(function);
    node->ValidateNames();
    return node;
}

ShaderNodeHandle ShaderNode::CreateVaryingParameter(const std::string& name, const ShaderType& type)
{
    return CreateNamedParameter(ShaderNodeKind::VaryingParameter, name, type);
}

ShaderNodeHandle ShaderNode::CreateUniformParameter(const std::string& name, const ShaderType& type)
{
    return CreateNamedParameter(ShaderNodeKind::UniformParameter, name, type);
}

ShaderNodeHandle ShaderNode::CreateInterfaceParameter(const std::string& name, std::int32_t flags,
                                                      const ShaderType& type)
{
    auto node = CreateNamedParameter(ShaderNodeKind::InterfaceParameter, name, type);
    node->Flags = flags;
    return node;
}

ShaderNodeHandle ShaderNode::CreateRegisterParameter(const ShaderRegister& shaderRegister,
                                                     const ShaderType& type)
{
    auto node = boost::make_shared<ShaderNode>(ShaderNodeKind::CgRegisterParameter);
    node->Register = shaderRegister;
    node->Type = type;
    node->CreateParameterPorts();
    return node;
}

ShaderNodeHandle ShaderNode::CreateInterpolantParameter(const ShaderType& type)
{
    return CreateNamedParameter(ShaderNodeKind::InterpolantParameter, "", type);
}

ShaderNodeHandle ShaderNode::CreateNamedParameter(ShaderNodeKind kind, const std::string& name,
                                                  const ShaderType& type)
{
    auto node = boost::make_shared<ShaderNode>(kind);
    node->Name = name;
    node->Type = type;
    node->CreateParameterPorts();
    node->ValidateNames();
    return node;
}

void ShaderNode::LoadFunction(const ShaderFunction& function)
{
    std::string name = function.Name;
    std::string code = function.Code;
    std::vector<ShaderPort> inputs;
    std::vector<ShaderPort> outputs;
    for (const ShaderParameter& parameter : function.Parameters) {
        auto& ports = parameter.Direction != ShaderDirection::Input ? outputs : inputs;
        ports.push_back({parameter.Name, parameter.Type});
    }
    Name.swap(name);
    Code.swap(code);
    Level = function.Level;
    Inputs.swap(inputs);
    Outputs.swap(outputs);
}

void ShaderNode::CreateParameterPorts()
{
    Inputs.clear();
    Outputs.clear();
    Inputs.reserve(1); // so that adding a port cannot fail
    Outputs.reserve(1);
    switch (Kind) {
    case ShaderNodeKind::InterfaceParameter:
    case ShaderNodeKind::InterpolantParameter:
        Outputs.push_back({readPort, Type});
        Inputs.push_back({writePort, Type});
        break;
    case ShaderNodeKind::VaryingParameter:
    case ShaderNodeKind::UniformParameter:
        Outputs.push_back({readPort, Type});
        break;
    case ShaderNodeKind::CgRegisterParameter:
        if (Register.IsWritable())
            Inputs.push_back({writePort, Type});
        else
            Outputs.push_back({readPort, Type});
        break;
    default:
        throw ShaderError("internal error: unknown parameter type");
    }
}

void ShaderNode::ValidateNames() const
{
    switch (Kind) {
    case ShaderNodeKind::VaryingParameter:
    case ShaderNodeKind::UniformParameter:
        RequireCgName("parameter", Name);
        return;
    case ShaderNodeKind::Function:
        for (const ShaderPort& port : Inputs)
            RequireCgName("input port", port.Name);
        for (const ShaderPort& port : Outputs)
            RequireCgName("output port", port.Name);
        return;
    case ShaderNodeKind::InterfaceParameter:
    case ShaderNodeKind::CgRegisterParameter:
    case ShaderNodeKind::InterpolantParameter:
        return;
    }
}

std::string ShaderNode::Describe() const
{
    switch (Kind) {
    case ShaderNodeKind::Function:
        return Compose("function \"", Name, "\" (", Inputs.size(), "/", Outputs.size(), "/",
                       LevelLetter(Level), ")");
    case ShaderNodeKind::InterfaceParameter:
        return Compose("interface parameter \"", Name, "\" (", Type.Format(), ",flags=", Flags,
                       ")");
    case ShaderNodeKind::VaryingParameter:
        return DescribeNamedParameter("varying", *this);
    case ShaderNodeKind::UniformParameter:
        return DescribeNamedParameter("uniform", *this);
    case ShaderNodeKind::CgRegisterParameter:
        return DescribeRegisterParameter(*this);
    case ShaderNodeKind::InterpolantParameter:
        return Compose("interpolant parameter (", Type.Format(), ")");
    }
    throw ShaderError("unknown node type");
}

std::int32_t ShaderNode::FindInputPort(const std::string& name) const
{
    return FindPort(Inputs, name);
}

std::int32_t ShaderNode::FindOutputPort(const std::string& name) const
{
    return FindPort(Outputs, name);
}

const ShaderPort& ShaderNode::GetInputPort(const std::string& name) const
{
    const std::int32_t index = FindInputPort(name);
    if (index < 0)
        throw ShaderError(Compose(Describe(), ": input port \"", name, "\" does not exist"));
    return Inputs[static_cast<std::size_t>(index)];
}

const ShaderPort& ShaderNode::GetOutputPort(const std::string& name) const
{
    const std::int32_t index = FindOutputPort(name);
    if (index < 0)
        throw ShaderError(Compose(Describe(), ": output port \"", name, "\" does not exist"));
    return Outputs[static_cast<std::size_t>(index)];
}

bool ShaderNode::IsValidCgName(const std::string& name)
{
    return Mox::IsIdentifier(name);
}
