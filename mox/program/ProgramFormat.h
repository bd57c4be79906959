#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgProgram.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// One output file of a program.
struct ProgramFile
{
    std::string Text;
    ProgramStage Stage = ProgramStage::Vertex; ///< of a source
    std::vector<int> CgLines = {}; ///< for each line of a source, the line of the stage's Cg
                                   ///< program that it comes from, or 0; empty for other files

    friend bool operator==(const ProgramFile& a, const ProgramFile& b) = default;
};

/// Lists, for each line of a source, the id of the node that it comes from; empty if there is none.
/// @param program that the file was written from
std::vector<std::string> FindNodesOfLines(const ProgramFile& file, const CgProgram& program);

/// A format in which programs are exported. Thread-safe.
class ProgramFormat
{
public:
    virtual ~ProgramFormat() = default;

    /// File name extensions of the files that Write returns, including the leading dot.
    virtual const std::vector<std::string>& Endings() const = 0;

    /// Writes a program; returns one file for each extension.
    /// @param file of the material, for messages
    /// @param problems receives what prevents the export, with nodes by id; if there is an error,
    ///        the result must not be used
    virtual std::vector<ProgramFile> Write(const CgProgram& program, const std::string& file,
                                           ProblemList& problems) const = 0;
};

/// Exports the Cg programs unchanged.
class CgFormat : public ProgramFormat
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<ProgramFile> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    const std::vector<std::string> _endings{".vertex.cg", ".fragment.cg"};
};

} // namespace Mox::Host
