#pragma once

#include "mox/Export.h"

#include <exception>
#include <string>

/// The error that every operation of the library throws if it can describe the cause.
///
/// Both hosts and plug-ins can catch it by type. It is final, and its code is in mox_materials, so
/// an error thrown by a plug-in remains valid after the plug-in has been unloaded.
class MOX_API ShaderError final : public std::exception
{
public:
    explicit ShaderError(const std::string& message);
    ShaderError(const ShaderError& other);
    ShaderError& operator=(const ShaderError& other);
    ~ShaderError() override;

    /// Returns Message as a null-terminated string, valid as long as this object exists and Message
    /// is not modified.
    const char* what() const noexcept override;

    /// The complete message for the user, without a prefix, a location or a trailing newline.
    std::string Message;
};
