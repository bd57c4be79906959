#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderType.h"

#include <cstdint>
#include <list>
#include <string>
#include <vector>

/// The stage in which a function runs. Any 32-bit value can be held.
enum class ShaderLevel : std::int32_t
{
    Vertex = 0,
    Fragment = 1,
    Automatic = 2, ///< left to whoever assembles the stages
};

enum class ShaderDirection : std::int32_t
{
    Input = 0,
    Output = 1,
};

/// An annotation that a host may carry along with a function or a parameter. The library makes none
/// and only copies those that it finds.
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
    ShaderDirection Direction = ShaderDirection::Input;
    ShaderType Type = ShaderType(ComponentType::Unknown, 1, 1, 1);
    std::uint32_t Reserved = 0; ///< carried for hosts; 0 here
    std::string Name;
    std::string Annotation; ///< carried for hosts; empty here
    std::list<ShaderExtra> Extras;
};

/// A Cg function as data. The body is opaque text.
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

    /// The parameter at a position from 0 to GetParameterCount() - 1.
    /// @throws ShaderError outside that range
    const ShaderParameter& GetParameter(int index) const;

    ShaderLevel Level = ShaderLevel::Automatic;
    std::string Name = "unknown";
    std::vector<ShaderParameter> Parameters; ///< in order of addition, inputs and outputs mixed
    std::string Code;                        ///< body text
    std::list<ShaderExtra> Extras;
};
