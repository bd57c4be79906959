#pragma once

namespace Mox::Host {

/// What to do with copies of interpolated values that both stages need. The choice does not change
/// the image.
enum class StageCopies
{
    HandedOn,  ///< computed in the vertex stage and passed on; saves work in the fragment stage
    MadeTwice, ///< computed in each stage, and only the components that are read
};

} // namespace Mox::Host
