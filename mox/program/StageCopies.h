#pragma once

namespace Mox::Host {

/// What happens to copies of interpolated values that both stages need. The choice does not change
/// the image.
enum class StageCopies
{
    HandedOn,  ///< made in the vertex stage; saves work in the fragment stage
    MadeTwice, ///< made in each stage, of no more components than are read
};

} // namespace Mox::Host
