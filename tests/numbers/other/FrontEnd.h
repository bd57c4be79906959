#pragma once

#include "tests/numbers/other/ModuleLayout.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// What the front end says about a line of the program.
struct FrontEndMessage
{
    int Line; ///< 1-based in the text; 0 if it speaks of no line
    std::string Text;
};

/// What the front end makes of a text.
struct FrontEndResult
{
    SpirvWords Module; ///< empty if there are messages
    std::vector<FrontEndMessage> Messages;
};

/// Keeps the front end's tables while it lives; they go with the last of these objects.
class FrontEnd
{
public:
    FrontEnd();
    ~FrontEnd();
    FrontEnd(const FrontEnd&) = delete;
    FrontEnd& operator=(const FrontEnd&) = delete;

    /// Reads a Cg program with the entry point "main". The module is not legal yet: functions may
    /// take samplers, and semantics stand on the variables as marks. Safe in parallel.
    FrontEndResult Read(const std::string& text, ProgramStage stage) const;
};

} // namespace Mox::Host
