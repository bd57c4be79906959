#include "mox/host/HostError.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

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

} // namespace Mox::Host
