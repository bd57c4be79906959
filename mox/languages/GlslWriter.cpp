#include "mox/Text.h"
#include "mox/languages/Languages.h"
#include "mox/languages/Writer.h"

namespace Mox::Languages {

namespace {

using Cg::Builtin;
using Cg::Element;
using Cg::Expression;
using Cg::ExpressionKind;
using Cg::Operator;
using Materials::Compose;

/// Keywords of all versions, and the built-in functions that programs may call, which no other name
/// may hide.
const Words& GlslReservedWords()
{
    static const Words words = SplitWords(R"(
active asm atomic_uint attribute bool break buffer bvec2 bvec3 bvec4 case cast centroid class coherent
common const continue default discard dmat2 dmat2x2 dmat2x3 dmat2x4 dmat3 dmat3x2 dmat3x3 dmat3x4 dmat4
dmat4x2 dmat4x3 dmat4x4 do double dvec2 dvec3 dvec4 else enum extern external false filter fixed flat
float for fvec2 fvec3 fvec4 goto half highp hvec2 hvec3 hvec4 if iimage1D iimage1DArray iimage2D
iimage2DArray iimage2DMS iimage2DMSArray iimage2DRect iimage3D iimageBuffer iimageCube iimageCubeArray
image1D image1DArray image2D image2DArray image2DMS image2DMSArray image2DRect image3D imageBuffer
imageCube imageCubeArray in inline inout input int interface invariant isampler1D isampler1DArray
isampler2D isampler2DArray isampler2DMS isampler2DMSArray isampler2DRect isampler3D isamplerBuffer
isamplerCube isamplerCubeArray isubpassInput isubpassInputMS itexture1D itexture1DArray itexture2D
itexture2DArray itexture2DMS itexture2DMSArray itexture2DRect itexture3D itextureBuffer itextureCube
itextureCubeArray ivec2 ivec3 ivec4 layout long lowp main mat2 mat2x2 mat2x3 mat2x4 mat3 mat3x2 mat3x3
mat3x4 mat4 mat4x2 mat4x3 mat4x4 mediump namespace noinline noperspective out output packed
partition patch precise precision public readonly resource restrict return sample sampler sampler1D
sampler1DArray sampler1DArrayShadow sampler1DShadow sampler2D sampler2DArray sampler2DArrayShadow
sampler2DMS sampler2DMSArray sampler2DRect sampler2DRectShadow sampler2DShadow sampler3D sampler3DRect
samplerBuffer samplerCube samplerCubeArray samplerCubeArrayShadow samplerCubeShadow samplerExternalOES
samplerShadow shared short sizeof smooth static struct subpassInput subpassInputMS subroutine superp
switch template texture1D texture1DArray texture2D texture2DArray texture2DMS texture2DMSArray
texture2DRect texture3D textureBuffer textureCube textureCubeArray this true typedef uimage1D
uimage1DArray uimage2D uimage2DArray uimage2DMS uimage2DMSArray uimage2DRect uimage3D uimageBuffer
uimageCube uimageCubeArray uint uniform union unsigned usampler1D usampler1DArray usampler2D
usampler2DArray usampler2DMS usampler2DMSArray usampler2DRect usampler3D usamplerBuffer usamplerCube
usamplerCubeArray using usubpassInput usubpassInputMS utexture1D utexture1DArray utexture2D
utexture2DArray utexture2DMS utexture2DMSArray utexture2DRect utexture3D utextureBuffer utextureCube
utextureCubeArray uvec2 uvec3 uvec4 varying vec2 vec3 vec4 void volatile while writeonly
abs acos acosh all any asin asinh atan atanh ceil clamp cos cosh cross dFdx dFdy degrees determinant
distance dot equal exp exp2 faceforward floatBitsToInt floatBitsToUint floor fma fract frexp fwidth
greaterThan greaterThanEqual intBitsToFloat inverse inversesqrt isinf isnan ldexp length lessThan
lessThanEqual log log2 matrixCompMult max min mix mod modf noise1 noise2 noise3 noise4 normalize not
notEqual outerProduct packHalf2x16 packSnorm2x16 packUnorm2x16 pow radians reflect refract round
roundEven sign sin sinh smoothstep sqrt step tan tanh texelFetch texelFetchOffset texture textureGrad
textureGradOffset textureLod textureLodOffset textureOffset textureProj textureProjGrad
textureProjGradOffset textureProjLod textureProjLodOffset textureProjOffset textureSize transpose trunc
uintBitsToFloat unpackHalf2x16 unpackSnorm2x16 unpackUnorm2x16)");
    return words;
}

enum class Dialect
{
    OpenGl,
    Vulkan,
    Essl,
};

class GlslWriter : public Writer
{
public:
    GlslWriter(const StageProgram& program, Precision precision, Dialect dialect)
        : Writer(program, precision, GlslReservedWords()), _isVulkan(dialect == Dialect::Vulkan),
          _isEssl(dialect == Dialect::Essl)
    {}

protected:
    void PutInterface() override
    {
        Text += _isEssl ? "#version 300 es\n" : "#version 450\n";
        PutHeader();
        if (_isEssl) {
            for (const char* type : {"float", "int", "sampler2D", "sampler3D", "samplerCube"})
                Text += Compose("precision highp ", type, ";\n");
        }
        Text += '\n';
        // ESSL links the stages by these names, so they are claimed before all names that only one
        // stage has.
        for (const StageSlot& slot : Program.IsVertex ? Program.Outputs : Program.Inputs) {
            if (!slot.IsPosition)
                Declare(*slot.Of, slot.Name);
        }
        for (const UniformBlock& block : Program.Blocks)
            PutUniforms(block);
        for (const StageSlot& sampler : Program.Samplers) {
            if (!_isEssl) {
                Text += "layout(";
                if (_isVulkan)
                    Text += Compose("set = ", Program.SamplerSet,
                                    ", binding = ", Program.FirstSamplerBinding + sampler.Location);
                else
                    Text += Compose("binding = ", sampler.Location);
                Text += ") ";
            }
            Text += "uniform ";
            PutDeclarator(sampler.Of->Of, Declare(*sampler.Of, sampler.Name));
            Text += ";\n";
        }
        for (const StageSlot& input : Program.Inputs)
            PutSlot(input, "in ", !Program.IsVertex);
        for (const StageSlot& output : Program.Outputs) {
            if (output.IsPosition)
                SetMember(*output.Of, "gl_Position", "gl_Position");
            else
                PutSlot(output, "out ", Program.IsVertex);
        }
        Text += '\n';
    }

