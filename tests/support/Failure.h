#pragma once

#include "mox/ShaderError.h"
#include "mox/host/HostError.h"

#include <string>

/// The message of the exception that a call throws, or "no failure".
template <class Error = ShaderError, class Call>
std::string FailureOf(Call call)
{
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "no failure";
}

/// The same for errors of the host.
template <class Call>
std::string HostFailureOf(Call call)
{
    return FailureOf<Mox::Host::HostError>(call);
}
