#include "mox/check/EnvironmentCheck.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/cg/Module.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"
#include "mox/host/NearestName.h"
#include "mox/program/CalledCode.h"
#include "mox/program/CgWriter.h"
#include "mox/program/EnvironmentNodes.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// A string assembled from parts of files that keeps the origin of each line.
class PlacedText
{
public:
    /// Appends whole lines.
    /// @param where origin of the first line
    void Append(std::string_view text, const Place& where)
    {
        if (text.empty())
            return;
        _parts.emplace(_lineCount + 1, where);
        const std::size_t begin = _text.size();
        _text += text;
        if (_text.back() != '\n')
            _text += '\n';
        const auto first = std::next(_text.begin(), static_cast<std::ptrdiff_t>(begin));
        _lineCount += static_cast<int>(std::count(first, _text.end(), '\n'));
    }

    const std::string& Text() const { return _text; }

    /// The origin of a line.
    /// @param line 1-based
    Place PlaceOf(int line) const
    {
        const auto next = _parts.upper_bound(line);
        if (next == _parts.begin())
            return {};
        const auto& [firstLine, where] = *std::prev(next);
        Place place = where;
        place.Line += std::min(line, _lineCount) - firstLine;
        return place;
    }

private:
    std::string _text;
    int _lineCount = 0;
    std::map<int, Place> _parts; ///< by the number of their first line
};

/// Whether a condition is implied by others.
bool FollowsFrom(const Condition& condition, const Conditions& others)
{
    return std::any_of(others.begin(), others.end(), [&](const Condition& other) {
        const auto isAllowed = [&](const std::string& value) {
            const auto& values = condition.Values;
            return std::find(values.begin(), values.end(), value) != values.end();
        };
        return other.Name == condition.Name && other.Values.empty() == condition.Values.empty() &&
               std::all_of(other.Values.begin(), other.Values.end(), isAllowed);
    });
}

bool FollowFrom(const Conditions& conditions, const Conditions& others)
{
    return std::all_of(conditions.begin(), conditions.end(),
                       [&](const Condition& condition) { return FollowsFrom(condition, others); });
}

/// Describes an entry in messages about other entries of its kind.
std::string DescribeEntry(const EnvironmentEntry& entry)
{
    return Compose(entry.Register ? "the output " : "the value ", Excerpt(entry.Name));
}

class EnvironmentCheck
{
public:
    EnvironmentCheck(const Environment& environment, ProblemList& problems)
        : _environment(environment), _problems(problems)
    {
        for (const auto* entries : {&environment.Values, &environment.Outputs}) {
            for (const EnvironmentEntry& entry : *entries)
                _entries.push_back(&entry);
        }
    }

    void Check()
    {
        CheckCode();
        for (const EnvironmentEntry* entry : _entries) {
            CheckReads(*entry);
            for (const bool withDefaults : {false, true})
                CheckBody(*entry, withDefaults);
        }
        CheckOrder();
    }

private:
    void CheckCode()
    {
        PlacedText text;
        for (const EnvironmentCode& code : _environment.Code)
            text.Append(code.Text, Place(code.File.string(), 1));
        const auto module = Cg::ReadModule(text.Text());
        for (const Cg::SourceError& error : module->Errors)
            Fail(text.PlaceOf(error.Where.Line), error.Message);
        if (module->Errors.empty())
            CheckFunctions(*module, text);
    }

    /// Checks that each name provided by a file is a function in that file, and that all other
    /// functions are called.
    void CheckFunctions(const Cg::Module& module, const PlacedText& text)
    {
        std::map<std::string, std::set<std::string_view>> defined; // by file
        std::map<std::string_view, int> unseen;                    // number of definitions
        for (const Cg::Function* function : module.Functions) {
            defined[text.PlaceOf(function->Where.Line).File].insert(function->Name);
            ++unseen[function->Name];
        }
        for (const EnvironmentCode& code : _environment.Code) {
            for (const std::string& name : code.Provides) {
                unseen.erase(name);
                if (!defined[code.File.string()].contains(name))
                    Fail(code.Where, Compose(code.File.string(), " does not define the function ",
                                             Excerpt(name)));
            }
        }
        const auto look = [&](const std::string& from) {
            ForEachWord(from, [&](std::string_view word, std::size_t) {
                if (const auto use = unseen.find(word); use != unseen.end())
                    --use->second;
            });
        };
        look(text.Text());
        for (const EnvironmentEntry* entry : _entries)
            look(entry->Body);
        for (const Cg::Function* function : module.Functions) {
            const auto use = unseen.find(function->Name);
            if (use != unseen.end() && use->second == 0) {
                _problems.Warn("environment-unused", text.PlaceOf(function->Where.Line),
                               Compose("nothing calls the function ",
                                       Excerpt(std::string(function->Name)),
                                       ", and its file does not provide it"));
            }
        }
    }

