#pragma once

#include "mox/document/MaterialDocument.h"

#include <string>

/// A material from lines such as
///     paint CoreTexture; Name=rock; Alpha=true
///     lost StudioWobble@2; Twin:node=paint
///     uv.read -> paint.in_uv
///     ; Level:enum=High
///     # what one should know
/// Values stand as in documents; their kinds are those of a new node's properties unless they are
/// told. A number behind the type is the version, which is 0 otherwise. A line that begins with a
/// semicolon has more properties of the node above.
Mox::Host::MaterialDocument MaterialFromText(const std::string& text);
