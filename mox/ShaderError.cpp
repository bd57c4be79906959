#include "mox/ShaderError.h"

ShaderError::ShaderError(const std::string& message) : Message(message)
{}

ShaderError::ShaderError(const ShaderError& other) = default;

ShaderError& ShaderError::operator=(const ShaderError& other) = default;

ShaderError::~ShaderError() = default;

const char* ShaderError::what() const noexcept
{
    return Message.c_str();
}
