#pragma once

#include "mox/host/AttributeText.h"
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

/// The kind of source that an input of the environment reads.
enum class EnvironmentSource
{
    Stream,  ///< a vertex attribute
    Uniform, ///< a run-time constant
    Value,   ///< a value that the material writes or the environment supplies
    State,   ///< an attribute of the material's render state, as a constant
};

struct EnvironmentInput
{
    std::string Name; ///< the name that the body uses
    ShaderType Type;
    EnvironmentSource Source;
    std::string SourceName;
    std::string Default; ///< Cg expression to use if the value or state is missing; may be empty
    Place Where = {};
};

/// One value or output, and the function that computes it.
struct EnvironmentEntry
{
    std::string Name; ///< of the value it supplies, or of the output parameter
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1);
    ShaderLevel Level = ShaderLevel::Automatic;
    /// All conditions must hold. A condition with values tests an attribute of the material's
    /// render state; one without tests whether the material writes the named value.
    Conditions When;
    std::vector<EnvironmentInput> Inputs;
    std::string Body;                       ///< empty if the result is its only input
    std::optional<ShaderRegister> Register; ///< for an output
    Place Where;
    int BodyLine = 0; ///< file line of the first line of the body
};

/// A piece of code with functions that bodies may call.
struct EnvironmentCode
{
    std::vector<std::string> Provides; ///< names of its functions
    std::string Text;
    std::filesystem::path File = {}; ///< the file that contains the code
    Place Where = {};                ///< position in the manifest
};

/// The data and code that surround every material: values that nodes read by name, and the
/// functions that turn what a material writes into the position and colour of a program. Plain
/// data, read from a folder of files.
///
/// An environment may include others. Its own values and outputs come before theirs, so that they
/// replace them; its code and uniforms come after theirs.
struct Environment
{
    std::filesystem::path File;               ///< the manifest
    std::vector<std::filesystem::path> Files; ///< all files that were read, the manifest first
    std::vector<EnvironmentCode> Code;
    std::vector<EnvironmentEntry> Values;
    std::vector<EnvironmentEntry> Outputs;
    std::vector<EnvironmentUniform> Uniforms; ///< each uniform that an input reads, once
};

/// Reads environment.xml in a folder and the files that it names, each file once.
/// @throws HostError with file and line if a file is unreadable or invalid
Environment ReadEnvironment(const std::filesystem::path& folder);

/// Returns the default environment folder: share/mox/environment in the installation or build tree
/// that contains the library mox_materials.
std::filesystem::path DefaultEnvironmentFolder();

} // namespace Mox::Host
