#pragma once

#include "mox/host/HostError.h"

#include <string>

namespace Mox::Host {

/// Turns the exception that is being handled into a HostError at a place. Call it in a catch block.
/// @param callee what failed, such as "GetTitle of the type "Rim""; it appears in the message of
///        failures that the library does not raise itself. May be empty.
/// @throws HostError for ShaderErrors, for the plain string of a duplicate parameter name, for an
///         edge that has gone, and for any exception of a plug-in's own; HostErrors and
///         std::bad_alloc leave as what they are. None of them refers to the code of a plug-in.
[[noreturn]] void ThrowAsHostError(const Place& where, const std::string& callee = {});

/// Calls into the library and gives every failure its place.
/// @throws as ThrowAsHostError
template <class Call>
decltype(auto) CallLibrary(const Place& where, Call call)
{
    try {
        return call();
    } catch (...) {
        ThrowAsHostError(where);
    }
}

} // namespace Mox::Host
