#include "mox/Text.h"
#include "mox/languages/Languages.h"
#include "mox/languages/StructWriter.h"

namespace Mox::Languages {

namespace {

using Cg::Builtin;
using Cg::Element;
using Cg::Expression;
using Materials::Compose;

/// Keywords of C++ and Metal, and the built-in functions that programs may call.
const Words& MslReservedWords()
{
    static const Words words = SplitWords(R"(
alignas alignof and and_eq array asm atomic_bool atomic_int atomic_uint auto bitand bitor bool bool2
bool3 bool4 break case catch char char2 char3 char4 char16_t char32_t class compl const const_cast
constant constexpr continue decltype default delete depth2d depth2d_array depth2d_ms depthcube
depthcube_array device do double dynamic_cast else enum explicit export extern false float float2 float3
float4 float2x2 float2x3 float2x4 float3x2 float3x3 float3x4 float4x2 float4x3 float4x4 for fragment
friend goto half half2 half3 half4 half2x2 half2x3 half2x4 half3x2 half3x3 half3x4 half4x2 half4x3
half4x4 if imageblock inline int int2 int3 int4 int16_t int32_t int64_t int8_t kernel long long2 long3
long4 main matrix metal mutable namespace new noexcept not not_eq nullptr operator or or_eq
packed_float2 packed_float3 packed_float4 packed_half2 packed_half3 packed_half4 packed_int2 packed_int3
packed_int4 packed_uint2 packed_uint3 packed_uint4 private protected ptrdiff_t public ray_data register
reinterpret_cast return sampler short short2 short3 short4 signed simd size_t sizeof static
static_assert static_cast struct switch template texture1d texture1d_array texture2d texture2d_array
texture2d_ms texture2d_ms_array texture3d texture_buffer texturecube texturecube_array this thread
thread_local threadgroup threadgroup_imageblock throw true try typedef typeid typename uchar uint uint2
uint3 uint4 uint16_t uint32_t uint64_t uint8_t ulong union unsigned ushort using vec vertex virtual void
volatile wchar_t while xor xor_eq vertexMain fragmentMain
abs absdiff acos acosh all any as_type asin asinh atan atan2 atanh bias ceil clamp clz copysign cos cosh
cospi cross ctz determinant dfdx dfdy discard_fragment distance distance_squared divide dot exp exp10
exp2 extract_bits fabs faceforward fast fdim floor fma fmax fmax3 fmedian3 fmin fmin3 fmod fract frexp
fwidth gradient2d gradient3d gradientcube ilogb insert_bits isfinite isinf isnan isnormal isordered
isunordered ldexp length length_squared level log log10 log2 mad24 mad_sat madhi max max3 median3 min
min3 mix modf mulhi nextafter normalize pow powr precise popcount reflect refract reverse_bits rint
rotate round rsqrt saturate select sign signbit sin sincos sinh sinpi smoothstep sqrt step tan tanh
tanpi transpose trunc)");
    return words;
}

class MslWriter : public StructWriter
{
public:
    MslWriter(const StageProgram& program, Precision precision)
        : StructWriter(program, precision, MslReservedWords())
    {}

protected:
    void PutInterface() override
    {
        PutHeader();
        Text += "#include <metal_stdlib>\n\nusing namespace metal;\n\n";
        for (const UniformBlock& block : Program.Blocks) {
            const std::string variable = PutBlockStruct(block, ";");
            Text += ";\n\n";
            Parameters.push_back(Compose("constant ", block.Name, "& ", variable, " [[buffer(",
                                         block.Number, ")]]"));
        }
        if (!Program.Inputs.empty()) {
            _inputType = Names.Claim(Program.IsVertex ? "VertexInput" : "FragmentInput");
            PutSlots(_inputType, Program.Inputs, [&](const StageSlot& slot) {
                return Program.IsVertex ? Compose("attribute(", slot.Location, ")")
                                        : Compose("user(locn", slot.Location, ")");
            });
        }
        if (!Program.Outputs.empty()) {
            _outputType = Names.Claim(Program.IsVertex ? "VertexOutput" : "FragmentOutput");
            PutSlots(_outputType, Program.Outputs, [&](const StageSlot& slot) {
                if (slot.IsPosition)
                    return std::string("position");
                return Compose(Program.IsVertex ? "user(locn" : "color(", slot.Location, ")");
            });
        }
    }

