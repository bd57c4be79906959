#include "mox/program/CodeCheck.h"

#include "mox/Text.h"

#include <algorithm>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Compose;

std::vector<std::string_view> SplitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string_view WithoutIndentation(std::string_view line)
{
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    return line;
}

} // namespace

std::shared_ptr<const ProgramCode> CheckCode(const CgProgram& program, const std::string& file,
                                             ProblemList& problems)
{
    auto code = std::make_shared<const ProgramCode>(program.Vertex, program.Fragment);
    std::set<std::string> found; // both stages may contain the same function
    for (const ProgramStage which : bothStages) {
        const std::vector<Cg::SourceError>& errors = code->ErrorsOf(which);
        if (errors.empty())
            continue;
        const StageProgram* stage =
            which == ProgramStage::Vertex ? &program.Vertex : &program.Fragment;
        const std::vector<std::string_view> lines = SplitLines(stage->Text);
        for (const Cg::SourceError& error : errors) {
            auto line = std::min(static_cast<std::size_t>(error.Where.Line) - 1,
                                 lines.empty() ? 0 : lines.size() - 1);
            const auto& [node, bodyLine] = stage->Lines[line];
            // An error at the closing brace of a body started in the body's last line.
            if (bodyLine > 0 && stage->Lines[line - 1] == stage->Lines[line])
                --line;
            std::string text = Compose("line ", bodyLine > 0 ? bodyLine : line + 1, ", column ",
                                       error.Where.Column, ": ", error.Message, ", in \"",
                                       WithoutIndentation(lines[line]), "\"");
            if (found.insert(node + text).second)
                problems.Fail("code", Place(file, 0, node), text);
        }
    }
    return code;
}

} // namespace Mox::Host
