#include "mox/Text.h"
#include "mox/languages/Languages.h"
#include "mox/languages/StructWriter.h"

#include <algorithm>

namespace Mox::Languages {

namespace {

using Cg::Builtin;
using Cg::Element;
using Cg::Expression;
using Cg::ExpressionKind;
using Cg::Operator;
using Cg::Statement;
using Cg::StatementKind;
using Cg::Storage;
using Materials::Compose;

/// Keywords, reserved words, predeclared types, and the built-in functions that programs may call.
const Words& WgslReservedWords()
{
    static const Words words = SplitWords(R"(
alias break case const const_assert continue continuing default diagnostic discard else enable false fn
for if let loop override requires return struct switch true var while
NULL Self abstract active alignas alignof as asm asm_fragment async attribute auto await become cast
catch class co_await co_return co_yield coherent column_major common compile compile_fragment concept
const_cast consteval constexpr constinit crate debugger decltype delete demote demote_to_helper do
dynamic_cast enum explicit export extends extern external fallthrough filter final finally friend from
fxgroup get goto groupshared highp impl implements import inline instanceof interface layout lowp macro
macro_rules match mediump meta mod module move mut mutable namespace new nil noexcept noinline
nointerpolation non_coherent noncoherent noperspective null nullptr of operator package packoffset
partition pass patch pixelfragment precise precision premerge priv protected pub public readonly ref
regardless register reinterpret_cast require resource restrict self set shared sizeof smooth snorm
static static_assert static_cast std subroutine super target template this thread_local throw trait try
type typedef typeid typename typeof union unless unorm unsafe unsized use using varying virtual volatile
wgsl where with writeonly yield
array atomic bool f16 f32 i32 u32 mat2x2 mat2x3 mat2x4 mat3x2 mat3x3 mat3x4 mat4x2 mat4x3 mat4x4 mat2x2f
mat2x3f mat2x4f mat3x2f mat3x3f mat3x4f mat4x2f mat4x3f mat4x4f mat2x2h mat3x3h mat4x4h ptr sampler
sampler_comparison texture_1d texture_2d texture_2d_array texture_3d texture_cube texture_cube_array
vec2 vec3 vec4 vec2f vec3f vec4f vec2h vec3h vec4h vec2i vec3i vec4i vec2u vec3u vec4u function private
workgroup uniform storage read write read_write vertexMain fragmentMain main
abs acos acosh all any asin asinh atan atan2 atanh bitcast ceil clamp cos cosh countLeadingZeros
countOneBits countTrailingZeros cross degrees determinant distance dot dpdx dpdxCoarse dpdxFine dpdy
dpdyCoarse dpdyFine exp exp2 extractBits faceForward firstLeadingBit firstTrailingBit floor fma fract
frexp fwidth insertBits inverseSqrt ldexp length log log2 max min mix modf normalize pow quantizeToF16
radians reflect refract reverseBits round saturate select sign sin sinh smoothstep sqrt step tan tanh
textureDimensions textureGather textureLoad textureSample textureSampleBias textureSampleGrad
textureSampleLevel transpose trunc)");
    return words;
}

class WgslWriter : public StructWriter
{
public:
    WgslWriter(const StageProgram& program, Precision precision)
        : StructWriter(program, precision, WgslReservedWords())
    {}

protected:
    void PutInterface() override
    {
        PutHeader();
        if (!Program.IsVertex && ReadsInBranches())
            Text += "diagnostic(off, derivative_uniformity);\n";
        Text += Text.empty() ? "" : "\n";
        for (const UniformBlock& block : Program.Blocks) {
            const std::string variable = PutBlockStruct(block, ",");
            Text += Compose("\n\n@group(", block.Number, ") @binding(0) var<uniform> ", variable,
                            ": ", block.Name, ";\n\n");
        }
        for (const StageSlot& sampler : Program.Samplers) {
            const auto [texture, state] = DeclareSampler(*sampler.Of, sampler.Name);
            const int binding = Program.FirstSamplerBinding + 2 * sampler.Location;
            const auto place = [&](int number) {
                return Compose("@group(", Program.SamplerSet, ") @binding(", number, ") var ");
            };
            Text += Compose(place(binding), texture, ": ", TypeName(sampler.Of->Of), ";\n",
                            place(binding + 1), state, ": sampler;\n");
        }
        Text += Program.Samplers.empty() ? "" : "\n";
        if (!Program.Inputs.empty()) {
            _inputType = Names.Claim(Program.IsVertex ? "VertexInput" : "FragmentInput");
            PutSlots(_inputType, Program.Inputs);
        }
        if (!Program.Outputs.empty()) {
            _outputType = Names.Claim(Program.IsVertex ? "VertexOutput" : "FragmentOutput");
            PutSlots(_outputType, Program.Outputs);
        }
    }

