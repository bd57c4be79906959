#pragma once

#include "fuzz/support/Choices.h"

#include <functional>

/// Makes a call. After an attempt from which std::bad_alloc comes it calls compare, which claims
/// that nothing has changed, and then makes the next attempt.
using CallMaker =
    std::function<void(const std::function<void()>& call, const std::function<void()>& compare)>;

/// Makes calls on two shader graphs, their generators and the nodes that they share, and claims
/// that each does what it says or changes nothing, and that all lists agree with each other.
void RunShaderSession(Choices choices, const CallMaker& makeCall);
