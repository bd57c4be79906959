#include "tests/compile/WgslFaults.h"

#include "mox/Text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>

using Mox::Materials::Compose;

namespace {

struct WgslFunction
{
    std::string Name;
    std::set<std::string> Pointers; ///< parameters
    std::vector<std::string> Lines; ///< of the body
};

std::vector<WgslFunction> ReadFunctions(const std::string& text)
{
    static const std::regex pointer(R"((\w+): ptr<)");
    std::vector<WgslFunction> functions;
    bool isHead = false;
    bool isBody = false;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line = line.substr(0, line.find("//"));
        if (line.starts_with("fn ")) {
            functions.push_back({line.substr(3, line.find('(') - 3), {}, {}});
            isHead = true;
        }
        if (isHead) {
            for (std::sregex_iterator it(line.begin(), line.end(), pointer), end; it != end; ++it)
                functions.back().Pointers.insert((*it)[1]);
            isBody = line.ends_with("{");
            isHead = !isBody;
        } else if (line == "}") {
            isBody = false;
        } else if (isBody) {
            functions.back().Lines.push_back(line);
        }
    }
    return functions;
}

bool IsWordPart(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool Calls(const std::string& line, const std::string& function)
{
    const std::size_t at = line.find(function + "(");
    return at != std::string::npos && (at == 0 || !IsWordPart(line[at - 1]));
}

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

/// @param pointers parameters that are pointers
bool PassesPointerTwice(const std::string& line, const std::set<std::string>& pointers)
{
    if (pointers.empty() && line.find('&') == std::string::npos)
        return false;
    static const std::regex argument(R"([(,] ?(&?)(\w+)(?=[,)]))");
    std::set<std::string> passed;
    for (std::sregex_iterator it(line.begin(), line.end(), argument), end; it != end; ++it) {
        const bool isPointer = (*it)[1].length() > 0 || pointers.contains((*it)[2]);
        if (isPointer && !passed.insert((*it)[2]).second)
            return true;
    }
    return false;
}

bool IsUndefined(char operation, double left, double right)
{
    const double value = operation == '+'   ? left + right
                         : operation == '-' ? left - right
                         : operation == '*' ? left * right
                                            : left / right;
    return !(std::abs(value) <= std::numeric_limits<float>::max());
}

/// Whether a number is too large, or a quotient, product, sum or difference that begins with it.
bool IsRefused(const std::string& line, std::size_t begin, std::size_t end, double value)
{
    const bool isInt = line.substr(begin, end - begin).find_first_of(".e") == std::string::npos;
    if (line[end] != 'u' && value > (isInt ? double(std::numeric_limits<std::int32_t>::max())
                                           : double(std::numeric_limits<float>::max())))
        return true;
    const std::string_view before = std::string_view(line).substr(0, begin);
    if (isInt && line[end] != 'u' && value == 0.0 &&
        (before.ends_with(" / ") || before.ends_with(" % ")))
        return true;
    const bool isFirst = before.ends_with("= ") || before.ends_with("(") ||
                         before.ends_with(", ") || before.ends_with("return ");
    if (!isFirst || end + 3 >= line.size() || line[end] != ' ' || line[end + 2] != ' ' ||
        std::string_view("+-*/%").find(line[end + 1]) == std::string_view::npos)
        return false;
    char* rest = nullptr;
    const double right = std::strtod(line.c_str() + end + 3, &rest);
    const bool isNumber = rest != line.c_str() + end + 3 && !IsWordPart(*rest) && *rest != '.';
    return isNumber && IsUndefined(line[end + 1], value, right);
}

/// Whether a function of constants has no finite value.
bool IsUndefined(const std::string& function, const std::vector<double>& x)
{
    if (function == "sqrt")
        return x[0] < 0.0;
    if (function == "inverseSqrt" || function == "log" || function == "log2")
        return x[0] <= 0.0;
    if (function == "acos" || function == "asin")
        return std::abs(x[0]) > 1.0;
    if (function == "exp" || function == "exp2")
        return x[0] >= (function == "exp" ? 88.8 : 128.0);
    if (function == "pow")
        return x.size() == 2 && (x[0] < 0.0 || (x[0] == 0.0 && x[1] <= 0.0));
    if (function == "clamp")
        return x.size() == 3 && x[1] > x[2];
    return x.size() == 3 && x[0] >= x[1]; // smoothstep
}

bool CallsWithRefusedConstants(const std::string& line)
{
    constexpr std::array names = {"sqrt(", "Sqrt(", "log",    "acos(",      "asin(",
                                  "exp",   "pow(",  "clamp(", "smoothstep("};
    if (std::none_of(names.begin(), names.end(),
                     [&](const char* name) { return line.find(name) != std::string::npos; }))
        return false;
    static const std::regex call(
        R"(\b(sqrt|inverseSqrt|log2?|acos|asin|exp2?|pow|clamp|smoothstep))"
        R"(\((-?[\d.]+)((?:, -?[\d.]+)*)\))");
    for (std::sregex_iterator it(line.begin(), line.end(), call), end; it != end; ++it) {
        std::vector<double> values{std::stod((*it)[2])};
        std::istringstream rest((*it)[3]);
        for (char comma = 0; rest >> comma;)
            rest >> values.emplace_back();
        if (IsUndefined((*it)[1], values))
            return true;
    }
    return false;
}

bool HasRefusedConstant(const std::string& line)
{
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isStart =
            IsDigit(line[i]) && (i == 0 || (!IsWordPart(line[i - 1]) && line[i - 1] != '.'));
        if (!isStart)
            continue;
        char* rest = nullptr;
        const double value = std::strtod(line.c_str() + i, &rest);
        const auto end = static_cast<std::size_t>(rest - line.c_str());
        if (IsRefused(line, i, end, value))
            return true;
        i = end;
    }
    return CallsWithRefusedConstants(line);
}

