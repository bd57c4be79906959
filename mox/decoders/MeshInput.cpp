#include "mox/decoders/MeshInput.h"

#include "mox/decode/DecodeError.h"

#include <assimp/MemoryIOWrapper.h>
#include <utility>

namespace Mox::Host {

MeshInput::MeshInput(std::string name, FileBytes file, ReadBeside readBeside)
    : _name(std::move(name)), _file(file), _readBeside(std::move(readBeside))
{}

Assimp::IOStream* MeshInput::Open(const char* name, const char* /*mode*/)
{
    FileBytes bytes = _file;
    if (name != _name) {
        if (!_readBeside)
            return nullptr;
        try {
            auto buffer = _buffers.find(name);
            if (buffer == _buffers.end())
                buffer = _buffers.emplace(name, _readBeside(name)).first;
            bytes = buffer->second;
        } catch (const DecodeError& error) {
            _failure = error.what();
            return nullptr;
        }
    }
    return new Assimp::MemoryIOStream(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                      bytes.size());
}

} // namespace Mox::Host
