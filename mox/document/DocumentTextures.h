#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The texture files that a document puts into its bindings, as paths from where the program runs:
/// the document names them from its own folder. They need not exist.
/// @param file that the document was read from
std::vector<std::filesystem::path> TextureFiles(const MaterialDocument& document,
                                                const std::filesystem::path& file);

/// Warns of each of these files that does not exist.
void WarnOfMissingTextures(const MaterialDocument& document, const std::filesystem::path& file,
                           ProblemList& problems);

/// Attributes of texture bindings in documents that say how the host reads the texture, and their
/// words.
namespace SamplerKeys {

inline constexpr std::string_view WrapU = "wrap_u";
inline constexpr std::string_view WrapV = "wrap_v";
inline constexpr std::string_view Filter = "filter";
inline constexpr std::string_view Anisotropy = "anisotropy";

inline constexpr std::string_view WrapWords[] = {"repeat", "mirror", "clamp"};
inline constexpr std::string_view FilterWords[] = {"nearest", "linear", "trilinear"};
inline constexpr std::string_view AnisotropyWords[] = {"1", "2", "4", "8", "16"};

} // namespace SamplerKeys

/// How a texture is read, in the words of documents; empty for what is the host's to choose.
struct SamplerState
{
    std::string WrapU;      ///< beyond the left and the right side
    std::string WrapV;      ///< beyond the upper and the lower side
    std::string Filter;     ///< between texels; "trilinear" mixes levels too
    std::string Anisotropy; ///< how many samples there may be where the surface is seen at an angle
};

/// The sampler state that a document sets for the texture binding of that name.
SamplerState FindSamplerState(const MaterialDocument& document, std::string_view tag);

} // namespace Mox::Host
