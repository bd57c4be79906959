// Calls on shader graphs and generators: the objects remain consistent, and a failed call changes
// nothing.

#include "fuzz/shader/ShaderSession.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RunShaderSession(Choices(data, size), [](const auto& call, const auto&) { call(); });
    return 0;
}
