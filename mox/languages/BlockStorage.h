#pragma once

#include "mox/cg/Type.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Mox::Languages {

/// What the layout "std140" gives a type: its size and alignment in bytes.
struct Std140
{
    std::uint32_t Size;
    std::uint32_t Alignment;
};
Std140 GetStd140(const Cg::Type& type);

/// Whether a uniform is stored as an array of vectors of four floats or ints: one for each element,
/// and for each column of matrices with two rows. Where a language lays such types out more tightly
/// than "std140" this makes it agree.
bool IsStoredAsVectors(const Cg::Type& type);

/// How many such vectors there are.
int CountStoredVectors(const Cg::Type& type);

} // namespace Mox::Languages
