#pragma once

#include <cstddef>
#include <string_view>

namespace Mox::Host {

/// The two programs of a material.
enum class ProgramStage
{
    Vertex,   ///< runs for each vertex
    Fragment, ///< runs for each pixel
};

inline constexpr std::size_t programStageCount = 2;

/// "vertex" or "fragment".
constexpr std::string_view GetStageName(ProgramStage stage)
{
    return stage == ProgramStage::Vertex ? "vertex" : "fragment";
}

} // namespace Mox::Host
