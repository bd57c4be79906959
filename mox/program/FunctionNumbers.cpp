#include "mox/program/FunctionNumbers.h"

#include <algorithm>
#include <vector>

namespace Mox::Host {

namespace {

bool HaveSamePorts(const std::vector<ShaderPort>& a, const std::vector<ShaderPort>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ShaderPort& left, const ShaderPort& right) {
                          return left.Name == right.Name && left.Type == right.Type;
                      });
}

} // namespace

bool FunctionNumbers::Same::operator()(const ShaderNode* a, const ShaderNode* b) const
{
    return a->Code == b->Code && a->Name == b->Name && HaveSamePorts(a->Inputs, b->Inputs) &&
           HaveSamePorts(a->Outputs, b->Outputs);
}

} // namespace Mox::Host
