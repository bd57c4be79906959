#pragma once

#include "mox/bindings/Binding.h"

namespace Mox::Materials {

/// A parameter with a single string value, such as the name of a UV set of the mesh.
class MOX_API StringBinding : public Binding
{
public:
    StringBinding(StreamType streamType, const std::string& name, std::uint32_t count);
    ~StringBinding() override;

    using Binding::SetDefault;

    /// There is a single value; the index is ignored.
    void SetDefault(std::uint32_t index, const std::string& newValue) override;
    std::string GetDefaultString(std::uint32_t index) const override;

    void SetDefaultText(const std::string& text) override;

    /// The value if one has been set, otherwise empty.
    std::string GetDefaultText() const override;

    std::string value;
};

} // namespace Mox::Materials
