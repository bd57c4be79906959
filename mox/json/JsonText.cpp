#include "mox/json/JsonText.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <set>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Converts a byte offset in a document to its line and column.
Place PlaceOf(std::string_view text, std::size_t position, const std::string& source)
{
    const std::string_view before = text.substr(0, position);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
    return {source, static_cast<int>(line), {}, {}, static_cast<int>(column)};
}

/// Removes the error number and location from a parser's message, since the location is reported
/// separately.
std::string CauseOf(std::string_view message)
{
    for (const std::string_view end : {"] ", "parse error at line ", ": "}) {
        const std::size_t found = message.find(end);
        if (found == message.npos)
            break;
        message.remove_prefix(found + end.size());
    }
    return std::string(message);
}

/// Parses a document without creating values, and stops at the first violation.
class JsonGuard : public nlohmann::json_sax<Json>
{
public:
    JsonGuard(std::string_view text, const std::string& source, const JsonLimits& limits)
        : _text(text), _source(source), _limits(limits)
    {}

    bool null() override { return Count(); }
    bool boolean(bool) override { return Count(); }
    bool number_integer(number_integer_t) override { return Count(); }
    bool number_unsigned(number_unsigned_t) override { return Count(); }
    bool number_float(number_float_t, const string_t&) override { return Count(); }
    bool string(string_t&) override { return Count(); }
    bool binary(binary_t&) override { return Count(); }

    bool start_object(std::size_t) override { return Open(); }
    bool start_array(std::size_t) override { return Open(); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }

    bool key(string_t& name) override
    {
        if (!_names.back().insert(name).second)
            throw HostError({_source}, Compose("an object has two members named ", Excerpt(name)));
        if (_names.back().size() > _limits.Members) {
            throw HostError({_source},
                            Compose("an object has more than ", _limits.Members, " members"));
        }
        return true;
    }

    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& error) override
    {
        throw HostError(PlaceOf(_text, position > 0 ? position - 1 : 0, _source),
                        Compose("invalid JSON: ", CauseOf(error.what())));
    }

private:
    bool Count()
    {
        if (++_count > _limits.Values)
            throw HostError({_source}, Compose("more than ", _limits.Values, " values"));
        return true;
    }

    bool Open()
    {
        _names.emplace_back();
        if (_names.size() > _limits.Depth) {
            throw HostError({_source}, Compose("arrays and objects are nested more than ",
                                               _limits.Depth, " levels deep"));
        }
        return Count();
    }

    bool Close()
    {
        _names.pop_back();
        return true;
    }

    std::string_view _text;
    const std::string& _source;
    JsonLimits _limits;
    std::size_t _count = 0;
    std::vector<std::set<std::string>> _names; ///< of each open object; empty for an array
};

} // namespace

Json ParseJson(std::string_view text, const std::string& source, const JsonLimits& limits)
{
    if (text.size() > limits.Bytes)
        throw HostError({source}, Compose("more than ", limits.Bytes, " bytes"));
    // The parser treats a null byte as the end of the input.
    if (const std::size_t null = text.find('\0'); null != text.npos)
        throw HostError(PlaceOf(text, null, source), "invalid JSON: it contains a null byte");
    JsonGuard guard(text, source, limits);
    Json::sax_parse(text, &guard);
    return Json::parse(text);
}

std::string FormatJson(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string FormatJsonLines(const Json& value)
{
    constexpr int indent = 2;
    return value.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace Mox::Host
