#pragma once

#include "mox/languages/Precision.h"
#include "mox/languages/StageProgram.h"

namespace Mox::Languages {

enum class Language
{
    Glsl,       ///< 4.50 for OpenGL
    VulkanGlsl, ///< 4.50 for Vulkan
    Essl,       ///< 3.00
    Hlsl,       ///< shader model 5.0
    Msl,        ///< 2.0
    Wgsl,
};

/// Writes a stage in a language. The same stage always gives the same source.
WrittenStage WriteStage(const StageProgram& program, Language language, Precision precision);

// One function per language, each in its own file.
WrittenStage WriteGlsl(const StageProgram& program, Precision precision);
WrittenStage WriteVulkanGlsl(const StageProgram& program, Precision precision);
WrittenStage WriteEssl(const StageProgram& program, Precision precision);
WrittenStage WriteHlsl(const StageProgram& program, Precision precision);
WrittenStage WriteMsl(const StageProgram& program, Precision precision);
WrittenStage WriteWgsl(const StageProgram& program, Precision precision);

} // namespace Mox::Languages