    void PutMainHead(const Cg::Function&) override { Text += "void main()\n{\n"; }

    bool HasRemainder() const override { return false; }

    std::string TypeName(const Cg::Type& type) const override
    {
        if (type.Structure)
            return StructNames.at(type.Structure);
        std::string name;
        if (type.IsMatrix()) {
            name = type.Rows == type.Columns ? Compose("mat", type.Rows)
                                             : Compose("mat", type.Columns, "x", type.Rows);
        } else {
            name = ElementName(type.Of, type.Columns > 1);
            if (type.Columns > 1)
                name += std::to_string(type.Columns);
        }
        if (type.IsArray())
            name += Compose("[", type.Length, "]");
        return name;
    }

    void PutDeclarator(const Cg::Type& type, std::string_view name) override
    {
        if (_isEssl && IsRelaxed && Cg::Element::Half == Computed(type.Of))
            Text += "mediump ";
        Writer::PutDeclarator(type, name);
    }

    void PutFunctionHead(const Cg::Function& function, std::string_view name) override
    {
        if (_isEssl && IsRelaxed && Computed(function.Result.Of) == Element::Half)
            Text += "mediump ";
        Writer::PutFunctionHead(function, name);
    }

    void PutParameter(const Cg::Variable& parameter) override
    {
        if (parameter.Where != Cg::Storage::In)
            Text += parameter.Where == Cg::Storage::Out ? "out " : "inout ";
        PutDeclarator(parameter.Of, NameOf(parameter));
    }

