#pragma once

#include "mox/document/ElementRule.h"

#include <string_view>

namespace Mox::Host {

/// The rules that the reader applies to material documents. They allow exactly the same documents
/// as document/schema/material.rng, which is provided for other programs; the order of the
/// attributes is the canonical order.

/// Versions of documents. The second version adds annotations and edge points.
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
