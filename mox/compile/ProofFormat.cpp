#include "mox/compile/ProofFormat.h"

namespace Mox::Host {

std::vector<std::string> ProofFormat::Write(const CgProgram& program, const std::string& file,
                                            ProblemList& problems) const
{
    _compiler.Check(program, file, problems);
    return {};
}

} // namespace Mox::Host
