#include "mox/Text.h"
#include "mox/shader/ShaderRegister.h"
#include "mox/shader/ShaderType.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

namespace {

std::string Insert(const auto& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

TEST(ShaderType, Texts)
{
    struct Case
    {
        ShaderType Type;
        const char* Text;
        const char* Declaration;
    };
    const Case cases[] = {
        {{ComponentType::Float, 1, 1, 1}, "float", "float n"},
        {{ComponentType::Float, 3, 1, 1}, "float3", "float3 n"},
        {{ComponentType::Float, 3, 4, 1}, "float4x3", "float4x3 n"},
        {{ComponentType::Half, 1, 2, 1}, "half2x1", "half2x1 n"},
        {{ComponentType::Half, -4, 2, 1}, "half2x-4", "half2x-4 n"},
        {{ComponentType::Float, 3, 1, 8}, "float3[8]", "float3 n[8]"},
        {{ComponentType::Float, 3, 4, 2}, "float4x3[2]", "float4x3 n[2]"},
        {{ComponentType::Fixed, 0, -1, 0}, "fixed", "fixed n"},
        {{ComponentType::Unknown, 3, 1, 1}, "unknown3", "unknown3 n"},
        {{ComponentType::SamplerCube, 1, 1, 1}, "samplerCUBE", "samplerCUBE n"},
        {{ComponentType::SamplerRect, 1, 1, 1}, "samplerRECT", "samplerRECT n"},
        {{ComponentType::Int, 1234567, 1, 1}, "int1234567", "int1234567 n"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Insert(c.Type), c.Text);
        EXPECT_EQ(c.Type.FormatDeclaration("n"), c.Declaration);
    }
    for (const int bad : {-1, 12, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(FailureOf([&] { Insert(ShaderType(ComponentType(bad), 1, 1, 1)); }),
                  "unknown component type");
    }
    EXPECT_NE(ShaderType(ComponentType::Float, 3, 1, 1), ShaderType(ComponentType::Float, 3, 1, 2));
}

TEST(ShaderRegister, Texts)
{
    using T = ShaderRegisterType;
    struct Case
    {
        ShaderRegister Register;
        const char* Text;
        bool IsWritable;
    };
    const Case cases[] = {
        {{}, "UNKNOWN", false},
        {{T::VertexPosition, 5}, "POSITION", true},
        {{T::VertexColor, 0}, "COLOR0", true},
        {{T::VertexConstant, 17}, "register( c17 )", false},
        {{T::VertexTexCoord, 3}, "TEXCOORD3", true},
        {{T::FragmentTexCoord, 3}, "TEXCOORD3", false},
        {{T::FragmentColorIn, 1}, "COLOR1", false},
        {{T::FragmentColorOut, 1}, "COLOR1", true},
        {{T::FragmentTextureUnit, 1234}, "TEXUNIT1234", false},
        {{T::FragmentDepth, 0}, "DEPTH", true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Insert(c.Register), c.Text);
        EXPECT_EQ(c.Register.IsWritable(), c.IsWritable) << c.Text;
    }
    EXPECT_EQ(GetRegisterInfo(T::FragmentColorIn).Count, 2);
    EXPECT_EQ(GetRegisterInfo(T::FragmentColorOut).Count, 4);
    EXPECT_EQ(FailureOf([] { Insert(ShaderRegister(T(18), 0)); }), "invalid register type");
    EXPECT_EQ(FailureOf([] { ShaderRegister(T(~0u), 0).IsWritable(); }), "invalid register type");
}

TEST(FormatFloat, PrintsWhatAClassicStreamPrints)
{
    const auto expectSame = [](float value) {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << value;
        EXPECT_EQ(Mox::Materials::FormatFloat(value), stream.str());
    };
    for (const float value : {0.0f, -0.0f, 1.0f, 0.8f, 0.25f, 0.33333333f, 99999.95f, 999999.5f,
                              1e6f, 123456.5f, 0.0001f, 0.00001f, 1e10f})
        expectSame(value);
    // The largest and smallest numbers, infinities and NaN.
    for (const std::uint32_t bits :
         {0x7f7fffffu, 0x00800000u, 1u, 0x7f800000u, 0xff800000u, 0x7fc00000u, 0xffc00000u})
        expectSame(std::bit_cast<float>(bits));
    std::mt19937 random(20260724);
    for (int i = 0; i < 100000; ++i)
        expectSame(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
}

} // namespace
