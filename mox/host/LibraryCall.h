#pragma once

#include "mox/ShaderError.h"
#include "mox/host/HostError.h"

#include <boost/smart_ptr/bad_weak_ptr.hpp>

#include <exception>
#include <new>
#include <string>

namespace Mox::Host {

/// Calls into the library or a plug-in and gives every failure the place that it belongs to: a
/// ShaderError, the plain string of a doubled parameter name, an edge that has gone, and whatever
/// else a plug-in throws. The code of its own exceptions may be unloaded before somebody higher up
/// reads them, so they end here.
/// @throws HostError for these; std::bad_alloc, and HostErrors of the host's own code that the
///         library calls, pass unchanged
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
    } catch (const HostError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw HostError(where, error.what());
    } catch (...) {
        throw HostError(where, "failed without a message");
    }
}

} // namespace Mox::Host