    void PutMainHead(const Cg::Function&) override
    {
        Text += Compose(Program.IsVertex ? "@vertex" : "@fragment", "\nfn ", EntryPoint(), "(");
        if (!Program.Inputs.empty())
            Text += Compose(NameInputs(), ": ", _inputType);
        Text += _outputType.empty() ? std::string(")") : Compose(") -> ", _outputType);
        Text += " {\n";
        for (const StageSlot& output : Program.Outputs) {
            Text += "\tvar ";
            PutDeclarator(output.Of->Of, Declare(*output.Of, output.Name));
            Text += ";\n";
        }
    }

    void PutMainEnd() override
    {
        if (!Program.Outputs.empty())
            PutLine(Compose("return ", _outputType, "(", OutputNames(), ");"));
    }

    std::string TypeName(const Cg::Type& type) const override
    {
        if (type.IsArray())
            return Compose("array<", TypeName(type.Selected()), ", ", type.Length, ">");
        if (type.Structure)
            return StructNames.at(type.Structure);
        switch (type.Of) {
        // 1D textures cannot have mip levels here; they are 2D textures with a height of 1.
        case Element::Sampler1D:
        case Element::Sampler2D:
        case Element::SamplerRect:
            return "texture_2d<f32>";
        case Element::Sampler3D:
            return "texture_3d<f32>";
        case Element::SamplerCube:
            return "texture_cube<f32>";
        default:
            break;
        }
        const bool isBool = type.Of == Element::Bool;
        const bool isInt = type.Of == Element::Int;
        if (type.IsMatrix())
            return Compose("mat", type.Columns, "x", type.Rows, "f");
        if (type.IsScalar())
            return isBool ? "bool" : isInt ? "i32" : "f32";
        return Compose("vec", type.Columns, isBool ? "<bool>" : isInt ? "i" : "f");
    }

    /// Floats have only one precision.
    Element Computed(Element element) const override
    {
        return element == Element::Half || element == Element::Fixed ? Element::Float : element;
    }

    void PutDeclarator(const Cg::Type& type, std::string_view name) override
    {
        Text += Compose(name, ": ", TypeName(type));
    }

    void PutStruct(const Cg::StructType& structure, std::string_view name) override
    {
        Text += Compose("struct ", name, " {\n");
        for (const Cg::StructMember& member : structure.Members)
            Text += Compose("\t", MemberName(member.Name), ": ", TypeName(member.Of), ",\n");
        Text += "}\n\n";
    }

    void PutConstant(const Cg::Variable& constant, std::string_view name) override
    {
        Text += "const ";
        PutDeclarator(constant.Of, name);
        Text += " = ";
        Put(*constant.Value, Binding::Assign);
        Text += ";\n\n";
    }

    void PutVariable(const Statement& declaration) override
    {
        const Cg::Variable& variable = *declaration.Refers;
        const bool isFixed = declaration.Value && !variable.IsAssigned;
        Text += isFixed ? "let " : "var ";
        // The value is written before the variable is declared, since it cannot refer to it.
        const std::string value =
            declaration.Value ? " = " + TextOf(*declaration.Value) : std::string();
        PutDeclarator(variable.Of, Declare(variable, variable.Name));
        Text += value;
    }

