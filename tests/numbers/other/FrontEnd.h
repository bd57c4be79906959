#pragma once

#include "tests/numbers/other/ModuleLayout.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// A message of the front end about a line of the program.
struct FrontEndMessage
{
    int Line; ///< 1-based; 0 if the message does not refer to a line
    std::string Text;
};

/// The result of reading a program with the front end.
struct FrontEndResult
{
    SpirvWords Module; ///< empty if there are messages
    std::vector<FrontEndMessage> Messages;
};

/// Initialises the front end; its tables are freed with the last of these objects.
class FrontEnd
{
public:
    FrontEnd();
    ~FrontEnd();
    FrontEnd(const FrontEnd&) = delete;
    FrontEnd& operator=(const FrontEnd&) = delete;

    /// Parses a Cg program with the entry point "main". The module is not legal yet: functions may
    /// have sampler parameters, and semantics remain on the variables as decorations. Thread-safe.
    FrontEndResult Read(const std::string& text, ProgramStage stage) const;
};

} // namespace Mox::Host
