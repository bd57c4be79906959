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

/// A parameter of one or more float components. Each of hasMin, hasMax and hasDefault stands for
/// its whole column of ranges: until one value is set the column reads as absent.
class MOX_API FloatBinding : public Binding
{
public:
    FloatBinding(StreamType streamType, const std::string& name, std::uint32_t count);
    ~FloatBinding() override;

    std::uint32_t GetCount() const override;

    /// Cuts the components, or appends copies of the last one.
    void SetCount(std::uint32_t newCount) override;

    float GetMin(std::uint32_t index) const override;
    float GetMax(std::uint32_t index) const override;
    float GetDefault(std::uint32_t index) const override;

    using Binding::SetDefault;
    using Binding::SetMax;
    using Binding::SetMin;

    /// An index behind the last component is ignored.
    void SetMin(std::uint32_t index, float newValue) override;
    void SetMax(std::uint32_t index, float newValue) override;
    void SetDefault(std::uint32_t index, float newValue) override;

    /// Replace a whole column by numbers with commas between them. The last number serves the
    /// components for which there is none; no number at all stands for 0. A text in which one piece
    /// is no number is ignored.
    void SetMinText(const std::string& text) override;
    void SetMaxText(const std::string& text) override;
    void SetDefaultText(const std::string& text) override;
    std::string GetMinText() const override;
    std::string GetMaxText() const override;
    std::string GetDefaultText() const override;

    std::vector<FloatRange> ranges; ///< one entry for each component; its length is the count
};

} // namespace Mox::Materials