    /// Checks a body together with the code that programs include for it.
    /// @param withDefaults treats all values that have defaults as missing
    void CheckBody(const EnvironmentEntry& entry, bool withDefaults)
    {
        if (entry.Body.empty())
            return;
        std::vector<const EnvironmentInput*> locals;
        std::vector<ShaderPort> inputs;
        for (const EnvironmentInput& input : entry.Inputs) {
            const bool isMissing = withDefaults && input.Source == EnvironmentSource::Value;
            if (!input.Default.empty() && (isMissing || input.Source == EnvironmentSource::State))
                locals.push_back(&input);
            else
                inputs.push_back({input.Name, input.Type});
        }
        PlacedText text;
        for (const std::size_t code : FindCalledCode(_environment.Code, {entry.Body}))
            text.Append(_environment.Code[code].Text,
                        Place(_environment.Code[code].File.string(), 1));
        text.Append(
            Compose(FormatSignature("body", inputs, {{environmentOutput, entry.Type}}), " {"),
            entry.Where);
        for (const EnvironmentInput* input : locals)
            text.Append(FormatLocal(*input, input->Default), input->Where);
        text.Append(entry.Body, Place(entry.Where.File, entry.BodyLine));
        text.Append("}", entry.Where);
        const auto module = Cg::ReadModule(text.Text());
        for (const Cg::SourceError& error : module->Errors)
            Fail(text.PlaceOf(error.Where.Line), error.Message);
    }

    /// Reports an error once, since bodies and the code they share are checked repeatedly.
    void Fail(const Place& where, const std::string& message)
    {
        if (_reported.insert(Compose(where.File, ":", where.Line, " ", message)).second)
            _problems.Fail("environment-code", where, message);
    }

    void CheckReads(const EnvironmentEntry& entry)
    {
        for (const EnvironmentInput& input : entry.Inputs) {
            if (input.Source == EnvironmentSource::Value && input.Default.empty() &&
                !FollowsFrom({input.SourceName, {}}, entry.When))
                CheckDefined(input, entry);
        }
    }

    void CheckDefined(const EnvironmentInput& input, const EnvironmentEntry& reader)
    {
        std::set<std::string> seen;
        std::vector<RightName> names;
        bool isDefined = IsWrittenByMaterials(input.SourceName);
        for (const EnvironmentEntry& value : _environment.Values) {
            if (seen.insert(value.Name).second)
                names.push_back({value.Name});
            if (value.Name != input.SourceName)
                continue;
            if (FollowFrom(value.When, reader.When))
                return;
            isDefined = true;
        }
        const std::string name = Excerpt(input.SourceName);
        if (isDefined) {
            _problems.Warn("environment-value", input.Where,
                           Compose("the value ", name, " is missing for some materials for which ",
                                   DescribeEntry(reader),
                                   " applies, and the input has no default"));
        } else {
            _problems.Fail("environment-value", input.Where,
                           Compose("nothing defines the value ", name,
                                   ", and the input has no default",
                                   SuggestName(input.SourceName, names)));
        }
    }

    /// Whether other parts of the environment expect that materials may write a value.
    bool IsWrittenByMaterials(const std::string& name) const
    {
        return std::any_of(_entries.begin(), _entries.end(), [&](const EnvironmentEntry* entry) {
            return FollowsFrom({name, {}}, entry->When) ||
                   std::any_of(entry->Inputs.begin(), entry->Inputs.end(),
                               [&](const EnvironmentInput& input) {
                                   return input.Source == EnvironmentSource::Value &&
                                          input.SourceName == name && !input.Default.empty();
                               });
        });
    }

    /// Checks that each of the values with one name, and of the outputs to one register, can apply.
    /// Replacing an included entry is not an error.
    void CheckOrder()
    {
        for (std::size_t i = 0; i < _entries.size(); ++i) {
            const EnvironmentEntry& later = *_entries[i];
            const auto hides = [&](const EnvironmentEntry* earlier) {
                return earlier->Register == later.Register &&
                       (later.Register || earlier->Name == later.Name) &&
                       earlier->Where.File == later.Where.File &&
                       FollowFrom(earlier->When, later.When);
            };
            const auto end = std::next(_entries.begin(), static_cast<std::ptrdiff_t>(i));
            const auto earlier = std::find_if(_entries.begin(), end, hides);
            if (earlier != end) {
                _problems.Warn("environment-hidden", later.Where,
                               Compose(DescribeEntry(later), " never applies, because ",
                                       DescribeEntry(**earlier), " on line ",
                                       (*earlier)->Where.Line, " always takes precedence"));
            }
        }
    }

    const Environment& _environment;
    ProblemList& _problems;
    std::vector<const EnvironmentEntry*> _entries; ///< values, then outputs
    std::set<std::string> _reported;               ///< locations and messages
};

} // namespace

void CheckEnvironment(const Environment& environment, ProblemList& problems)
{
    EnvironmentCheck(environment, problems).Check();
}

} // namespace Mox::Host
