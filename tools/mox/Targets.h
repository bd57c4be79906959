#pragma once

#include "mox/program/ProgramFormat.h"
#include "mox/targets/ProgramTranslator.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Tool {

/// The names of the languages in which programs can be exported; "spirv" is included if a compiler
/// is built in.
std::vector<std::string> TargetWords();

/// Whether the programs of a target are binary.
bool IsBinaryTarget(std::string_view word);

/// Creates the formats with these names, in order and without duplicates.
/// @param optimises whether SPIR-V is optimised
std::vector<std::unique_ptr<Host::ProgramFormat>>
MakeFormats(const std::vector<std::string>& words, Languages::Precision precision, bool optimises);

/// Creates a format that checks whether programs can be exported in every language.
std::unique_ptr<Host::ProgramFormat> MakeTargetCheck();

} // namespace Mox::Tool
