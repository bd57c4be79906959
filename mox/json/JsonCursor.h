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

/// A value of a JSON text together with where it is, for readers that refuse whatever they do not
/// expect. Each operation throws HostError that names source, JSON pointer, node and port.
class JsonCursor
{
public:
    /// @param value must outlive the cursor and those made from it
    JsonCursor(const Json& value, const std::string& source) : _value(&value), _where(source) {}

    /// A member of an object, which must be there.
    JsonCursor Member(std::string_view name) const;

    /// A member of an object, if it is there.
    std::optional<JsonCursor> Find(std::string_view name) const;

    /// Refuses members of an object that have none of these names.
    void AllowOnly(std::initializer_list<std::string_view> names) const;

    std::vector<std::pair<std::string, JsonCursor>> Members() const;
    std::vector<JsonCursor> Items() const; ///< of an array

    /// A string that a document can hold.
    std::string Text() const;
    std::int32_t Integer() const;
    std::uint64_t Count() const; ///< a whole number that is not negative
    float Number() const;
    bool Flag() const;

    /// The text of an optional member; without it, the other text.
    std::string TextOf(std::string_view name, const std::string& otherwise = {}) const;

    /// Names node and port in messages about this value and those inside it from now on.
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
