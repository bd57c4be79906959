#include "tests/compile/WgslFaults.h"

#include "mox/Text.h"

#include <regex>
#include <sstream>

using Mox::Materials::Compose;

namespace {

bool StoresSeveralComponents(const std::string& line)
{
    static const std::regex target(R"(^\s*[\w.()*\[\]]+\.[xyzw]{2,4} [-+*/]?=$)");
    const std::size_t equals = line.find("= ");
    return equals != std::string::npos && std::regex_search(line.substr(0, equals + 1), target);
}

bool PointsToPart(const std::string& line)
{
    static const std::regex part(R"(&(\w+[.\[]|\())");
    return line.find('&') != std::string::npos && std::regex_search(line, part);
}

} // namespace

std::vector<std::string> FindWgslFaults(const std::string& text)
{
    std::vector<std::string> faults;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line = line.substr(0, line.find("//"));
        if (StoresSeveralComponents(line))
            faults.push_back(Compose("a store to several components: ", line));
        if (PointsToPart(line))
            faults.push_back(Compose("a pointer to a part of a variable: ", line));
        if (line.find("__") != std::string::npos)
            faults.push_back(Compose("a double underscore: ", line));
    }
    return faults;
}