    void PutZero(const Cg::Type& type) override
    {
        if (!type.IsArray() && !type.Structure) {
            const char* zero = type.Of == Element::Bool  ? "false"
                               : type.Of == Element::Int ? "0"
                                                         : "0.0";
            Text += type.IsScalar() ? std::string(zero) : Compose(TypeName(type), "(", zero, ")");
            return;
        }
        Text += TypeName(type);
        Text += '(';
        const std::size_t count = type.IsArray() ? type.Length : type.Structure->Members.size();
        for (std::size_t i = 0; i < count; ++i) {
            Text += i > 0 ? ", " : "";
            PutZero(type.IsArray() ? type.Selected() : type.Structure->Members[i].Of);
        }
        Text += ')';
    }

    void PutConstruct(const Expression& expression) override
    {
        const Cg::Type& type = expression.Of;
        if (!type.IsMatrix()) {
            Writer::PutConstruct(expression);
            return;
        }
        Cg::Type transposed = type;
        std::swap(transposed.Rows, transposed.Columns);
        Text += "transpose(";
        PutCall(TypeName(transposed), expression.Operands);
        Text += ')';
    }

    void PutBinary(const Expression& expression, Binding around) override
    {
        const Cg::Type& operands = expression.Operands[0]->Of;
        if (operands.IsMatrix() && expression.Op == Operator::Multiply &&
            expression.Operands[1]->Of.IsMatrix()) {
            PutCall("matrixCompMult", expression.Operands);
            return;
        }
        if (!operands.IsVector() || expression.Op < Operator::Less) {
            Writer::PutBinary(expression, around);
            return;
        }
        if (expression.Op == Operator::And || expression.Op == Operator::Or) {
            PutByComponent(expression);
            return;
        }
        constexpr std::string_view functions[] = {
            "lessThan", "lessThanEqual", "greaterThan", "greaterThanEqual", "equal", "notEqual"};
        PutCall(functions[static_cast<std::size_t>(expression.Op) -
                          static_cast<std::size_t>(Operator::Less)],
                expression.Operands);
    }

    void PutUnary(const Expression& expression, Binding around) override
    {
        if (expression.Op == Operator::Not && expression.Of.IsVector())
            PutCall("not", expression.Operands);
        else
            Writer::PutUnary(expression, around);
    }

    void PutSelect(const Expression& expression, Binding around) override
    {
        if (expression.Operands[0]->Of.IsScalar()) {
            Writer::PutSelect(expression, around);
            return;
        }
        if (!expression.Of.HasFloats()) {
            PutByComponent(expression);
            return;
        }
        Text += "mix(";
        for (const int i : {2, 1, 0}) {
            Put(*expression.Operands[static_cast<std::size_t>(i)], Binding::Assign);
            Text += i > 0 ? ", " : ")";
        }
    }

    std::string_view FunctionName(const Cg::Intrinsic& intrinsic) const override
    {
        switch (intrinsic.Id) {
        case Builtin::Atan2:
            return "atan";
        case Builtin::Ddx:
            return "dFdx";
        case Builtin::Ddy:
            return "dFdy";
        case Builtin::Frac:
            return "fract";
        case Builtin::Lerp:
            return "mix";
        case Builtin::Round:
            return "roundEven";
        case Builtin::Rsqrt:
            return "inversesqrt";
        default:
            return intrinsic.Name;
        }
    }

