#pragma once

#include "mox/Export.h"

#include <exception>
#include <string>

/// The failure of every operation of the library that can name what went wrong.
///
/// Caught by type on either side of the border between host and plug-in. It is final, and its code
/// lies in mox_materials, so an error that a plug-in raised stays valid after that plug-in has been
/// unloaded.
class MOX_API ShaderError final : public std::exception
{
public:
    explicit ShaderError(const std::string& message);
    ShaderError(const ShaderError& other);
    ShaderError& operator=(const ShaderError& other);
    ~ShaderError() override;

    /// The characters of Message, zero-terminated, valid as long as this object lives and Message
    /// is not assigned.
    const char* what() const noexcept override;

    /// The whole text for people: no prefix, no location, no trailing newline.
    std::string Message;
};
