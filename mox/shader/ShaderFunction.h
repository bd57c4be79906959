#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderType.h"

#include <cstdint>
#include <list>
#include <string>
#include <vector>

/// The stage in which a function runs. Can hold any 32-bit value.
enum class ShaderLevel : std::int32_t
{
    Vertex = 0,
    Fragment = 1,
    Automatic = 2, ///< chosen when the stages are assembled
};

/// Values of ShaderParameter::Direction. Every value other than 0 is an output.
namespace ShaderDirection {

inline constexpr std::int32_t Input = 0;
inline constexpr std::int32_t Output = 1;

} // namespace ShaderDirection

/// An annotation that a host may attach to a function or a parameter. The library creates none and
/// only copies existing ones.
struct MOX_API ShaderExtra
{
    std::uint32_t Kind = 0;
    std::string Name;
    std::string Value;
    std::uint8_t Flag = 0;
    float Number = 0.0f;
};

/// One parameter of a function.
struct MOX_API ShaderParameter
{
    std::int32_t Direction = ShaderDirection::Input;
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1);
    std::uint32_t Reserved = 0; ///< for hosts; the library sets it to 0
    std::string Name;
    std::string Annotation; ///< for hosts; the library leaves it empty
    std::list<ShaderExtra> Extras;
};

/// A Cg function as data. The body is not interpreted.
class MOX_API ShaderFunction
{
public:
    ShaderFunction();
    ShaderFunction(const ShaderFunction& other);
    ShaderFunction& operator=(const ShaderFunction& other);
    ~ShaderFunction();

    void SetLevel(ShaderLevel level);
    void SetName(const std::string& name);
    void SetCode(const std::string& code);

    std::int32_t GetParameterCount() const;

    /// Returns the parameter at an index from 0 to GetParameterCount() - 1.
    /// @throws ShaderError outside that range
    const ShaderParameter& GetParameter(int index) const;

    ShaderLevel Level = ShaderLevel::Automatic;
    std::string Name = "unknown";
    std::vector<ShaderParameter> Parameters; ///< in order of addition, inputs and outputs mixed
    std::string Code;                        ///< source of the body
    std::list<ShaderExtra> Extras;
};
