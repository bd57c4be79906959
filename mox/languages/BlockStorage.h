#pragma once

#include "mox/cg/Type.h"
#include "mox/languages/StageProgram.h"

#include <cstdint>
#include <string>

namespace Mox::Languages {

/// How the layout "std140" stores a type, in bytes. It is the layout of blocks in every language.
struct Std140
{
    std::uint32_t Size;
    std::uint32_t Alignment;
    std::uint32_t ArrayStride;  ///< from element to element; 0 if it is no array
    std::uint32_t MatrixStride; ///< from column to column; 0 if it is no matrix
};
Std140 GetStd140(const Cg::Type& type);

/// Adds a member behind the others of a block, at the first offset that its type allows.
/// @param variable must outlive the block
void AppendMember(UniformBlock& block, const Cg::Variable& variable, std::string name);

/// The bytes of a block: up to the end of its last member, rounded up to whole vectors of four.
std::uint32_t SizeOf(const UniformBlock& block);

/// Whether a uniform is stored as an array of vectors of four floats or ints: one for each element,
/// and for each column of matrices with two rows. Where a language lays such types out more tightly
/// than "std140" this makes it agree.
bool IsStoredAsVectors(const Cg::Type& type);

/// How many such vectors there are.
int CountStoredVectors(const Cg::Type& type);

} // namespace Mox::Languages
