#include "mox/document/DocumentTextures.h"

#include "mox/Text.h"

#include <system_error>

namespace Mox::Host {

namespace {

/// Calls use for each texture with its binding and its name in the document.
template <class Use>
void ForEachTexture(const MaterialDocument& document, Use use)
{
    for (const DocumentBinding& binding : document.Bindings) {
        if (binding.Stream != "texture")
            continue;
        for (const DocumentValue& value : binding.Values) {
            if (value.Name == "default" && !value.Value.empty())
                use(binding, value.Value);
        }
    }
}

} // namespace

std::vector<std::filesystem::path> TextureFiles(const MaterialDocument& document,
                                                const std::filesystem::path& file)
{
    std::vector<std::filesystem::path> files;
    ForEachTexture(document, [&](const DocumentBinding&, const std::string& name) {
        files.push_back(file.parent_path() / name);
    });
    return files;
}

void WarnOfMissingTextures(const MaterialDocument& document, const std::filesystem::path& file,
                           ProblemList& problems)
{
    ForEachTexture(document, [&](const DocumentBinding& binding, const std::string& name) {
        std::error_code error;
        if (!std::filesystem::exists(file.parent_path() / name, error)) {
            problems.Warn("missing-texture", {file.string(), binding.Line},
                          Materials::Compose("binding \"", binding.Tag, "\": the file \"", name,
                                             "\" does not exist"));
        }
    });
}

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
