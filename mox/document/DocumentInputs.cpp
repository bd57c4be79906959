#include "mox/document/DocumentInputs.h"

#include "mox/Text.h"

#include <system_error>

namespace Mox::Host {

namespace {

/// Calls use for each texture, with the binding and the name in the document.
template <class Use>
void ForEachTexture(const std::vector<DocumentBinding>& bindings, Use use)
{
    for (const DocumentBinding& binding : bindings) {
        if (binding.Stream != "texture")
            continue;
        for (const DocumentValue& value : binding.Values) {
            if (value.Name == "default" && !value.Value.empty())
                use(binding, value.Value);
        }
    }
}

} // namespace

std::vector<std::filesystem::path> TextureFiles(const std::vector<DocumentBinding>& bindings,
                                                const std::filesystem::path& document)
{
    std::vector<std::filesystem::path> files;
    ForEachTexture(bindings, [&](const DocumentBinding&, const std::string& name) {
        files.push_back(document.parent_path() / name);
    });
    return files;
}

void WarnOfMissingTextures(const std::vector<DocumentBinding>& bindings,
                           const std::filesystem::path& document, ProblemList& problems)
{
    ForEachTexture(bindings, [&](const DocumentBinding& binding, const std::string& name) {
        std::error_code error;
        if (!std::filesystem::exists(document.parent_path() / name, error)) {
            problems.Warn("missing-texture", {document.string(), binding.Line, {}, {}},
                          Materials::Compose("binding \"", binding.Tag, "\": there is no file \"",
                                             name, "\""));
        }
    });
}

} // namespace Mox::Host