    void PutIntrinsic(const Expression& call, Binding around) override
    {
        const auto& operands = call.Operands;
        switch (call.Builtin->Id) {
        case Builtin::Saturate:
            Text += "clamp(";
            Put(*operands[0], Binding::Assign);
            Text += ", 0.0, 1.0)";
            return;
        case Builtin::IsFinite: {
            // Comparisons with NaN are false.
            const bool isVector = call.Of.IsVector();
            const bool isNested = !isVector && Binding::Relation <= around;
            Text += isVector ? "lessThanEqual(abs(" : isNested ? "(abs(" : "abs(";
            Put(*operands[0], Binding::Assign);
            Text += isVector ? Compose("), ", TypeName(operands[0]->Of), "(3.402823466e+38))")
                             : ") <= 3.402823466e+38";
            Text += isNested ? ")" : "";
            return;
        }
        case Builtin::Min:
        case Builtin::Max:
            PutWithScalars(call, 1);
            return;
        case Builtin::Lerp:
            PutWithScalars(call, 2);
            return;
        case Builtin::Clamp:
            if (&Unrepeated(*operands[1]) != operands[1] &&
                &Unrepeated(*operands[2]) != operands[2])
                PutWithScalars(call, 1);
            else
                Writer::PutIntrinsic(call, around);
            return;
        default:
            Writer::PutIntrinsic(call, around);
        }
    }

    void PutRead(const Expression& call) override
    {
        const auto& operands = call.Operands;
        Builtin id = call.Builtin->Id;
        const bool isVertex = Program.IsVertex && id != Builtin::ReadGradient;
        Text += id == Builtin::ReadGradient              ? "textureGrad("
                : isVertex || id == Builtin::ReadAtLevel ? "textureLod("
                                                         : "texture(";
        Put(*operands[0], Binding::Assign);
        // ESSL has no 1D textures; they are 2D textures with a height of 1.
        const bool addsDimension = _isEssl && operands[0]->Of.Of == Element::Sampler1D;
        for (std::size_t i = 1; i < operands.size(); ++i) {
            const bool isPlace = i == 1 || id == Builtin::ReadGradient;
            Text += addsDimension && isPlace ? ", vec2(" : ", ";
            Put(*operands[i], Binding::Assign);
            Text += addsDimension && isPlace ? ", 0.0)" : "";
        }
        Text += isVertex && id == Builtin::Read ? ", 0.0)" : ")";
    }

private:
    std::string ElementName(Element element, bool isVector) const
    {
        switch (element) {
        case Element::Void:
            return "void";
        case Element::Bool:
            return isVector ? "bvec" : "bool";
        case Element::Int:
            return isVector ? "ivec" : "int";
        case Element::Sampler1D:
            return _isEssl ? "sampler2D" : "sampler1D";
        case Element::Sampler2D:
            return "sampler2D";
        case Element::Sampler3D:
            return "sampler3D";
        case Element::SamplerCube:
            return "samplerCube";
        case Element::SamplerRect:
            return "sampler2DRect";
        default:
            return isVector ? "vec" : "float";
        }
    }

    void PutConvert(const Expression& expression, Binding around) override
    {
        if (expression.Of.HasFloats() && expression.Operands[0]->Of.HasFloats() &&
            expression.Of.With(Element::Float) == expression.Operands[0]->Of.With(Element::Float))
            Put(*expression.Operands[0], around);
        else
            Writer::PutConvert(expression, around);
    }

    void PutUniforms(const UniformBlock& block)
    {
        const BlockNames names = DeclareMembers(block);
        Text += "layout(std140";
        if (_isVulkan)
            Text += Compose(", set = ", block.Number, ", binding = 0");
        else if (!_isEssl)
            Text += Compose(", binding = ", block.Number);
        Text += Compose(") uniform ", block.Name, "\n{\n");
        for (const BlockMember& member : block.Members) {
            Text += '\t';
            PutDeclarator(member.Of->Of, NameOf(*member.Of));
            Text += ";\n";
        }
        Text += Compose("} ", names.Variable, ";\n\n");
    }

