#pragma once

#include "fuzz/support/Choices.h"

#include <functional>

/// Makes a call. After each attempt that throws std::bad_alloc, it calls compare, which claims that
/// nothing has changed, and then makes the next attempt.
using CallMaker =
    std::function<void(const std::function<void()>& call, const std::function<void()>& compare)>;

/// Makes calls on two shader graphs, their generators and the nodes that they share. Claims that
/// a call that fails changes nothing, and that all lists are consistent.
void RunShaderSession(Choices choices, const CallMaker& makeCall);
