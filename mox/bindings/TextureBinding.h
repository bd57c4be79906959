#pragma once

#include "mox/bindings/StringBinding.h"

namespace Mox::Materials {

/// A texture; the value is the host's name for it. The fields are hints for sampling it.
class MOX_API TextureBinding : public StringBinding
{
public:
    TextureBinding(StreamType streamType, const std::string& name, std::uint32_t count);
    ~TextureBinding() override;

    /// Also the fields that differ from their values after construction.
    void WriteXml(xmlNodePtr element) const override;

    /// The fields of this class start from their values after construction, so one without its
    /// attribute is reset.
    void ReadXml(xmlNodePtr element) override;

    bool srgb = false;           ///< holds sRGB colours
    bool signedExpanded = false; ///< signed expansion hint
    bool normalised = true;      ///< normalised values hint
    std::string usageHint;       ///< how the texture is used, such as "Normal"
    bool usingAlpha = false;     ///< the material reads its alpha
};

/// The same object as what it is, sharing ownership.
/// @throws ShaderError if its stream type is not StreamType::Texture
MOX_API boost::shared_ptr<TextureBinding>
AsTextureBinding(const boost::shared_ptr<Binding>& binding);

} // namespace Mox::Materials
