#pragma once

#include "mox/bindings/StringBinding.h"

namespace Mox::Materials {

/// A texture parameter; its value is the host's name for the texture. The fields are sampling
/// hints.
class MOX_API TextureBinding : public StringBinding
{
public:
    TextureBinding(StreamType streamType, const std::string& name, std::uint32_t count);
    ~TextureBinding() override;

    /// Also sets the fields of this class that differ from their initial values.
    void WriteXml(xmlNodePtr element) const override;

    /// Fields of this class are reset to their initial values first, so a missing attribute resets
    /// its field.
    void ReadXml(xmlNodePtr element) override;

    bool srgb = false;           ///< contains sRGB colours
    bool signedExpanded = false; ///< hint: signed expansion
    bool normalised = true;      ///< hint: values are normalised
    std::string usageHint;       ///< how the texture is used, such as "Normal"
    bool usingAlpha = false;     ///< the material reads the alpha channel
};

/// Casts a binding to its class, sharing ownership.
/// @throws ShaderError if its stream type is not StreamType::Texture
MOX_API boost::shared_ptr<TextureBinding>
AsTextureBinding(const boost::shared_ptr<Binding>& binding);

} // namespace Mox::Materials
