#pragma once

#include "mox/ShaderError.h"

#include <string>

/// The message of the ShaderError that call raises, or "no failure".
template <class Call>
std::string FailureOf(Call call)
{
    try {
        call();
    } catch (const ShaderError& error) {
        return error.what();
    }
    return "no failure";
}
