#pragma once

#include "mox/bindings/Binding.h"
#include "mox/bindings/FloatList.h"

#include <vector>

namespace Mox::Materials {

/// The values of one component.
struct FloatRange
{
    float min = 0.0f;
    float max = 0.0f;
    float default_ = 0.0f;
};

/// A parameter with one or more float components. hasMin, hasMax and hasDefault each apply to all
/// components: until one value of that kind has been set, the whole kind counts as absent.
class MOX_API FloatBinding : public Binding
{
public:
    FloatBinding(StreamType streamType, const std::string& name, std::uint32_t count);
    ~FloatBinding() override;

    std::uint32_t GetCount() const override;

    /// Removes components, or appends copies of the last one.
    void SetCount(std::uint32_t newCount) override;

    float GetMin(std::uint32_t index) const override;
    float GetMax(std::uint32_t index) const override;
    float GetDefault(std::uint32_t index) const override;

    using Binding::SetDefault;
    using Binding::SetMax;
    using Binding::SetMin;

    /// An index beyond the last component is ignored.
    void SetMin(std::uint32_t index, float newValue) override;
    void SetMax(std::uint32_t index, float newValue) override;
    void SetDefault(std::uint32_t index, float newValue) override;

    /// Set the values of one kind for all components from comma-separated numbers. If there are
    /// fewer numbers than components, the last number is repeated; an empty list counts as 0. A
    /// string with an invalid number is ignored.
    void SetMinText(const std::string& text) override;
    void SetMaxText(const std::string& text) override;
    void SetDefaultText(const std::string& text) override;
    std::string GetMinText() const override;
    std::string GetMaxText() const override;
    std::string GetDefaultText() const override;

    std::vector<FloatRange> ranges; ///< one entry per component; GetCount returns its length
};

} // namespace Mox::Materials
