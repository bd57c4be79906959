#include "mox/Text.h"
#include "mox/languages/Languages.h"
#include "mox/languages/Writer.h"

namespace Mox::Languages {

namespace {

using Cg::Builtin;
using Cg::Element;
using Cg::Expression;
using Cg::ExpressionKind;
using Materials::Compose;

/// Keywords, types, and the built-in functions that programs may call, which no other name may
/// hide.
const Words& HlslReservedWords()
{
    static constexpr std::string_view numberTypes =
        "bool double dword float half int min10float min12int min16float min16int min16uint uint";
    static const Words words = [] {
        Words all = SplitWords(R"(
AppendStructuredBuffer BlendState Buffer ByteAddressBuffer CompileShader ComputeShader ConstantBuffer
ConsumeStructuredBuffer DepthStencilState DepthStencilView DomainShader GeometryShader Hullshader
InputPatch LineStream NULL OutputPatch PixelShader PointStream RasterizerState RenderTargetView RWBuffer
RWByteAddressBuffer RWStructuredBuffer RWTexture1D RWTexture1DArray RWTexture2D RWTexture2DArray
RWTexture3D SamplerComparisonState SamplerState StructuredBuffer SubpassInput SubpassInputMS Texture1D
Texture1DArray Texture2D Texture2DArray Texture2DMS Texture2DMSArray Texture3D TextureBuffer TextureCube
TextureCubeArray TriangleStream VertexShader asm asm_fragment auto bool break case catch cbuffer
centroid char class column_major compile compile_fragment const const_cast continue decl default delete
discard do double dword dynamic_cast else enum explicit export extern false float for friend fxgroup
globallycoherent goto groupshared half if in inline inout int interface layout line lineadj linear long
main matrix min10float min12int min16float min16int min16uint mutable namespace new nointerpolation
noperspective operator out packoffset pass pixelfragment pixelshader point precise private protected
public register reinterpret_cast return row_major sample sampler sampler1D sampler2D sampler3D
samplerCUBE sampler_state shared short signed sizeof snorm stateblock stateblock_state static
static_cast string struct switch tbuffer technique technique10 technique11 template texture texture1D
texture2D texture3D textureCUBE this throw triangle triangleadj true try typedef typename uint uint64_t
uniform union unorm unsigned using vector vertexfragment vertexshader virtual void volatile while
abort abs acos all any asdouble asfloat asin asint asuint atan atan2 ceil clamp clip cos cosh countbits
cross D3DCOLORtoUBYTE4 ddx ddx_coarse ddx_fine ddy ddy_coarse ddy_fine degrees determinant distance dot
dst errorf exp exp2 f16tof32 f32tof16 faceforward firstbithigh firstbitlow floor fma fmod frac frexp
fwidth isfinite isinf isnan ldexp length lerp lit log log10 log2 mad max min modf msad4 mul noise
normalize pow printf radians rcp reflect refract reversebits round rsqrt saturate sign sin sincos sinh
smoothstep sqrt step tan tanh tex1D tex2D tex3D texCUBE transpose trunc)");
        // The vector and matrix types of every size.
        for (const std::string& type : SplitWords(numberTypes)) {
            for (int rows = 1; rows <= 4; ++rows) {
                all.insert(Compose(type, rows));
                for (int columns = 1; columns <= 4; ++columns)
                    all.insert(Compose(type, rows, "x", columns));
            }
        }
        return all;
    }();
    return words;
}

class HlslWriter : public Writer
{
public:
    HlslWriter(const StageProgram& program, Precision precision)
        : Writer(program, precision, HlslReservedWords())
    {}

protected:
    void PutInterface() override
    {
        PutHeader();
        Text += Text.empty() ? "" : "\n";
        for (const UniformBlock& block : Program.Blocks)
            PutUniforms(block);
        for (const StageSlot& sampler : Program.Samplers) {
            const auto [texture, state] = DeclareSampler(*sampler.Of, sampler.Name);
            Text +=
                Compose(TypeName(sampler.Of->Of), " ", texture, " : register(t", sampler.Location,
                        ");\nSamplerState ", state, " : register(s", sampler.Location, ");\n");
        }
        Text += Program.Samplers.empty() ? "" : "\n";
    }

