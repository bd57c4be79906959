#pragma once

#include "mox/host/Problem.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// The result of exporting one material.
struct ExportedMaterial
{
    std::vector<std::string> Texts; ///< one for each of the exporter's file extensions
    std::string Header; ///< line that may differ between otherwise identical programs; may be empty
    std::vector<std::filesystem::path>
        Inputs;           ///< files other than the document on which the output depends
    ProblemList Problems; ///< if they contain an error, Texts is invalid
};

/// Converts material documents into output files. One exporter may be used by many threads at once.
class Exporter
{
public:
    virtual ~Exporter() = default;

    /// Extensions of the output files, including the dot.
    virtual const std::vector<std::string>& Endings() const = 0;

    /// @throws HostError or another std::exception if the material cannot be exported
    virtual ExportedMaterial Export(const std::filesystem::path& document) const = 0;
};

} // namespace Mox::Host
