#pragma once

#include "mox/cg/Type.h"
#include "mox/languages/StageProgram.h"

#include <cstdint>
#include <string>

namespace Mox::Languages {

/// The size and alignment of a type in the layout "std140", in bytes. Uniform blocks have this
/// layout in every language.
struct Std140
{
    std::uint32_t Size;
    std::uint32_t Alignment;
    std::uint32_t ArrayStride;  ///< distance between elements; 0 if not an array
    std::uint32_t MatrixStride; ///< distance between columns; 0 if not a matrix
};
Std140 GetStd140(const Cg::Type& type);

/// Appends a member to a block, at the first offset that its type allows.
/// @param variable must outlive the block
void AppendMember(UniformBlock& block, const Cg::Variable& variable, std::string name);

/// The size of a block in bytes: the end of its last member, rounded up to a multiple of 16.
std::uint32_t SizeOf(const UniformBlock& block);

/// Whether a uniform is stored as an array of vectors of four floats or ints: one for each element,
/// and for each column of a matrix with two rows. Languages that would lay out such types more
/// tightly than "std140" use this to match it.
bool IsStoredAsVectors(const Cg::Type& type);

/// The number of such vectors.
int CountStoredVectors(const Cg::Type& type);

} // namespace Mox::Languages
