#pragma once

#include "mox/compile/SpirvCompiler.h"
#include "mox/targets/StageInterface.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Mox::Host {

inline std::uint32_t GetBlockBinding(ProgramStage stage)
{
    return stage == ProgramStage::Vertex ? vertexBlockBinding : fragmentBlockBinding;
}

/// "VertexUniforms" or "FragmentUniforms".
std::string GetBlockName(ProgramStage stage);

/// Gives a module of the front end its final places. Attribute ATTRn stands on location n; a value
/// in TEXCOORDn on location n, called "interpolant<n>" in both stages; the fragment's colour n on
/// location n, called "fragmentColour<n>"; the uniform block on the binding of the stage, its
/// variable called "mox"; each sampler on the binding that samplerBindings has for its name. Names
/// of other things and the marks of the semantics are taken out, so that no name inside a program
/// stands in the way of one outside.
/// @param words a well-formed module
/// @throws std::logic_error if it has another sampler
SpirvWords LayOutModule(const SpirvWords& words, ProgramStage stage,
                        const std::map<std::string, std::uint32_t>& samplerBindings);

} // namespace Mox::Host
