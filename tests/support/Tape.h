#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/decode/DecodedStream.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

/// An in-memory response of the decoding program, for writing and reading.
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
            std::copy_n(_bytes.begin() + static_cast<std::ptrdiff_t>(_position), bytes.size(),
                        bytes.begin());
            _position += bytes.size();
        };
    }

private:
    std::vector<std::byte> _bytes;
    std::size_t _position = 0;
};
