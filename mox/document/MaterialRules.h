#pragma once

#include "mox/document/ElementRule.h"

#include <string_view>

namespace Mox::Host {

/// The rules of material documents, by which they are judged while they are read. They allow
/// exactly what document/schema/material.rng allows, which is there for other programs; the order
/// of attributes is that of the canonical form.

/// Of the documents that are read and written.
constexpr std::string_view DocumentVersion = "1";

/// The root element.
extern const ElementRule MaterialRule;

extern const ElementRule DescriptionRule;
extern const ElementRule RenderStateRule;
extern const ElementRule PropertyRule;
extern const ElementRule BindingRule;

} // namespace Mox::Host
