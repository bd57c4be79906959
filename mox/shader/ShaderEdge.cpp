#include "mox/shader/ShaderEdge.h"

ShaderEdge::ShaderEdge(const ShaderNodeHandle& tail, const std::string& tailPort,
                       const ShaderNodeHandle& head, const std::string& headPort, bool edgeFlag)
    : Tail(tail), Head(head), TailPort(tailPort), HeadPort(headPort), EdgeFlag(edgeFlag)
{}
