#pragma once

#include "mox/host/Problem.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// What an exporter makes of one material.
struct ExportedMaterial
{
    std::vector<std::string> Texts; ///< one for each of the exporter's endings
    std::string Header; ///< line in which texts of equal programs may differ, or nothing
    std::vector<std::filesystem::path>
        Inputs;           ///< files that the texts hang on, besides the document
    ProblemList Problems; ///< with an error among them the texts do not count
};

/// Turns material documents into texts. One exporter serves many threads at once.
class Exporter
{
public:
    virtual ~Exporter() = default;

    /// Endings of the file names of the texts, each with its dot.
    virtual const std::vector<std::string>& Endings() const = 0;

    /// @throws HostError or another std::exception if the material cannot be exported
    virtual ExportedMaterial Export(const std::filesystem::path& document) const = 0;
};

} // namespace Mox::Host