    void PutFunctionHead(const Cg::Function& function, std::string_view name) override
    {
        Text += Compose("fn ", name, "(");
        const char* separator = "";
        for (const Cg::Variable* parameter : function.Parameters) {
            Text += separator;
            separator = ", ";
            Declare(*parameter, parameter->Name);
            PutParameter(*parameter);
        }
        Text += function.Result.Of == Element::Void
                    ? std::string(") {\n")
                    : Compose(") -> ", TypeName(function.Result), " {\n");
    }

    void PutParameter(const Cg::Variable& parameter) override
    {
        if (parameter.Of.IsSampler()) {
            const auto [texture, state] = DeclareSampler(parameter, parameter.Name);
            Text += Compose(texture, ": ", TypeName(parameter.Of), ", ", state, ": sampler");
        } else if (parameter.Where == Storage::In) {
            PutDeclarator(parameter.Of, NameOf(parameter));
        } else {
            Text += Compose(NameOf(parameter), ": ptr<function, ", TypeName(parameter.Of), ">");
        }
    }

    void PutArgument(const Cg::Variable& parameter, const Expression& argument) override
    {
        if (parameter.Where == Storage::In)
            StructWriter::PutArgument(parameter, argument);
        else
            Text += Compose(IsPointer(*argument.Refers) ? "" : "&", NameOf(*argument.Refers));
    }

    void PutName(const Cg::Variable& variable) override
    {
        Text += IsPointer(variable) ? "*" : "";
        StructWriter::PutName(variable);
    }

    void PutSelect(const Expression& expression, Binding) override { PutSelectCall(expression); }

    void PutSelected(const Expression& expression) override
    {
        if (expression.Kind == ExpressionKind::Name && IsPointer(*expression.Refers))
            Text += Compose("(*", NameOf(*expression.Refers), ")");
        else
            StructWriter::PutSelected(expression);
    }

    std::string StoredMember(const Cg::Type& type, const std::string& name) const override
    {
        const char* scalar = type.Of == Element::Bool  ? "u32"
                             : type.Of == Element::Int ? "i32"
                                                       : "f32";
        if (IsStoredAsVectors(type))
            return Compose(name, ": array<vec4<", scalar, ">, ", CountStoredVectors(type), ">");
        if (type.Of != Element::Bool)
            return Compose(name, ": ", TypeName(type));
        return type.IsScalar() ? Compose(name, ": u32") : Compose(name, ": vec", type.Columns, "u");
    }

    std::string PaddingMember(const std::string& name) const override
    {
        return Compose(name, ": f32");
    }

    void PutLoaded(const Cg::Type& type, const std::string& member) override
    {
        Text += type.Of == Element::Bool ? Compose(TypeName(type), "(", member, ")") : member;
    }

    std::pair<const char*, const char*> ArrayBrackets() const override { return {"(", ")"}; }

    void PutZero(const Cg::Type& type) override { Text += Compose(TypeName(type), "()"); }

    // The test and the steps of a loop are written as statements.

    void PutWhile(const Statement& loop) override { PutLoop(loop); }
    void PutDo(const Statement& loop) override { PutLoop(loop); }
    void PutFor(const Statement& loop) override
    {
        if (loop.Test.empty() && loop.Step.size() <= 1) {
            Writer::PutFor(loop);
            return;
        }
        if (loop.Start.empty()) {
            PutLoop(loop);
            return;
        }
        Text += "{\n";
        ++Indentation;
        PutStatements(loop.Start);
        StartLine();
        PutLoop(loop);
        Text += '\n';
        --Indentation;
        StartLine();
        Text += '}';
    }