    /// The position comes last, so that interpolants have the same registers in both stages.
    void PutMainHead(const Cg::Function&) override
    {
        Text += "void main(";
        const char* separator = "\n\t";
        const auto put = [&](const StageSlot& slot, const char* direction,
                             const std::string& semantic) {
            Text += separator;
            Text += direction;
            PutDeclarator(slot.Of->Of, Declare(*slot.Of, slot.Name));
            Text += Compose(" : ", semantic);
            separator = ",\n\t";
        };
        const auto numbered = [](const StageSlot& slot, const char* word) {
            return Compose(word, slot.Location);
        };
        for (const StageSlot& slot : Program.Inputs)
            put(slot, "in ", numbered(slot, Program.IsVertex ? "ATTR" : "TEXCOORD"));
        for (const StageSlot& slot : Program.Outputs) {
            if (!slot.IsPosition)
                put(slot, "out ", numbered(slot, Program.IsVertex ? "TEXCOORD" : "SV_Target"));
        }
        for (const StageSlot& slot : Program.Outputs) {
            if (slot.IsPosition)
                put(slot, "out ", "SV_Position");
        }
        Text += ")\n{\n";
    }

    bool HasRemainder() const override { return false; }

    std::string TypeName(const Cg::Type& type) const override
    {
        if (type.Structure)
            return StructNames.at(type.Structure);
        Cg::Type named = type;
        named.Length = 0;
        named.Of = Computed(type.Of);
        // Matrices of min16float exist, but not every compiler supports them.
        if (named.IsMatrix() && named.Of == Element::Half)
            named.Of = Element::Float;
        switch (named.Of) {
        case Element::Half: {
            const std::string name = named.Format();
            return "min16float" + name.substr(std::string_view("half").size());
        }
        case Element::Sampler1D:
            return "Texture1D";
        case Element::Sampler2D:
        case Element::SamplerRect:
            return "Texture2D";
        case Element::Sampler3D:
            return "Texture3D";
        case Element::SamplerCube:
            return "TextureCube";
        default:
            return named.Format();
        }
    }

    void PutConstant(const Cg::Variable& constant, std::string_view name) override
    {
        Text += "static ";
        Writer::PutConstant(constant, name);
    }

    void PutParameter(const Cg::Variable& parameter) override
    {
        if (parameter.Of.IsSampler()) {
            const auto [texture, state] = DeclareSampler(parameter, parameter.Name);
            Text += Compose(TypeName(parameter.Of), " ", texture, ", SamplerState ", state);
            return;
        }
        if (parameter.Where != Cg::Storage::In)
            Text += parameter.Where == Cg::Storage::Out ? "out " : "inout ";
        PutDeclarator(parameter.Of, NameOf(parameter));
    }

    void PutArgument(const Cg::Variable& parameter, const Expression& argument) override
    {
        Put(argument, Binding::Assign);
        if (parameter.Of.IsSampler())
            Text += Compose(", ", SamplerNames.at(argument.Refers));
    }

    void PutName(const Cg::Variable& variable) override
    {
        const bool isStored = variable.Where == Cg::Storage::Uniform && variable.Of.IsNumeric() &&
                              Computed(variable.Of.Of) == Element::Half;
        Text += isStored ? Compose(TypeName(variable.Of), "(", NameOf(variable), ")")
                         : NameOf(variable);
    }

    void PutZero(const Cg::Type& type) override
    {
        if (!type.IsArray()) {
            Text += Compose("(", TypeName(type), ")0");
            return;
        }
        Text += "{ ";
        for (int i = 0; i < type.Length; ++i) {
            Text += i > 0 ? ", " : "";
            PutZero(type.Selected());
        }
        Text += " }";
    }

    /// Assigns arrays element by element, since braces are valid only in initial values.
    void PutAssign(const Expression& assignment) override
    {
        const Expression& value = *assignment.Operands[1];
        if (value.Kind != ExpressionKind::Construct || !value.Of.IsArray()) {
            Writer::PutAssign(assignment);
            return;
        }
        for (int i = 0; i < value.Of.Length; ++i) {
            Text += i > 0 ? ", " : "";
            Put(*assignment.Operands[0], Binding::Postfix);
            Text += Compose("[", i, "] = ");
            if (value.Operands.empty())
                PutZero(value.Of.Selected());
            else
                Put(*value.Operands[static_cast<std::size_t>(i)], Binding::Assign);
        }
    }

    void PutConstruct(const Expression& expression) override
    {
        if (expression.Of.IsArray() || expression.Of.Structure) {
            Text += "{ ";
            for (const Expression* operand : expression.Operands) {
                Text += operand == expression.Operands[0] ? "" : ", ";
                Put(*operand, Binding::Assign);
            }
            Text += " }";
        } else if (&Unrepeated(expression) == &expression) {
            Writer::PutConstruct(expression);
        } else if (IsLiteral(expression)) {
            const std::vector<Expression*> repeated(expression.Of.Columns, expression.Operands[0]);
            PutCall(TypeName(expression.Of), repeated);
        } else {
            PutSelected(*expression.Operands[0]);
            Text += Compose(".", std::string_view("xxxx").substr(0, expression.Of.Columns));
        }
    }

