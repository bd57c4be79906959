#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Returns the texture files that the bindings of a document reference. The document names them
/// relative to its own folder; the returned paths are relative to the working directory. The files
/// need not exist.
/// @param file the file that the document was read from
std::vector<std::filesystem::path> TextureFiles(const MaterialDocument& document,
                                                const std::filesystem::path& file);

/// Adds a warning for each texture file that does not exist.
void WarnOfMissingTextures(const MaterialDocument& document, const std::filesystem::path& file,
                           ProblemList& problems);

/// Attributes of texture bindings in documents that control how the host samples the texture, and
/// their keywords.
namespace SamplerKeys {

inline constexpr std::string_view WrapU = "wrap_u";
inline constexpr std::string_view WrapV = "wrap_v";
inline constexpr std::string_view Filter = "filter";
inline constexpr std::string_view Anisotropy = "anisotropy";

inline constexpr std::string_view WrapWords[] = {"repeat", "mirror", "clamp"};
inline constexpr std::string_view FilterWords[] = {"nearest", "linear", "trilinear"};
inline constexpr std::string_view AnisotropyWords[] = {"1", "2", "4", "8", "16"};

} // namespace SamplerKeys

/// How a texture is sampled, as keywords of the document; empty where the host chooses.
struct SamplerState
{
    std::string WrapU;      ///< beyond the left and right edges
    std::string WrapV;      ///< beyond the top and bottom edges
    std::string Filter;     ///< between texels; "trilinear" also blends mip levels
    std::string Anisotropy; ///< maximum number of samples for surfaces viewed at an angle
};

/// Returns the sampler state that a document sets for the texture binding with this name.
SamplerState FindSamplerState(const MaterialDocument& document, std::string_view tag);

} // namespace Mox::Host
