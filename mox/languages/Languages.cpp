#include "mox/languages/Languages.h"

namespace Mox::Languages {

WrittenStage WriteStage(const StageProgram& program, Language language, Precision precision)
{
    switch (language) {
    case Language::Glsl:
        return WriteGlsl(program, precision);
    case Language::VulkanGlsl:
        return WriteVulkanGlsl(program, precision);
    case Language::Essl:
        return WriteEssl(program, precision);
    case Language::Hlsl:
        return WriteHlsl(program, precision);
    case Language::Msl:
        return WriteMsl(program, precision);
    case Language::Wgsl:
        return WriteWgsl(program, precision);
    }
    return {};
}

} // namespace Mox::Languages