/// Finds derivatives that not all fragments reach together: in or after a branch that may be
/// different for neighbouring fragments. Every branch counts.
void FindReadsInBranches(const std::vector<WgslFunction>& functions,
                         std::vector<std::string>& faults)
{
    std::vector<std::string> readers = {"textureSample", "textureSampleBias", "dpdx", "dpdy",
                                        "fwidth"};
    for (const WgslFunction& function : functions) {
        bool isReader = false;
        bool mayHaveReturned = false;
        for (const std::string& line : function.Lines) {
            const bool isNested = line.starts_with("\t\t");
            if (std::any_of(readers.begin(), readers.end(),
                            [&](const std::string& reader) { return Calls(line, reader); })) {
                isReader = true;
                if (isNested || mayHaveReturned)
                    faults.push_back(Compose("a read in a branch in ", function.Name, ": ", line));
            }
            mayHaveReturned =
                mayHaveReturned || (isNested && line.find("\treturn") != std::string::npos);
        }
        if (isReader)
            readers.push_back(function.Name);
    }
}

} // namespace

std::vector<std::string> FindWgslFaults(const std::string& text)
{
    std::vector<std::string> faults;
    const std::vector<WgslFunction> functions = ReadFunctions(text);
    for (const WgslFunction& function : functions) {
        for (const std::string& line : function.Lines) {
            const auto report = [&](const char* fault) {
                faults.push_back(Compose(fault, " in ", function.Name, ": ", line));
            };
            if (StoresSeveralComponents(line))
                report("a store to several components");
            if (PointsToPart(line))
                report("a pointer to a part of a variable");
            if (PassesPointerTwice(line, function.Pointers))
                report("two pointers to one variable");
            if (HasRefusedConstant(line))
                report("a constant without a value");
        }
    }
    if (text.find("diagnostic(off, derivative_uniformity);") == std::string::npos)
        FindReadsInBranches(functions, faults);
    if (text.find("__") != std::string::npos)
        faults.emplace_back("a double underscore");
    return faults;
}
