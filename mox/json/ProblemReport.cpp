#include "mox/json/ProblemReport.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"
#include "mox/json/RecordJson.h"

#include <cctype>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Converts a path to a URI reference for a SARIF log. All characters except ASCII letters, digits
/// and "-._~/" are escaped.
std::string ToUri(const std::string& path)
{
    constexpr std::string_view unescaped = "-._~/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 128 && (std::isalnum(byte) != 0 || unescaped.find(c) != unescaped.npos))
            uri += c;
        else
            uri += {'%', digits[byte / 16], digits[byte % 16]};
    }
    return uri;
}

Json LocationOf(const Place& place)
{
    Json location = Json::object();
    if (!place.File.empty()) {
        Json physical = {{"artifactLocation", {{"uri", ToUri(place.File)}}}};
        if (place.Line > 0) {
            physical["region"] = {{"startLine", place.Line}};
            if (place.Column > 0)
                physical["region"]["startColumn"] = place.Column;
        }
        location["physicalLocation"] = physical;
    }
    if (!place.Node.empty()) {
        const std::string name =
            place.Port.empty() ? place.Node : Compose(place.Node, ".", place.Port);
        location["logicalLocations"] = Json::array({{{"fullyQualifiedName", name}}});
    }
    return location;
}

} // namespace

std::string FormatProblemsAsText(const std::vector<Problem>& problems)
{
    std::string text;
    for (const Problem& problem : problems) {
        const Place line(problem.Where.File, problem.Where.Line, problem.Where.Column);
        const Place node({}, 0, problem.Where.Node, problem.Where.Port);
        text += MessageLine(Compose(line.Format(), GetSeverityName(problem.Level), ": ",
                                    node.Format(), problem.Message));
        text += Compose(" [", problem.Rule, "]\n");
    }
    return text;
}

std::string FormatProblemsAsJson(const std::vector<Problem>& problems)
{
    return FormatJsonLines(ToJson(problems));
}

std::string FormatProblemsAsSarif(const std::vector<Problem>& problems, const std::string& version)
{
    std::set<std::string> rules;
    Json results = Json::array();
    for (const Problem& problem : problems) {
        rules.insert(problem.Rule);
        results.push_back({{"ruleId", problem.Rule},
                           {"level", GetSeverityName(problem.Level)},
                           {"message", {{"text", problem.Message}}},
                           {"locations", Json::array({LocationOf(problem.Where)})}});
    }
    Json ruleList = Json::array();
    for (const std::string& rule : rules)
        ruleList.push_back({{"id", rule}});
    const Json driver = {{"name", "mox"}, {"version", version}, {"rules", ruleList}};
    const Json run = {{"tool", {{"driver", driver}}}, {"results", results}};
    return FormatJsonLines({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                            {"version", "2.1.0"},
                            {"runs", Json::array({run})}});
}

} // namespace Mox::Host
