#pragma once

#include "mox/document/SchemaRules.h"

#include <map>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The schema of material documents as rules, by which documents are judged and which say what was
/// expected where one breaks them. They are made of the schema's RELAX NG, of which they know a
/// part; whatever else stands in it is refused, so that they allow exactly what it allows.
class MaterialSchema
{
public:
    /// The schema, which never changes; it is parsed at the first call, in any thread.
    static const MaterialSchema& Get();

    /// RELAX NG in XML form, as it was when the program was built.
    static const char Text[];

    /// @param text RELAX NG in XML form
    /// @throws std::logic_error if there are no rules for something in it
    explicit MaterialSchema(std::string_view text);

    MaterialSchema(const MaterialSchema&) = delete;
    MaterialSchema& operator=(const MaterialSchema&) = delete;

    const ElementRule& Root() const { return *_root; }

    /// @throws std::out_of_range if the schema has no such element
    const ElementRule& Element(const std::string& name) const { return _elements.at(name); }

private:
    std::map<std::string, ElementRule> _elements; ///< they refer to each other
    const ElementRule* _root = nullptr;
};

} // namespace Mox::Host
