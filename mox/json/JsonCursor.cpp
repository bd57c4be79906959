#include "mox/json/JsonCursor.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <algorithm>
#include <limits>

namespace Mox::Host {

using Materials::Compose;

namespace {

/// Escapes a name as a token of a JSON pointer.
std::string EscapeToken(std::string_view name)
{
    std::string token;
    for (const char c : name) {
        if (c == '~')
            token += "~0";
        else if (c == '/')
            token += "~1";
        else
            token += c;
    }
    return token;
}

} // namespace

JsonCursor JsonCursor::Member(std::string_view name) const
{
    const auto member = Find(name);
    if (!member)
        Refuse(Compose("member \"", name, "\" is missing"));
    return *member;
}

std::optional<JsonCursor> JsonCursor::Find(std::string_view name) const
{
    RequireObject();
    const auto member = _value->find(std::string(name));
    if (member == _value->end())
        return std::nullopt;
    return Step(*member, name);
}

void JsonCursor::AllowOnly(std::initializer_list<std::string_view> names) const
{
    RequireObject();
    for (const auto& [name, value] : _value->items()) {
        if (std::find(names.begin(), names.end(), name) != names.end())
            continue;
        std::string known;
        for (const std::string_view allowed : names)
            known += Compose(known.empty() ? "\"" : ", \"", allowed, "\"");
        Refuse(Compose("unexpected member ", Excerpt(name), ", expected only ", known));
    }
}

std::vector<std::pair<std::string, JsonCursor>> JsonCursor::Members() const
{
    RequireObject();
    std::vector<std::pair<std::string, JsonCursor>> members;
    for (const auto& [name, value] : _value->items())
        members.emplace_back(name, Step(value, name));
    return members;
}

std::vector<JsonCursor> JsonCursor::Items() const
{
    if (!_value->is_array())
        RefuseKind("an array");
    std::vector<JsonCursor> items;
    items.reserve(_value->size());
    for (const Json& item : *_value)
        items.push_back(Step(item, Compose(items.size())));
    return items;
}

std::string JsonCursor::Text() const
{
    if (!_value->is_string())
        RefuseKind("a string");
    const auto& text = _value->get_ref<const std::string&>();
    if (!IsXmlText(text))
        Refuse("the string contains a character that is not allowed in a document");
    return text;
}

std::int32_t JsonCursor::Integer() const
{
    if (!_value->is_number_integer())
        RefuseKind("an integer");
    constexpr auto low = std::numeric_limits<std::int32_t>::min();
    constexpr auto high = std::numeric_limits<std::int32_t>::max();
    const bool isLarge =
        _value->is_number_unsigned() && _value->get<std::uint64_t>() > std::uint64_t(high);
    const auto number = isLarge ? 0 : _value->get<std::int64_t>();
    if (isLarge || number < low || number > high)
        RefuseKind("a 32-bit integer");
    return static_cast<std::int32_t>(number);
}

std::uint64_t JsonCursor::Count() const
{
    if (!_value->is_number_unsigned())
        RefuseKind("a non-negative integer");
    return _value->get<std::uint64_t>();
}

float JsonCursor::Number() const
{
    if (!_value->is_number())
        RefuseKind("a number");
    const auto number = _value->get<double>();
    constexpr double most = std::numeric_limits<float>::max();
    if (number < -most || number > most)
        RefuseKind("a number within the range of a float");
    return static_cast<float>(number);
}

bool JsonCursor::Flag() const
{
    if (!_value->is_boolean())
        RefuseKind("true or false");
    return _value->get<bool>();
}

std::string JsonCursor::TextOf(std::string_view name, const std::string& otherwise) const
{
    const auto member = Find(name);
    return member ? member->Text() : otherwise;
}

void JsonCursor::Concern(const std::string& node, const std::string& port)
{
    _where.Node = node;
    _where.Port = port;
}

void JsonCursor::Refuse(const std::string& message) const
{
    const std::string place = _pointer.empty() ? "top level" : MessageLine(_pointer);
    throw HostError(_where, Compose(place, ": ", message));
}

JsonCursor JsonCursor::Step(const Json& value, std::string_view token) const
{
    JsonCursor next = *this;
    next._value = &value;
    next._pointer += Compose("/", EscapeToken(token));
    return next;
}

void JsonCursor::RequireObject() const
{
    if (!_value->is_object())
        RefuseKind("an object");
}

void JsonCursor::RefuseKind(std::string_view expected) const
{
    std::string found;
    if (_value->is_structured())
        found = _value->is_array() ? "an array" : "an object";
    else if (_value->is_string())
        found = Excerpt(_value->get_ref<const std::string&>());
    else
        found = FormatJson(*_value);
    Refuse(Compose("expected ", expected, ", found ", found));
}

} // namespace Mox::Host