    void PutMainHead(const Cg::Function&) override
    {
        if (!Program.Inputs.empty())
            Parameters.insert(Parameters.begin(),
                              Compose(_inputType, " ", NameInputs(), " [[stage_in]]"));
        for (const StageSlot& sampler : Program.Samplers) {
            const auto [texture, state] = DeclareSampler(*sampler.Of, sampler.Name);
            Parameters.push_back(Compose(TypeName(sampler.Of->Of), " ", texture, " [[texture(",
                                         sampler.Location, ")]]"));
            Parameters.push_back(
                Compose("sampler ", state, " [[sampler(", sampler.Location, ")]]"));
        }
        Text += Compose(Program.IsVertex ? "vertex " : "fragment ",
                        _outputType.empty() ? "void" : _outputType, " ", EntryPoint(), "(");
        for (const std::string& parameter : Parameters)
            Text += Compose(&parameter == Parameters.data() ? "\n\t" : ",\n\t", parameter);
        Text += ")\n{\n";
        for (const StageSlot& output : Program.Outputs) {
            Text += '\t';
            PutDeclarator(output.Of->Of, Declare(*output.Of, output.Name));
            Text += ";\n";
        }
    }

    void PutMainEnd() override
    {
        if (!Program.Outputs.empty())
            PutLine(Compose("return ", _outputType, "{ ", OutputNames(), " };"));
    }

    std::string TypeName(const Cg::Type& type) const override
    {
        if (type.IsArray())
            return Compose("array<", TypeName(type.Selected()), ", ", type.Length, ">");
        if (type.Structure)
            return StructNames.at(type.Structure);
        switch (type.Of) {
        case Element::Sampler1D:
            return "texture1d<float>";
        case Element::Sampler2D:
        case Element::SamplerRect:
            return "texture2d<float>";
        case Element::Sampler3D:
            return "texture3d<float>";
        case Element::SamplerCube:
            return "texturecube<float>";
        default:
            break;
        }
        Cg::Type named = type.With(Computed(type.Of));
        if (named.IsMatrix())
            std::swap(named.Rows, named.Columns);
        return named.Format();
    }

    void PutDeclarator(const Cg::Type& type, std::string_view name) override
    {
        Text += Compose(TypeName(type), " ", name);
    }

    void PutConstant(const Cg::Variable& constant, std::string_view name) override
    {
        Text += Compose("constant ", TypeName(constant.Of), " ", name, " = ");
        Put(*constant.Value, Binding::Assign);
        Text += ";\n\n";
    }

    void PutFunctionHead(const Cg::Function& function, std::string_view name) override
    {
        Text += "static ";
        Writer::PutFunctionHead(function, name);
    }

    void PutParameter(const Cg::Variable& parameter) override
    {
        if (parameter.Of.IsSampler()) {
            const auto [texture, state] = DeclareSampler(parameter, parameter.Name);
            Text += Compose(TypeName(parameter.Of), " ", texture, ", sampler ", state);
        } else {
            Text +=
                Compose(parameter.Where == Cg::Storage::In ? "" : "thread ", TypeName(parameter.Of),
                        parameter.Where == Cg::Storage::In ? " " : "& ", NameOf(parameter));
        }
    }

    std::string StoredMember(const Cg::Type& type, const std::string& name) const override
    {
        const bool isBool = type.Of == Element::Bool;
        const std::string scalar = isBool ? "uint" : type.Of == Element::Int ? "int" : "float";
        if (IsStoredAsVectors(type))
            return Compose(scalar, "4 ", name, "[", CountStoredVectors(type), "]");
        if (type.IsArray() || type.IsMatrix()) {
            Cg::Type element = type;
            element.Length = 0;
            std::swap(element.Rows, element.Columns);
            const std::string declared = Compose(element.With(Element::Float).Format(), " ", name);
            return type.IsArray() ? Compose(declared, "[", type.Length, "]") : declared;
        }
        const int columns = type.Columns;
        const std::string count = columns > 1 ? std::to_string(columns) : std::string();
        return Compose(columns == 3 ? "packed_" : "", scalar, count, " ", name);
    }

    std::string PaddingMember(const std::string& name) const override
    {
        return Compose("float ", name);
    }

    void PutLoaded(const Cg::Type& type, const std::string& member) override
    {
        const bool isFloat = Computed(type.Of) == Element::Float || type.Of == Element::Int;
        const bool isPacked = type.IsVector() && type.Columns == 3 && !member.ends_with("xyz");
        if (isFloat && !isPacked) {
            Text += member;
        } else if (isPacked && !isFloat) {
            Text += Compose(TypeName(type), "(", type.Of == Element::Bool ? "uint3" : "float3", "(",
                            member, "))");
        } else if (type.IsMatrix()) {
            Text += Compose(TypeName(type), "(");
            for (int column = 0; column < type.Columns; ++column)
                Text +=
                    Compose(column > 0 ? ", " : "", TypeName(Cg::VectorType(type.Of, type.Rows)),
                            "(", member, "[", column, "])");
            Text += ')';
        } else {
            Text += Compose(TypeName(type), "(", member, ")");
        }
    }

    std::pair<const char*, const char*> ArrayBrackets() const override { return {"{ ", " }"}; }

    void PutDiscard() override { Text += "discard_fragment();"; }

