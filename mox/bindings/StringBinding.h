#pragma once

#include "mox/bindings/Binding.h"

namespace Mox::Materials {

/// A parameter whose value is one text, such as the uv set of a mesh that it stands for.
class MOX_API StringBinding : public Binding
{
public:
    StringBinding(StreamType streamType, const std::string& name, std::uint32_t count);
    ~StringBinding() override;

    using Binding::SetDefault;

    /// There is one value, whatever the index.
    void SetDefault(std::uint32_t index, const std::string& newValue) override;
    std::string GetDefaultString(std::uint32_t index) const override;

    void SetDefaultText(const std::string& text) override;

    /// The value if one has been set, else empty.
    std::string GetDefaultText() const override;

    std::string value;
};

} // namespace Mox::Materials
