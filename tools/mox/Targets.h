#pragma once

#include "mox/program/ProgramFormat.h"
#include "mox/targets/ProgramTranslator.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Tool {

/// The words that name what programs can be exported as; "spirv" is among them if a compiler is
/// built in.
std::vector<std::string> TargetWords();

/// Whether a word's programs are bytes and no text.
bool IsBinaryTarget(std::string_view word);

/// The formats of these words, in order and without doubles.
/// @param optimises whether SPIR-V goes through an optimiser
std::vector<std::unique_ptr<Host::ProgramFormat>>
MakeFormats(const std::vector<std::string>& words, Languages::Precision precision, bool optimises);

/// A format that shows whether programs can be exported in every language.
std::unique_ptr<Host::ProgramFormat> MakeTargetCheck();

} // namespace Mox::Tool
