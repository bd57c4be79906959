#include "mox/document/DocumentInputs.h"

namespace Mox::Host {

std::vector<std::filesystem::path> TextureFiles(const std::vector<DocumentBinding>& bindings,
                                                const std::filesystem::path& document)
{
    const std::filesystem::path folder = document.parent_path();
    std::vector<std::filesystem::path> files;
    for (const DocumentBinding& binding : bindings) {
        if (binding.Stream != "texture")
            continue;
        for (const DocumentValue& value : binding.Values) {
            if (value.Name == "default" && !value.Value.empty())
                files.push_back(folder / value.Value);
        }
    }
    return files;
}

} // namespace Mox::Host
