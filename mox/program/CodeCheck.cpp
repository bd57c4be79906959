#include "mox/program/CodeCheck.h"

#include "mox/Text.h"
#include "mox/cg/Module.h"

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

/// A line of a program as a line of what it comes from: the body of a node's function, if the brace
/// that opens it is above, or else the whole program.
struct Source
{
    std::string Node;
    std::size_t FirstLine; ///< of the body
};

Source FindSource(const StageProgram& program, const std::vector<std::string_view>& lines,
                  std::size_t line)
{
    const auto nodeOf = [&](std::size_t i) {
        return i < program.LineNodes.size() ? program.LineNodes[i] : std::string();
    };
    // A brace alone has no node: what is wrong there began above it.
    while (line > 0 && nodeOf(line).empty() && WithoutIndentation(lines[line]).starts_with('}'))
        --line;
    const std::string node = nodeOf(line);
    std::size_t first = line;
    while (first > 0 && lines[first - 1] != "{" && lines[first - 1] != "}")
        --first;
    return {node, first > 0 && lines[first - 1] == "{" && !node.empty() ? first : 0};
}

} // namespace

void CheckCode(const CgProgram& program, const std::string& file, ProblemList& problems)
{
    std::set<std::string> found; // a function may be in both stages
    for (const StageProgram* stage : {&program.Vertex, &program.Fragment}) {
        const auto module = Cg::ReadModule(stage->Text);
        const std::vector<std::string_view> lines = SplitLines(stage->Text);
        for (const Cg::SourceError& error : module->Errors) {
            const auto line = std::min(static_cast<std::size_t>(error.Where.Line) - 1,
                                       lines.empty() ? 0 : lines.size() - 1);
            const auto [node, first] = FindSource(*stage, lines, line);
            std::string text =
                Compose("line ", line - first + 1, ", column ", error.Where.Column, ": ",
                        error.Message, ", in \"", WithoutIndentation(lines[line]), "\"");
            if (found.insert(node + text).second)
                problems.Fail("code", Place{file, 0, node, {}}, text);
        }
    }
}

} // namespace Mox::Host
