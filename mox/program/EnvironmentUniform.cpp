#include "mox/program/EnvironmentUniform.h"

namespace Mox::Host {

std::string_view GetRateName(UniformRate rate)
{
    switch (rate) {
    case UniformRate::Frame:
        return "frame";
    case UniformRate::Material:
        return "material";
    case UniformRate::Object:
        return "object";
    }
    return "";
}

} // namespace Mox::Host
