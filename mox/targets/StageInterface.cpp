#include "mox/targets/StageInterface.h"

#include <algorithm>

namespace Mox::Host {

bool IsReadIn(const UniformBlock& block, ProgramStage stage)
{
    return std::any_of(block.Members.begin(), block.Members.end(), [&](const auto& member) {
        return stage == ProgramStage::Vertex ? member.InVertex : member.InFragment;
    });
}

} // namespace Mox::Host
