#include "mox/document/SamplerState.h"

namespace Mox::Host {

SamplerState FindSamplerState(const MaterialDocument& document, std::string_view tag)
{
    SamplerState state;
    for (const DocumentBinding& binding : document.Bindings) {
        if (binding.Stream != "texture" || binding.Tag != tag)
            continue;
        for (const DocumentValue& value : binding.Values) {
            if (value.Name == SamplerKeys::WrapU)
                state.WrapU = value.Value;
            else if (value.Name == SamplerKeys::WrapV)
                state.WrapV = value.Value;
            else if (value.Name == SamplerKeys::Filter)
                state.Filter = value.Value;
            else if (value.Name == SamplerKeys::Anisotropy)
                state.Anisotropy = value.Value;
        }
    }
    return state;
}

} // namespace Mox::Host