    void PutSlot(const StageSlot& slot, const char* direction, bool isInterpolant)
    {
        if (!_isEssl || !isInterpolant)
            Text += Compose("layout(location = ", slot.Location, ") ");
        Text += direction;
        PutDeclarator(slot.Of->Of, isInterpolant ? NameOf(*slot.Of) : Declare(*slot.Of, slot.Name));
        Text += ";\n";
    }

    /// Writes a call in which scalars need not be expanded to vectors from the given operand on.
    void PutWithScalars(const Expression& call, std::size_t first)
    {
        Text += FunctionName(*call.Builtin);
        Text += '(';
        for (std::size_t i = 0; i < call.Operands.size(); ++i) {
            Text += i > 0 ? ", " : "";
            Put(i < first ? *call.Operands[i] : Unrepeated(*call.Operands[i]), Binding::Assign);
        }
        Text += ')';
    }

    /// Writes an operation that is defined only for scalars once for each component.
    void PutByComponent(const Expression& expression)
    {
        Text += TypeName(expression.Of);
        Text += '(';
        for (int i = 0; i < expression.Of.Columns; ++i) {
            Text += i > 0 ? ", " : "";
            for (std::size_t operand = 0; operand < expression.Operands.size(); ++operand) {
                if (expression.Kind == ExpressionKind::Binary)
                    Text += operand > 0 ? Compose(" ", Symbol(expression.Op), " ") : std::string();
                else
                    Text += operand == 1 ? " ? " : operand == 2 ? " : " : "";
                const Expression& whole = *expression.Operands[operand];
                const Expression& scalar = Unrepeated(whole);
                PutSelected(scalar);
                if (scalar.Of.IsVector()) {
                    Text += '.';
                    Text += "xyzw"[i];
                }
            }
        }
        Text += ')';
    }

    bool _isVulkan;
    bool _isEssl;
};

template <Dialect dialect>
WrittenStage WriteDialect(const StageProgram& program, Precision precision)
{
    return GlslWriter(program, precision, dialect).Write();
}

PlaceFields PlaceAtLocation(const std::string& name, std::uint32_t location)
{
    return {{"name", name}, {"location", location}};
}

} // namespace

constinit const Language Language::Glsl = {
    .Name = "glsl",
    .Ending = "glsl",
    .Write = WriteDialect<Dialect::OpenGl>,
    .PlaceBlock = [](const std::string& name, std::uint32_t number) -> PlaceFields {
        return {{"name", name}, {"binding", number}};
    },
    .PlaceSampler = [](const SamplerPlace& sampler) -> PlaceFields {
        return {{"name", sampler.Name}, {"binding", sampler.Unit}};
    },
    .PlaceInput = PlaceAtLocation,
};

constinit const Language Language::VulkanGlsl = {
    .Name = "glsl-vulkan",
    .Ending = "vulkan.glsl",
    .Write = WriteDialect<Dialect::Vulkan>,
    .PlaceBlock = [](const std::string& name, std::uint32_t number) -> PlaceFields {
        return {{"name", name}, {"set", number}, {"binding", 0u}};
    },
    .PlaceSampler = [](const SamplerPlace& sampler) -> PlaceFields {
        return {{"name", sampler.Name},
                {"set", sampler.Set},
                {"binding", sampler.FirstBinding + sampler.Unit}};
    },
    .PlaceInput = PlaceAtLocation,
};

constinit const Language Language::Essl = {
    .Name = "essl",
    .Ending = "essl",
    .Write = WriteDialect<Dialect::Essl>,
    .PlaceBlock = [](const std::string& name, std::uint32_t) -> PlaceFields {
        return {{"name", name}};
    },
    .PlaceSampler = [](const SamplerPlace& sampler) -> PlaceFields {
        return {{"name", sampler.Name}};
    },
    .PlaceInput = PlaceAtLocation,
};

} // namespace Mox::Languages
