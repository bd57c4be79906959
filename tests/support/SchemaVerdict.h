#pragma once

#include <string>

/// Whether libxml2 accepts the complete text as a well-formed document that follows the schema in
/// material.rng.
bool FollowsSchema(const std::string& text, const std::string& schema = MOX_SCHEMA);