    void PutZero(const Cg::Type& type) override
    {
        Text += TypeName(type);
        Text += type.IsArray() || type.Structure     ? "{}"
                : type.Of == Element::Bool           ? "(false)"
                : type.Of == Element::Int            ? "(0)"
                : Computed(type.Of) == Element::Half ? "(0.0h)"
                                                     : "(0.0f)";
    }

    void PutNumber(const Expression& number) override
    {
        StructWriter::PutNumber(number);
        if (Computed(number.Of.Of) == Element::Half)
            Text += 'h';
        else if (number.Of.HasFloats() && !Text.ends_with('f'))
            Text += 'f'; // without the suffix it would be a double
    }

    void PutSelect(const Expression& expression, Binding around) override
    {
        if (expression.Operands[0]->Of.IsScalar())
            StructWriter::PutSelect(expression, around);
        else
            PutSelectCall(expression);
    }

    std::string_view FunctionName(const Cg::Intrinsic& intrinsic) const override
    {
        switch (intrinsic.Id) {
        case Builtin::Ddx:
            return "dfdx";
        case Builtin::Ddy:
            return "dfdy";
        case Builtin::Frac:
            return "fract";
        case Builtin::Lerp:
            return "mix";
        case Builtin::Round:
            return "rint";
        default:
            return intrinsic.Name;
        }
    }

    void PutIntrinsic(const Expression& call, Binding around) override
    {
        const Builtin id = call.Builtin->Id;
        const bool isHalf = Computed(call.Of.Of) == Element::Half;
        if (id == Builtin::Degrees || id == Builtin::Radians) {
            const bool isNested = Binding::Product < around;
            Text += isNested ? "(" : "";
            Put(*call.Operands[0], Binding::Product);
            Text += Compose(" * ", id == Builtin::Degrees ? "57.29577951" : "0.01745329252",
                            isHalf ? "h" : "f", isNested ? ")" : "");
        } else if (id == Builtin::Sign && call.Of.Of == Element::Int) {
            // "sign" exists only for floats.
            Text += TypeName(call.Of) + "(sign(" + TypeName(call.Of.With(Element::Float)) + "(";
            Put(*call.Operands[0], Binding::Assign);
            Text += ")))";
        } else {
            StructWriter::PutIntrinsic(call, around);
        }
    }

    void PutRead(const Expression& call) override
    {
        const auto& operands = call.Operands;
        const Builtin id = call.Builtin->Id;
        const Element sampler = operands[0]->Of.Of;
        Put(*operands[0], Binding::Postfix);
        Text += Compose(".sample(", SamplerNames.at(operands[0]->Refers), ", ");
        Put(*operands[1], Binding::Assign);
        // 1D textures have only one mip level.
        if (sampler == Element::Sampler1D) {
            Text += ')';
            return;
        }
        if (id == Builtin::ReadGradient) {
            Text += sampler == Element::Sampler3D     ? ", gradient3d("
                    : sampler == Element::SamplerCube ? ", gradientcube("
                                                      : ", gradient2d(";
            Put(*operands[2], Binding::Assign);
            Text += ", ";
            Put(*operands[3], Binding::Assign);
            Text += "))";
        } else if (id == Builtin::Read) {
            Text += Program.IsVertex ? ", level(0.0f))" : ")";
        } else {
            Text += id == Builtin::ReadAtLevel || Program.IsVertex ? ", level(" : ", bias(";
            Put(*operands[2], Binding::Assign);
            Text += "))";
        }
    }

private:
    template <class Place>
    void PutSlots(const std::string& structName, const std::vector<StageSlot>& slots, Place place)
    {
        Text += Compose("struct ", structName, "\n{\n");
        for (const StageSlot& slot : slots) {
            Text += '\t';
            PutDeclarator(slot.Of->Of, MemberName(slot.Name));
            Text += Compose(" [[", place(slot), "]];\n");
        }
        Text += "};\n\n";
    }

    std::string _inputType;
    std::string _outputType;
    std::vector<std::string> Parameters;
};

} // namespace

constinit const Language Language::Msl = {
    .Name = "msl",
    .Ending = "metal",
    .Write = [](const StageProgram& program,
                Precision precision) { return MslWriter(program, precision).Write(); },
    .PlaceBlock = [](const std::string& name, std::uint32_t number) -> PlaceFields {
        return {{"name", name}, {"buffer", number}};
    },
    .PlaceSampler = [](const SamplerPlace& sampler) -> PlaceFields {
        return {{"texture", sampler.Name},
                {"textureIndex", sampler.Unit},
                {"sampler", sampler.Name + "Sampler"},
                {"samplerIndex", sampler.Unit}};
    },
    .PlaceInput = [](const std::string& name, std::uint32_t location) -> PlaceFields {
        return {{"name", name}, {"attribute", location}};
    },
};

} // namespace Mox::Languages
