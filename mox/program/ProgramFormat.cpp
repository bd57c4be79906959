#include "mox/program/ProgramFormat.h"

#include <numeric>

namespace Mox::Host {

namespace {

ProgramFile MakeFile(const StageProgram& program, ProgramStage stage)
{
    ProgramFile file{program.Text, stage, std::vector<int>(program.Lines.size())};
    std::iota(file.CgLines.begin(), file.CgLines.end(), 1);
    return file;
}

} // namespace

std::vector<std::string> FindNodesOfLines(const ProgramFile& file, const CgProgram& program)
{
    const std::vector<LineOrigin>& origins =
        file.Stage == ProgramStage::Vertex ? program.Vertex.Lines : program.Fragment.Lines;
    std::vector<std::string> nodes;
    nodes.reserve(file.CgLines.size());
    for (const int line : file.CgLines)
        nodes.push_back(line > 0 ? origins.at(static_cast<std::size_t>(line) - 1).Node : "");
    return nodes;
}

std::vector<ProgramFile> CgFormat::Write(const CgProgram& program, const std::string&,
                                         ProblemList&) const
{
    return {MakeFile(program.Vertex, ProgramStage::Vertex),
            MakeFile(program.Fragment, ProgramStage::Fragment)};
}

} // namespace Mox::Host
