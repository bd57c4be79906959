#include "mox/nodekit/VectorCount.h"

#include "mox/ShaderError.h"

namespace Mox::Materials {

std::int32_t GetVectorCount(const GuiProperty& property)
{
    const std::int32_t count = property.GetInt();
    if (count < 2 || count > 4)
        throw ShaderError("component count must be between 2 and 4");
    return count;
}

} // namespace Mox::Materials
