#pragma once

#include "mox/document/ElementRule.h"

#include <string_view>

namespace Mox::Host {

/// The rules of material documents, by which they are judged while they are read. They allow
/// exactly what document/schema/material.rng allows, which is there for other programs; the order
/// of attributes is that of the canonical form.

/// Versions of documents. The second one adds annotations and points of edges.
constexpr std::string_view PlainVersion = "1";
constexpr std::string_view AnnotatedVersion = "2";

/// The root element.
extern const ElementRule MaterialRule;

extern const ElementRule DescriptionRule;
extern const ElementRule RenderStateRule;
extern const ElementRule PropertyRule;
extern const ElementRule EdgeRule;
extern const ElementRule BindingRule;
extern const ElementRule AnnotationRule;

} // namespace Mox::Host
