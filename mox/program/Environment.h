#pragma once

#include "mox/host/Condition.h"
#include "mox/host/HostError.h"
#include "mox/program/EnvironmentUniform.h"
#include "mox/shader/ShaderFunction.h"
#include "mox/shader/ShaderRegister.h"
#include "mox/shader/ShaderType.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// Where an input of the environment takes its value from.
enum class EnvironmentSource
{
    Stream,  ///< an input for each vertex
    Uniform, ///< a run-time constant
    Value,   ///< a value that the material writes or the environment supplies
    State,   ///< an attribute of the material's render state, as a constant
};

struct EnvironmentInput
{
    std::string Name; ///< as the body reads it
    ShaderType Type;
    EnvironmentSource Source;
    std::string SourceName;
    std::string Default; ///< Cg expression for a value or state that is missing, or nothing
    Place Where = {};
};

/// One value or output, with the function that computes it.
struct EnvironmentEntry
{
    std::string Name; ///< of the value that it supplies, or of the output parameter
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1);
    ShaderLevel Level = ShaderLevel::Automatic;
    /// All must hold. One with values is an attribute of the material's render state, and any other
    /// a value that the material writes.
    Conditions When;
    std::vector<EnvironmentInput> Inputs;
    std::string Body;                       ///< empty if the value is its only input
    std::optional<ShaderRegister> Register; ///< of an output
    Place Where;
    int BodyLine = 0; ///< of the first line of the body
};

/// Functions that bodies may call.
struct EnvironmentCode
{
    std::vector<std::string> Provides; ///< their names
    std::string Text;
    std::filesystem::path File = {}; ///< from which the text was read
    Place Where = {};                ///< in the manifest
};

/// What surrounds every material: values that nodes read by name, and how what a material writes
/// becomes the position and the colour of a program. Plain data, read from a folder of files.
///
/// An environment may include others. Its own values and outputs come before theirs, so that they
/// replace them; their code and their uniforms come before its own.
struct Environment
{
    std::filesystem::path File;               ///< the manifest
    std::vector<std::filesystem::path> Files; ///< all files read, the manifest first
    std::vector<EnvironmentCode> Code;
    std::vector<EnvironmentEntry> Values;
    std::vector<EnvironmentEntry> Outputs;
    std::vector<EnvironmentUniform> Uniforms; ///< each that an input reads, once
};

/// Reads environment.xml of a folder, and the files that it names, each once.
/// @throws HostError with file and line if a file cannot be read or does not say what it must
Environment ReadEnvironment(const std::filesystem::path& folder);

/// The folder in which a program finds the environment without being told: share/mox/environment
/// of the tree in which the library mox_materials lies.
std::filesystem::path DefaultEnvironmentFolder();

} // namespace Mox::Host