    void PutAssign(const Expression& assignment) override
    {
        const Expression& target = *assignment.Operands[0];
        if (target.Kind != ExpressionKind::Swizzle || target.Text.size() < 2) {
            Writer::PutAssign(assignment);
            return;
        }
        // Several components can only be assigned together with the rest of the vector.
        const Expression* value = assignment.Operands[1];
        std::string text = TextOf(*value);
        if (value->Kind != ExpressionKind::Name && value->Kind != ExpressionKind::Swizzle) {
            const std::string name = Names.Claim("components");
            Text += Compose("let ", name, " = ", text, ";\n");
            StartLine();
            text = name;
        } else if (value->Kind == ExpressionKind::Name && IsPointer(*value->Refers)) {
            text = Compose("(", text, ")");
        }
        const Expression& vector = *target.Operands[0];
        Put(vector, Binding::Unary);
        Text += Compose(" = ", TypeName(vector.Of), "(");
        for (std::size_t i = 0; i < vector.Of.Columns; ++i) {
            const std::size_t at = target.Text.find("xyzw"[i]);
            Text += i > 0 ? ", " : "";
            if (at == std::string_view::npos)
                PutSelected(vector);
            else
                Text += text;
            Text += Compose(
                ".", std::string_view("xyzw").substr(at == std::string_view::npos ? i : at, 1));
        }
        Text += ')';
    }

    void PutUnary(const Expression& expression, Binding around) override
    {
        if (!expression.Of.IsMatrix()) {
            StructWriter::PutUnary(expression, around);
            return;
        }
        Text += '(';
        Put(*expression.Operands[0], Binding::Product);
        Text += " * -1.0)";
    }

    void PutBinary(const Expression& expression, Binding around) override
    {
        const Cg::Type& operands = expression.Operands[0]->Of;
        const bool isAnd = expression.Op == Operator::And;
        if (operands.IsVector() && (isAnd || expression.Op == Operator::Or))
            PutInfix(*expression.Operands[0], isAnd ? "&" : "|", *expression.Operands[1],
                     Binding::Assign, around);
        else
            StructWriter::PutBinary(expression, around);
    }

    std::string_view FunctionName(const Cg::Intrinsic& intrinsic) const override
    {
        switch (intrinsic.Id) {
        case Builtin::Ddx:
            return "dpdx";
        case Builtin::Ddy:
            return "dpdy";
        case Builtin::Faceforward:
            return "faceForward";
        case Builtin::Frac:
            return "fract";
        case Builtin::Lerp:
            return "mix";
        case Builtin::Rsqrt:
            return "inverseSqrt";
        default:
            return intrinsic.Name;
        }
    }

    void PutIntrinsic(const Expression& call, Binding around) override
    {
        const Builtin id = call.Builtin->Id;
        if (id != Builtin::IsNan && id != Builtin::IsInf && id != Builtin::IsFinite) {
            StructWriter::PutIntrinsic(call, around);
            return;
        }
        // Compilers may assume that NaN and infinity do not occur, so the bits are tested instead.
        const int columns = call.Of.Columns;
        const std::string words = columns == 1 ? "u32" : Compose("vec", columns, "u");
        Text += Compose("((bitcast<", words, ">(");
        Put(*call.Operands[0], Binding::Assign);
        Text += Compose(") & ", words, "(0x7fffffffu)) ",
                        id == Builtin::IsNan   ? ">"
                        : id == Builtin::IsInf ? "=="
                                               : "<",
                        " ", words, "(0x7f800000u))");
    }

    void PutRead(const Expression& call) override
    {
        const auto& operands = call.Operands;
        const Builtin id = call.Builtin->Id;
        const bool isVertex = Program.IsVertex && id != Builtin::ReadGradient;
        Text += id == Builtin::ReadGradient              ? "textureSampleGrad("
                : isVertex || id == Builtin::ReadAtLevel ? "textureSampleLevel("
                : id == Builtin::ReadBiased              ? "textureSampleBias("
                                                         : "textureSample(";
        Put(*operands[0], Binding::Assign);
        Text += Compose(", ", SamplerNames.at(operands[0]->Refers));
        for (std::size_t i = 1; i < operands.size(); ++i) {
            const bool isPlace =
                operands[0]->Of.Of == Element::Sampler1D && (i == 1 || id == Builtin::ReadGradient);
            Text += isPlace ? ", vec2f(" : ", ";
            Put(*operands[i], Binding::Assign);
            Text += isPlace ? ", 0.0)" : "";
        }
        Text += isVertex && id == Builtin::Read ? ", 0.0)" : ")";
    }

private:
    bool IsPointer(const Cg::Variable& variable) const
    {
        return !IsInMain && (variable.Where == Storage::Out || variable.Where == Storage::InOut);
    }

