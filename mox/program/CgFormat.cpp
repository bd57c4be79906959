#include "mox/program/CgFormat.h"

namespace Mox::Host {

std::vector<std::string> CgFormat::Write(const CgProgram& program, const std::string&,
                                         ProblemList&) const
{
    return {program.Vertex.Text, program.Fragment.Text};
}

} // namespace Mox::Host