    /// Writes matrix products and quotients by rows, since compilers disagree on their meaning.
    void PutBinary(const Expression& expression, Binding around) override
    {
        const bool isProduct =
            expression.Op == Cg::Operator::Multiply || expression.Op == Cg::Operator::Divide;
        if (isProduct && expression.Operands[0]->Of.IsMatrix() &&
            expression.Operands[1]->Of.IsMatrix())
            PutByVectors(expression, Symbol(expression.Op), expression.Of.Rows);
        else
            Writer::PutBinary(expression, around);
    }

    void PutConvert(const Expression& expression, Binding around) override
    {
        if (!expression.Of.IsMatrix()) {
            Writer::PutConvert(expression, around);
            return;
        }
        Text += Compose("((", TypeName(expression.Of), ")");
        PutSelected(*expression.Operands[0]);
        Text += ')';
    }

    /// The row comes first, as in Cg.
    void PutElement(const Expression& expression) override
    {
        PutSelected(*expression.Operands[0]);
        for (std::size_t i = 1; i <= 2; ++i) {
            Text += '[';
            Put(*expression.Operands[i]);
            Text += ']';
        }
    }

    void PutIndex(const Expression& expression) override
    {
        PutSelected(*expression.Operands[0]);
        Text += '[';
        Put(*expression.Operands[1]);
        Text += ']';
    }

    void PutProduct(const Expression& call, Binding) override { PutCall("mul", call.Operands); }

    void PutIntrinsic(const Expression& call, Binding around) override
    {
        // "sign" returns ints.
        const bool isSign = call.Builtin->Id == Builtin::Sign && call.Of.HasFloats();
        Text += isSign ? Compose(TypeName(call.Of), "(") : std::string();
        Writer::PutIntrinsic(call, around);
        Text += isSign ? ")" : "";
    }

    void PutRead(const Expression& call) override
    {
        const auto& operands = call.Operands;
        const Builtin id = call.Builtin->Id;
        const bool isVertex = Program.IsVertex && id != Builtin::ReadGradient;
        Put(*operands[0], Binding::Postfix);
        Text += id == Builtin::ReadGradient              ? ".SampleGrad("
                : isVertex || id == Builtin::ReadAtLevel ? ".SampleLevel("
                : id == Builtin::ReadBiased              ? ".SampleBias("
                                                         : ".Sample(";
        Text += SamplerNames.at(operands[0]->Refers);
        for (const Expression* operand : operands.subspan(1)) {
            Text += ", ";
            Put(*operand, Binding::Assign);
        }
        Text += isVertex && id == Builtin::Read ? ", 0.0)" : ")";
    }

private:
    void PutUniforms(const UniformBlock& block)
    {
        constexpr std::uint32_t registerSize = 16;
        constexpr std::uint32_t componentSize = 4;
        Text += Compose("cbuffer ", block.Name, " : register(b", block.Number, ")\n{\n");
        for (const BlockMember& member : block.Members) {
            Cg::Type type = member.Of->Of;
            if (type.HasFloats())
                type.Of = Element::Float;
            Text += type.IsMatrix() ? "\tcolumn_major " : "\t";
            PutDeclarator(type, Declare(*member.Of, member.Name));
            Text += Compose(" : packoffset(c", member.Offset / registerSize);
            if (const std::uint32_t component = member.Offset % registerSize / componentSize)
                Text += Compose(".", std::string_view("xyzw").substr(component, 1));
            Text += ");\n";
        }
        Text += "}\n\n";
    }
};

} // namespace

constinit const Language Language::Hlsl = {
    .Name = "hlsl",
    .Ending = "hlsl",
    .Write = [](const StageProgram& program,
                Precision precision) { return HlslWriter(program, precision).Write(); },
    .PlaceBlock = [](const std::string& name, std::uint32_t number) -> PlaceFields {
        return {{"name", name}, {"register", Compose("b", number)}};
    },
    .PlaceSampler = [](const SamplerPlace& sampler) -> PlaceFields {
        return {{"texture", sampler.Name},
                {"textureRegister", Compose("t", sampler.Unit)},
                {"sampler", sampler.Name + "Sampler"},
                {"samplerRegister", Compose("s", sampler.Unit)}};
    },
    .PlaceInput = [](const std::string& name, std::uint32_t location) -> PlaceFields {
        return {{"name", name}, {"semantic", Compose("ATTR", location)}};
    },
};

} // namespace Mox::Languages