    void PutSlots(const std::string& structName, const std::vector<StageSlot>& slots)
    {
        Text += Compose("struct ", structName, " {\n");
        for (const StageSlot& slot : slots) {
            Text += slot.IsPosition ? std::string("\t@builtin(position) ")
                                    : Compose("\t@location(", slot.Location, ") ");
            PutDeclarator(slot.Of->Of, MemberName(slot.Name));
            Text += ",\n";
        }
        Text += "}\n\n";
    }

    void PutExit(const Statement& loop, bool isContinuing)
    {
        PutStatements(loop.Test);
        if (!loop.Value)
            return;
        StartLine();
        Text += isContinuing ? "break if !(" : "if !(";
        Put(*loop.Value);
        Text += isContinuing ? ");\n" : ") { break; }\n";
    }

    void PutLoop(const Statement& loop)
    {
        const bool isDo = loop.Kind == StatementKind::Do;
        if (!isDo && loop.Test.empty() && loop.Step.empty()) {
            Text += "while ";
            Put(*loop.Value, Binding::Primary);
            Text += ' ';
            PutBlock(loop.Body);
            return;
        }
        Names.OpenScope();
        Text += "loop {\n";
        ++Indentation;
        if (!isDo)
            PutExit(loop, false);
        PutStatements(loop.Body);
        if (isDo || !loop.Step.empty()) {
            PutLine("continuing {");
            ++Indentation;
            PutStatements(loop.Step);
            if (isDo)
                PutExit(loop, true);
            --Indentation;
            PutLine("}");
        }
        --Indentation;
        StartLine();
        Text += '}';
        Names.CloseScope();
    }

    /// Whether derivatives may be computed in a branch that neighbouring fragments do not take.
    /// Their value is undefined in every language, but only WGSL rejects them unless the check is
    /// disabled.
    bool ReadsInBranches() const
    {
        return std::any_of(Program.Code->Functions.begin(), Program.Code->Functions.end(),
                           [](const Cg::Function* function) {
                               return function->Does.TakesDerivatives &&
                                      HasBranches(function->Body);
                           });
    }

    static bool HasBranches(Cg::Statements statements)
    {
        return std::any_of(statements.begin(), statements.end(), [](const Statement* statement) {
            return statement->Kind != StatementKind::Declare &&
                   statement->Kind != StatementKind::Evaluate &&
                   statement->Kind != StatementKind::Return &&
                   (statement->Kind != StatementKind::Block || HasBranches(statement->Body));
        });
    }

    std::string _inputType;
    std::string _outputType;
};

} // namespace

constinit const Language Language::Wgsl = {
    .Name = "wgsl",
    .Ending = "wgsl",
    .Write = [](const StageProgram& program,
                Precision precision) { return WgslWriter(program, precision).Write(); },
    .PlaceBlock = [](const std::string& name, std::uint32_t number) -> PlaceFields {
        return {{"name", name}, {"group", number}, {"binding", 0u}};
    },
    .PlaceSampler = [](const SamplerPlace& sampler) -> PlaceFields {
        // A texture and its sampler have separate numbers.
        const std::uint32_t binding = sampler.FirstBinding + 2 * sampler.Unit;
        return {{"group", sampler.Set},
                {"texture", sampler.Name},
                {"textureBinding", binding},
                {"sampler", sampler.Name + "Sampler"},
                {"samplerBinding", binding + 1}};
    },
    .PlaceInput = [](const std::string& name, std::uint32_t location) -> PlaceFields {
        return {{"name", name}, {"location", location}};
    },
};

} // namespace Mox::Languages
