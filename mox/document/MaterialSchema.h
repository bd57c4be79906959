#pragma once

#include "mox/document/SchemaRules.h"

#include <libxml/relaxng.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The schema of material documents in two forms: as libxml2 checks by it, and as rules that say
/// what was expected where a document breaks it. Both come from the one text, so they agree.
class MaterialSchema
{
public:
    /// The schema, which never changes; it is parsed at the first call, in any thread.
    static const MaterialSchema& Get();

    /// RELAX NG in XML form, as it was when the program was built.
    static const char Text[];

    const ElementRule& Root() const { return *_root; }

    /// @throws std::out_of_range if the schema has no such element
    const ElementRule& Element(const std::string& name) const { return _elements.at(name); }

    /// For a validation context; many of them may use it at the same time. Regular expressions are
    /// left to the rules.
    xmlRelaxNGPtr Grammar() const { return _grammar.get(); }

private:
    MaterialSchema();

    std::map<std::string, ElementRule> _elements;
    const ElementRule* _root = nullptr;
    std::unique_ptr<xmlRelaxNG, decltype(&xmlRelaxNGFree)> _grammar;
};

} // namespace Mox::Host
