#pragma once

#include "mox/decoders/MeshDecoder.h"

#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <map>
#include <string>

namespace Mox::Host {

/// All files that assimp can see: the mesh, and the buffers that a glTF file names.
class MeshInput : public Assimp::IOSystem
{
public:
    /// @param name by which assimp knows the mesh
    /// @param file must outlive the object
    MeshInput(std::string name, FileBytes file, ReadBeside readBeside);

    bool Exists(const char* name) const override { return name == _name; }
    char getOsSeparator() const override { return '/'; }

    /// @returns null if there is no such file; why is in Failure
    Assimp::IOStream* Open(const char* name, const char* mode) override;

    void Close(Assimp::IOStream* stream) override { delete stream; }

    /// Why a file could not be opened, or empty.
    const std::string& Failure() const { return _failure; }

private:
    std::string _name;
    FileBytes _file;
    ReadBeside _readBeside;
    std::map<std::string, std::vector<std::byte>> _buffers;
    std::string _failure;
};

} // namespace Mox::Host
