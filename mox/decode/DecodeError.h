#pragma once

#include <stdexcept>

namespace Mox::Host {

/// Why a file cannot be decoded. The message does not name the file: decoders do not know its name.
class DecodeError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace Mox::Host
