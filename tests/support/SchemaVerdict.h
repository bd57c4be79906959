#pragma once

#include <string>

/// Whether libxml2, with the whole document and the schema that material.rng states, finds that
/// a text is a well-formed document that follows it.
bool FollowsSchema(const std::string& text, const std::string& schema = MOX_SCHEMA);
