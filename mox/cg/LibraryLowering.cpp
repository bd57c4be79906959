#include "mox/cg/LibraryLowering.h"

#include "mox/cg/RiskyConstants.h"

namespace Mox::Cg {

Expression* LibraryLowering::Lower(Expression* call)
{
    HoistRisky(call, _hoister);
    const Type& type = call->Of;
    const std::span<Expression*> operands = call->Operands;
    switch (call->Builtin->Id) {
    case Builtin::Clip:
        return LowerClip(operands[0]);
    case Builtin::Fmod:
        return LowerFmod(call);
    case Builtin::Ldexp:
        return _build.Binary(Operator::Multiply, type, operands[0],
                             _build.Call(Builtin::Exp2, type, {operands[1]}));
    case Builtin::Log10:
        return _build.Binary(Operator::Multiply, type,
                             _build.Call(Builtin::Log2, type, {operands[0]}),
                             _build.Number("0.30103", type));
    case Builtin::Lit:
        return LowerLit(call);
    case Builtin::All:
    case Builtin::Any:
        return operands[0]->Of.IsScalar() ? operands[0] : call;
    case Builtin::Distance:
    case Builtin::Dot:
    case Builtin::Faceforward:
    case Builtin::Length:
    case Builtin::Normalize:
    case Builtin::Reflect:
    case Builtin::Refract:
        return operands[0]->Of.IsScalar() ? LowerScalarGeometry(call) : call;
    case Builtin::ReadProjected:
    case Builtin::ReadBiased:
    case Builtin::ReadAtLevel:
        return operands.size() == 2 ? LowerRead(call) : call;
    default:
        return call;
    }
}

Expression* LibraryLowering::LowerClip(Expression* value)
{
    const Type bools = value->Of.With(Element::Bool);
    Expression* isBelow =
        _build.Binary(Operator::Less, bools, value, _build.Number("0.0", value->Of));
    if (!bools.IsScalar())
        isBelow = _build.Call(Builtin::Any, VectorType(Element::Bool, 1), {isBelow});
    Statement* check = _build.Make(StatementKind::If, isBelow);
    check->Body =
        _build.Nodes().Copy(std::vector<Statement*>{_build.Make(StatementKind::Discard, nullptr)});
    _hoister.Emit(check);
    return nullptr;
}

Expression* LibraryLowering::LowerFmod(Expression* call)
{
    const Type& type = call->Of;
    Expression* value = _hoister.Reusable(call->Operands[0]);
    Expression* divisor = _hoister.Reusable(call->Operands[1]);
    Expression* quotient =
        _build.Call(Builtin::Trunc, type, {_build.Binary(Operator::Divide, type, value, divisor)});
    return _build.Binary(Operator::Subtract, type, value,
                         _build.Binary(Operator::Multiply, type, divisor, quotient));
}

Expression* LibraryLowering::LowerLit(Expression* call)
{
    const Type& type = call->Of;
    const std::span<Expression*> operands = call->Operands;
    const Type one = VectorType(type.Of, 1);
    Expression* diffuse = _hoister.Reusable(operands[0]);
    Expression* zero = _build.Number("0.0", one);
    Expression* specular = _build.Call(
        Builtin::Pow, one, {_build.Call(Builtin::Max, one, {operands[1], zero}), operands[2]});
    Expression* isLit = _build.Binary(Operator::Greater, one.With(Element::Bool), diffuse, zero);
    return _build.Make(ExpressionKind::Construct, type,
                       {_build.Number("1.0", one), _build.Call(Builtin::Max, one, {diffuse, zero}),
                        _build.Make(ExpressionKind::Select, one, {isLit, specular, zero}),
                        _build.Number("1.0", one)});
}

/// Separates the coordinates from the bias, level or divisor.
Expression* LibraryLowering::LowerRead(Expression* call)
{
    const Builtin id = call->Builtin->Id;
    Expression* given = call->Operands[1];
    const Element sampler = call->Operands[0]->Of.Of;
    std::size_t count = sampler == Element::Sampler1D ? 1 : 2;
    if (sampler == Element::Sampler3D || sampler == Element::SamplerCube)
        count = 3;
    Expression* place = nullptr;
    Expression* last = nullptr;
    const auto& parts = given->Operands;
    if (given->Kind == ExpressionKind::Construct && parts.size() > 1 &&
        parts[0]->Of.Columns == count && parts.back()->Of.IsScalar()) {
        place = parts[0];
        last = parts.back();
    } else {
        given = _hoister.Reusable(given);
        place = _build.Swizzle(given, std::string_view("xyzw").substr(0, count));
        last = _build.Swizzle(
            given, std::string_view("xyzw").substr(given->Of.Columns - std::size_t(1), 1));
    }
    if (id != Builtin::ReadProjected)
        return _build.Call(id, call->Of, {call->Operands[0], place, last});
    place = _build.Binary(Operator::Divide, place->Of, place, _build.Splat(last, place->Of));
    return _build.Call(Builtin::Read, call->Of, {call->Operands[0], place});
}

/// Expands geometric functions of scalars, since some languages have them only for vectors.
Expression* LibraryLowering::LowerScalarGeometry(Expression* call)
{
    const Type& type = call->Operands[0]->Of;
    std::span<Expression*> operands = call->Operands;
    switch (call->Builtin->Id) {
    case Builtin::Dot:
        return _build.Binary(Operator::Multiply, type, operands[0], operands[1]);
    case Builtin::Length:
        return _build.Call(Builtin::Abs, type, {operands[0]});
    case Builtin::Distance:
        return _build.Call(Builtin::Abs, type,
                           {_build.Binary(Operator::Subtract, type, operands[0], operands[1])});
    case Builtin::Normalize:
        return _build.Call(Builtin::Sign, type, {operands[0]});
    default:
        break;
    }
    const Type plane = VectorType(type.Of, 2);
    std::vector<Expression*> vectors;
    for (std::size_t i = 0; i < operands.size(); ++i) {
        const bool isVector = call->Builtin->Parameters[i] == 'g';
        vectors.push_back(isVector ? _build.Make(ExpressionKind::Construct, plane,
                                                 {operands[i], _build.Number("0.0", type)})
                                   : operands[i]);
    }
    return _build.Swizzle(_build.Call(call->Builtin->Id, plane, vectors), "x");
}

} // namespace Mox::Cg
