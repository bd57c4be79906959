#pragma once

#include "mox/ShaderError.h"
#include "mox/host/HostError.h"

#include <boost/smart_ptr/bad_weak_ptr.hpp>

#include <string>

namespace Mox::Host {

/// Calls into the library or a plug-in and gives every failure the place that it belongs to: a
/// ShaderError, the plain string of a doubled parameter name, or an edge that has gone.
/// @throws HostError for these; anything else, such as std::bad_alloc, passes unchanged
template <class Call>
decltype(auto) CallLibrary(const Place& where, Call call)
{
    try {
        return call();
    } catch (const ShaderError& error) {
        throw HostError(where, error.Message);
    } catch (const std::string& message) {
        throw HostError(where, message);
    } catch (const boost::bad_weak_ptr&) {
        throw HostError(where, "an edge was destroyed while the node still lists it");
    }
}

} // namespace Mox::Host
