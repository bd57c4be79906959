#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

namespace Mox::Host {

/// The two programs of a material.
enum class ProgramStage
{
    Vertex,   ///< runs for each vertex
    Fragment, ///< runs for each pixel
};

inline constexpr ProgramStage bothStages[] = {ProgramStage::Vertex, ProgramStage::Fragment};
inline constexpr std::size_t programStageCount = std::size(bothStages);

/// "vertex" or "fragment".
constexpr std::string_view GetStageName(ProgramStage stage)
{
    return stage == ProgramStage::Vertex ? "vertex" : "fragment";
}

/// What to do with copies of interpolated values that both stages need. The choice does not change
/// the image.
enum class StageCopies
{
    HandedOn,  ///< computed in the vertex stage and passed on; saves work in the fragment stage
    MadeTwice, ///< computed in each stage, and only the components that are read
};

} // namespace Mox::Host
