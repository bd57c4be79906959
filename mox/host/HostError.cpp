#include "mox/host/HostError.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <boost/smart_ptr/bad_weak_ptr.hpp>

#include <exception>
#include <new>

namespace Mox::Host {

using Materials::Compose;

std::string Place::Format() const
{
    std::string text = File;
    if (Line > 0)
        text += Compose(":", Line);
    if (Line > 0 && Column > 0)
        text += Compose(":", Column);
    if (!text.empty())
        text += ": ";
    if (!Node.empty())
        text += Compose("node \"", Node, "\": ");
    if (!Port.empty())
        text += Compose("port \"", Port, "\": ");
    return text;
}

HostError::HostError(const Place& where, const std::string& message)
    : std::runtime_error(MessageLine(where.Format() + message)), Where(where), Message(message)
{}

void ThrowAsHostError(const Place& where, const std::string& callee)
{
    const std::string prefix = callee.empty() ? callee : callee + ": ";
    try {
        throw;
    } catch (const ShaderError& error) {
        throw HostError(where, error.Message);
    } catch (const std::string& message) {
        throw HostError(where, message);
    } catch (const boost::bad_weak_ptr&) {
        throw HostError(where, "an edge was destroyed although the node still refers to it");
    } catch (const HostError& error) {
        throw HostError(error.Where, error.Message);
    } catch (const std::bad_alloc&) {
        throw std::bad_alloc(); // the handled exception's class may be in a plug-in
    } catch (const std::exception& error) {
        const char* text = error.what();
        throw HostError(where, Compose(prefix, text ? text : "failed without a message"));
    } catch (...) {
        throw HostError(where, prefix + "failed without a message");
    }
}

} // namespace Mox::Host
