#pragma once

#include "mox/program/ProgramFormat.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Tool {

/// The words that name what programs can be exported as: "cg", and the languages of the compiler if
/// it is built in.
std::vector<std::string> TargetWords();

/// Whether a word's programs are bytes and no text.
bool IsBinaryTarget(std::string_view word);

/// The formats of these words, in order and without doubles.
std::vector<std::unique_ptr<Host::ProgramFormat>>
MakeFormats(const std::vector<std::string>& words);

/// A format that shows whether programs compile; empty if no compiler is built in.
std::unique_ptr<Host::ProgramFormat> MakeCompileCheck();

} // namespace Mox::Tool
