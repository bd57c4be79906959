#pragma once

#include "mox/program/ProgramFormat.h"

namespace Mox::Host {

/// Exports the Cg programs unchanged.
class CgFormat : public ProgramFormat
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<std::string> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    const std::vector<std::string> _endings{".vertex.cg", ".fragment.cg"};
};

} // namespace Mox::Host
