#include "mox/shader/ShaderGraph.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/shader/GraphAddition.h"

#include <boost/smart_ptr/make_shared.hpp>

using Mox::Materials::Compose;

ShaderGraph::ShaderGraph() = default;

ShaderGraph::~ShaderGraph() = default;

void ShaderGraph::InsertNode(const ShaderNodeHandle& node)
{
    GraphAddition addition(*this);
    addition.AddNode(node);
    addition.Commit();
}

void ShaderGraph::ConnectPorts(const ShaderNodeHandle& tail, const std::string& tailPort,
                               const ShaderNodeHandle& head, const std::string& headPort, bool flag)
{
    InsertEdge(boost::make_shared<ShaderEdge>(tail, tailPort, head, headPort, flag));
}

void ShaderGraph::InsertEdge(const ShaderEdgeHandle& edge)
{
    GraphAddition addition(*this);
    addition.AddEdge(edge);
    addition.Commit();
}

bool ShaderGraph::HasInterfaceNode(const std::string& name, std::int32_t flags) const
{
    return InterfaceNodes.contains(InterfaceKey(name, flags));
}

ShaderNodeHandle ShaderGraph::FindInterfaceNode(const std::string& name, std::int32_t flags)
{
    const auto entry = InterfaceNodes.find(InterfaceKey(name, flags));
    if (entry != InterfaceNodes.end())
        return entry->second;
    for (auto provider = Providers.rbegin(); provider != Providers.rend(); ++provider) {
        if (ShaderNodeHandle node = (*provider)->ProvideInterfaceNode(name, flags, *this))
            return node;
    }
    throw ShaderError(Compose("failed to find interface node \"", name, "\" (flags=", flags, ")"));
}

ShaderNodeHandle ShaderGraph::GetInterfaceNode(const std::string& name, std::int32_t flags,
                                               const ShaderType& expected)
{
    ShaderNodeHandle node = FindInterfaceNode(name, flags);
    if (node->Type != expected) {
        throw ShaderError(Compose(node->Describe(), " expected to have type ", expected.Format()));
    }
    return node;
}
