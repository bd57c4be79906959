#include "mox/program/CopyProof.h"

#include <regex>
#include <sstream>

namespace Mox::Host {

bool IsMereCopy(const ShaderNode& function)
{
    static const std::regex assignment(R"(\t?(\w+)(\.[xyzwrgba]+)? = (\w+)(\.[xyzwrgba]+)?;)",
                                       std::regex::optimize);
    std::istringstream lines(function.Code);
    lines.exceptions(std::ios::badbit); // otherwise a lack of memory looks like the end
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (!std::regex_match(line, match, assignment))
            return false;
        const std::int32_t output = function.FindOutputPort(match[1]);
        const std::int32_t input = function.FindInputPort(match[3]);
        if (output < 0 || input < 0 ||
            function.Outputs[static_cast<std::size_t>(output)].Type.Component !=
                function.Inputs[static_cast<std::size_t>(input)].Type.Component)
            return false;
    }
    return true;
}

} // namespace Mox::Host
