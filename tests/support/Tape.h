#pragma once

#include "mox/decode/DecodeError.h"
#include "mox/decode/DecodedStream.h"

#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

/// An answer of the decoding program in memory, to be written and read.
class Tape
{
public:
    explicit Tape(std::span<const std::byte> bytes = {}) : _bytes(bytes.begin(), bytes.end()) {}

    Mox::Host::WriteBytes Writer()
    {
        return [this](std::span<const std::byte> bytes) {
            _bytes.insert(_bytes.end(), bytes.begin(), bytes.end());
        };
    }

    Mox::Host::ReadBytes Reader()
    {
        return [this](std::span<std::byte> bytes) {
            if (bytes.size() > _bytes.size() - _position)
                throw Mox::Host::DecodeError("end");
            std::memcpy(bytes.data(), _bytes.data() + _position, bytes.size());
            _position += bytes.size();
        };
    }

private:
    std::vector<std::byte> _bytes;
    std::size_t _position = 0;
};
