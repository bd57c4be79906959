#include "mox/cg/Hoister.h"

#include <algorithm>

namespace Mox::Cg {

namespace {

/// Whether an expression can be written several times at no cost.
bool IsReusable(const Expression& expression)
{
    switch (expression.Kind) {
    case ExpressionKind::Number:
    case ExpressionKind::Boolean:
    case ExpressionKind::Name:
        return true;
    case ExpressionKind::Swizzle:
    case ExpressionKind::Member:
    case ExpressionKind::Unary:
        return IsReusable(*expression.Operands[0]);
    case ExpressionKind::Construct:
        return expression.Operands.size() == 1 && IsReusable(*expression.Operands[0]);
    default:
        return false;
    }
}

bool IsEffect(const Expression& value)
{
    return value.Kind == ExpressionKind::Assign || value.Kind == ExpressionKind::Call;
}

} // namespace

bool IsBound(const Expression& expression)
{
    if (expression.Kind == ExpressionKind::Call &&
        (expression.Callee->Does.TakesDerivatives || expression.Callee->Does.Discards))
        return true;
    if (expression.Kind == ExpressionKind::Intrinsic) {
        switch (expression.Builtin->Id) {
        case Builtin::Ddx:
        case Builtin::Ddy:
        case Builtin::Fwidth:
        case Builtin::Read:
        case Builtin::ReadBiased:
            return true;
        default:
            break;
        }
    }
    return std::any_of(expression.Operands.begin(), expression.Operands.end(),
                       [](const Expression* operand) { return IsBound(*operand); });
}

bool IsFixed(const Expression& expression)
{
    if (expression.Kind == ExpressionKind::Name) {
        const Variable& variable = *expression.Refers;
        return variable.Where != Storage::Out && variable.Where != Storage::InOut &&
               !variable.IsAssigned;
    }
    return IsReusable(expression) &&
           std::all_of(expression.Operands.begin(), expression.Operands.end(),
                       [](const Expression* operand) { return IsFixed(*operand); });
}

Hoister::Target::Target(Hoister& hoister, std::vector<Statement*>& statements,
                        std::vector<Statement*>* declarations)
    : _hoister(hoister), _statements(hoister._statements), _declarations(hoister._declarations)
{
    hoister._statements = &statements;
    hoister._declarations = declarations;
}

Hoister::Target::~Target()
{
    _hoister._statements = _statements;
    _hoister._declarations = _declarations;
}

Expression* Hoister::Detach(Expression* value)
{
    return IsBound(*value) ? Hoist(value, "operand") : value;
}

Expression* Hoister::Hoist(Expression* value, std::string_view name)
{
    return HoistAt(_statements->size(), value, name);
}

Expression* Hoister::HoistAt(std::size_t place, Expression* value, std::string_view name)
{
    Variable variable;
    variable.Name = name;
    variable.Of = value->Of;
    Variable* made = _build.Nodes().Make(variable);
    Statement* declaration = _build.Make(StatementKind::Declare, nullptr);
    declaration->Refers = made;
    Statement* before = declaration;
    if (_declarations) {
        _declarations->push_back(declaration);
        made->IsAssigned = true;
        before = _build.Assign(_build.Name(*made), value);
    } else {
        declaration->Value = value;
    }
    _statements->insert(_statements->begin() + static_cast<std::ptrdiff_t>(place), before);
    return _build.Name(*made);
}

Variable* Hoister::Declare(const Type& type, std::string_view name)
{
    Variable variable;
    variable.Name = name;
    variable.Of = type;
    Statement* declaration = _build.Make(StatementKind::Declare, nullptr);
    declaration->Refers = _build.Nodes().Make(variable);
    (_declarations ? _declarations : _statements)->push_back(declaration);
    return declaration->Refers;
}

Expression* Hoister::Keep(Expression* value, const Mark& mark)
{
    const bool isKept = mark.Effects == _effects || IsFixed(*value) || value->Of.IsSampler();
    return isKept ? value : HoistAt(mark.Place, value, "operand");
}

Expression* Hoister::Reusable(Expression* value)
{
    return IsReusable(*value) ? value : Hoist(value, "operand");
}

void Hoister::MakeReusable(std::span<Expression*> values)
{
    for (Expression*& value : values)
        value = Reusable(value);
}

Expression* Hoister::Stable(Expression* value)
{
    return IsFixed(*value) ? value : Hoist(value, "operand");
}

void Hoister::Emit(Statement* statement)
{
    if (!statement->Value || statement->Kind != StatementKind::Evaluate ||
        IsEffect(*statement->Value))
        ++_effects;
    _statements->push_back(statement);
}

} // namespace Mox::Cg
