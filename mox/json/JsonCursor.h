#pragma once

#include "mox/host/HostError.h"
#include "mox/json/JsonText.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// A JSON value and its location in the document, for parsers that reject all unexpected content.
/// Each operation throws a HostError that names source, JSON pointer, node and port.
class JsonCursor
{
public:
    /// @param value must outlive the cursor and all cursors derived from it
    JsonCursor(const Json& value, const std::string& source) : _value(&value), _where(source) {}

    /// A required member of an object.
    JsonCursor Member(std::string_view name) const;

    /// An optional member of an object.
    std::optional<JsonCursor> Find(std::string_view name) const;

    /// Rejects all other members of an object.
    void AllowOnly(std::initializer_list<std::string_view> names) const;

    std::vector<std::pair<std::string, JsonCursor>> Members() const;
    std::vector<JsonCursor> Items() const; ///< of an array

    /// A string that a document can store.
    std::string Text() const;
    std::int32_t Integer() const;
    std::uint64_t Count() const; ///< a non-negative integer
    float Number() const;
    bool Flag() const;

    /// The string in an optional member, or a default if it is missing.
    std::string TextOf(std::string_view name, const std::string& otherwise = {}) const;

    /// Sets the node and port that later messages about this value and its content will name.
    void Concern(const std::string& node, const std::string& port = {});

    [[noreturn]] void Refuse(const std::string& message) const;

    const Json& Value() const { return *_value; }

private:
    JsonCursor Step(const Json& value, std::string_view token) const;
    void RequireObject() const;
    [[noreturn]] void RefuseKind(std::string_view expected) const;

    const Json* _value;
    Place _where;
    std::string _pointer;
};

} // namespace Mox::Host
