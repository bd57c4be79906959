#include "mox/cg/ExpressionLowering.h"

#include "mox/cg/ConstantValue.h"
#include "mox/cg/RiskyConstants.h"

#include <algorithm>

namespace Mox::Cg {

namespace {

constexpr std::string_view allLetters = "xyzw";

} // namespace

void ExpressionLowering::CopyAssigned(const Function& function, std::vector<Statement*>& statements)
{
    const Hoister::Target target(_hoister, statements, nullptr);
    _copies.clear();
    for (Variable* parameter : function.Parameters) {
        if (parameter->Where != Storage::In || !parameter->IsAssigned)
            continue;
        Variable* copy = _hoister.Declare(parameter->Of, parameter->Name);
        copy->IsAssigned = true;
        statements.back()->Value = _build.Name(*parameter);
        _copies.emplace_back(parameter, copy);
    }
}

Expression* ExpressionLowering::Lower(Expression* expression)
{
    if (expression == _compound)
        return _compoundTarget;
    switch (expression->Kind) {
    case ExpressionKind::Number:
    case ExpressionKind::Boolean:
        return expression;
    case ExpressionKind::Name:
        for (const auto& [parameter, copy] : _copies) {
            if (expression->Refers == parameter)
                expression->Refers = copy;
        }
        return expression;
    case ExpressionKind::Binary:
        return LowerBinary(expression);
    case ExpressionKind::Select:
        LowerOperands(expression->Operands);
        return _shapes.LowerSelect(expression);
    case ExpressionKind::Assign:
        return LowerAssign(expression);
    case ExpressionKind::PostStep: {
        Expression* assignment = expression->Operands[0];
        Expression* target = LowerTarget(assignment->Operands[0]);
        Expression* before = _hoister.Hoist(target, "before");
        LowerAssign(assignment);
        return before;
    }
    case ExpressionKind::Sequence:
        LowerEffect(expression->Operands[0]);
        return Lower(expression->Operands[1]);
    case ExpressionKind::Call: {
        Expression* call = LowerCall(expression, true);
        return call->Kind == ExpressionKind::Call && call->Callee->Does.HasOutputs
                   ? _hoister.Hoist(call, call->Callee->Name)
                   : call;
    }
    case ExpressionKind::Intrinsic:
        return LowerIntrinsic(expression);
    case ExpressionKind::Construct:
        LowerOperands(expression->Operands);
        return _shapes.LowerConstruct(expression);
    case ExpressionKind::Convert:
        return LowerConvert(expression);
    case ExpressionKind::Swizzle: {
        Expression* vector = Lower(expression->Operands[0]);
        const bool isRow =
            vector->Kind == ExpressionKind::Index && vector->Operands[0]->Of.IsMatrix();
        if (!isRow || expression->Text.size() > 1)
            return _build.Swizzle(vector, expression->Text);
        return _build.Element(vector->Operands[0], vector->Operands[1],
                              _build.Digit(allLetters.find(expression->Text[0])));
    }
    case ExpressionKind::Element:
    case ExpressionKind::Index:
        return LowerIndex(expression);
    case ExpressionKind::Unary:
    case ExpressionKind::Member:
        expression->Operands[0] = Lower(expression->Operands[0]);
        return expression;
    }
    return expression;
}

Expression* ExpressionLowering::LowerWhole(Expression* expression)
{
    if (expression->Kind != ExpressionKind::Call)
        return Lower(expression);
    _hoister.CountEffect();
    return LowerCall(expression, true);
}

void ExpressionLowering::LowerEffect(Expression* expression)
{
    switch (expression->Kind) {
    case ExpressionKind::Assign:
        LowerAssign(expression);
        return;
    case ExpressionKind::PostStep:
        LowerAssign(expression->Operands[0]);
        return;
    case ExpressionKind::Sequence:
        LowerEffect(expression->Operands[0]);
        LowerEffect(expression->Operands[1]);
        return;
    case ExpressionKind::Call:
        if (Expression* call = LowerCall(expression, false);
            call && call->Kind == ExpressionKind::Call)
            _hoister.Emit(_build.Make(StatementKind::Evaluate, call));
        return;
    default:
        // An unused value is dropped, unless it is bound: computing it may discard the fragment.
        if (Expression* value = Lower(expression); value && IsBound(*value))
            _hoister.Hoist(value, "unused");
    }
}

void ExpressionLowering::LowerOperands(std::span<Expression*> operands)
{
    std::vector<Hoister::Mark> marks;
    for (Expression*& operand : operands) {
        operand = Lower(operand);
        marks.push_back(_hoister.Now());
    }
    // Later operands must not change what an earlier operand reads.
    for (std::size_t i = operands.size(); i-- > 0;)
        operands[i] = _hoister.Keep(operands[i], marks[i]);
}

// ---- assignments and calls

Expression* ExpressionLowering::LowerTarget(Expression* target)
{
    switch (target->Kind) {
    case ExpressionKind::Swizzle: {
        Expression* vector = LowerTarget(target->Operands[0]);
        return vector->Of.IsScalar() ? vector : _build.Swizzle(vector, target->Text);
    }
    case ExpressionKind::Member:
        target->Operands[0] = LowerTarget(target->Operands[0]);
        return target;
    case ExpressionKind::Index:
        target->Operands[0] = LowerTarget(target->Operands[0]);
        target->Operands[1] = _hoister.Reusable(Lower(target->Operands[1]));
        return LowerIndex(target);
    default:
        return Lower(target);
    }
}

Expression* ExpressionLowering::LowerAssign(Expression* assignment)
{
    Expression* target = LowerTarget(assignment->Operands[0]);
    const Expression* outerCompound = std::exchange(_compound, assignment->Operands[0]);
    Expression* outerTarget = std::exchange(_compoundTarget, target);
    Expression* value = LowerWhole(assignment->Operands[1]);
    _compound = outerCompound;
    _compoundTarget = outerTarget;
    Store(target, value);
    return target;
}

/// Assigns a value. A row of a matrix is assigned element by element, since most languages store
/// columns instead.
void ExpressionLowering::Store(Expression* target, Expression* value)
{
    const bool isSwizzle = target->Kind == ExpressionKind::Swizzle;
    Expression* row = isSwizzle ? target->Operands[0] : target;
    if (row->Kind != ExpressionKind::Index || !row->Operands[0]->Of.IsMatrix()) {
        _hoister.Emit(_build.Assign(target, value));
        return;
    }
    value = _hoister.Hoist(value, "row");
    const std::string_view letters =
        isSwizzle ? target->Text : allLetters.substr(0, target->Of.Columns);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const std::size_t column = allLetters.find(letters[i]);
        Expression* element =
            _build.Element(row->Operands[0], row->Operands[1], _build.Digit(column));
        _hoister.Emit(_build.Assign(element, _build.Swizzle(value, allLetters.substr(i, 1))));
    }
}

/// @returns the call, or the variable that holds its result; null if the call was emitted as a
///        statement
Expression* ExpressionLowering::LowerCall(Expression* call, bool isResultUsed)
{
    const std::span<Variable*> parameters = call->Callee->Parameters;
    std::vector<Hoister::Mark> marks;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        Expression*& argument = call->Operands[i];
        argument = parameters[i]->Where == Storage::In ? Lower(argument) : LowerTarget(argument);
        marks.push_back(_hoister.Now());
    }
    for (std::size_t i = parameters.size(); i-- > 0;) {
        if (parameters[i]->Where == Storage::In)
            call->Operands[i] = _hoister.Keep(call->Operands[i], marks[i]);
    }
    std::vector<std::pair<Expression*, Expression*>> copies; // target, value
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Variable& parameter = *parameters[i];
        Expression*& argument = call->Operands[i];
        if (parameter.Where == Storage::In)
            continue;
        const auto isSame = [&](const Expression* other) {
            return other->Kind == ExpressionKind::Name && other->Refers == argument->Refers;
        };
        const bool isDirect = argument->Kind == ExpressionKind::Name &&
                              argument->Of == parameter.Of &&
                              std::ranges::none_of(call->Operands.first(i), isSame);
        if (isDirect)
            continue;
        Variable* variable =
            parameter.Where == Storage::InOut
                ? _hoister.Hoist(_shapes.Convert(argument, parameter.Of), parameter.Name)->Refers
                : _hoister.Declare(parameter.Of, parameter.Name);
        variable->IsAssigned = true;
        copies.emplace_back(argument, _build.Name(*variable));
        argument = _build.Name(*variable);
    }
    if (copies.empty())
        return call;
    Expression* result = nullptr;
    if (isResultUsed && call->Of.Of != Element::Void)
        result = _hoister.Hoist(call, call->Callee->Name);
    else
        _hoister.Emit(_build.Make(StatementKind::Evaluate, call));
    _hoister.CountEffect();
    for (const auto& [target, value] : copies)
        Store(target, _shapes.Convert(value, target->Of));
    return result;
}

// ---- operators

Expression* ExpressionLowering::LowerBinary(Expression* expression)
{
    const bool isLogic = expression->Op == Operator::And || expression->Op == Operator::Or;
    std::span<Expression*> operands = expression->Operands;
    if (expression->Of.IsMatrix() &&
        (expression->Op == Operator::Multiply || expression->Op == Operator::Divide)) {
        // A repeated scalar does not need to be expanded if it is the right operand.
        const auto isRepeated = [](const Expression* operand) {
            return operand->Kind == ExpressionKind::Convert && operand->Operands[0]->Of.IsScalar();
        };
        if (expression->Op == Operator::Multiply && isRepeated(operands[0]))
            std::swap(operands[0], operands[1]);
        if (isRepeated(operands[1])) {
            const Expression* repeated = operands[1];
            operands[1] = _build.Make(ExpressionKind::Convert, VectorType(expression->Of.Of, 1),
                                      {repeated->Operands[0]});
        }
        LowerOperands(operands);
        _hoister.MakeReusable(operands);
        return expression;
    }
    LowerOperands(operands);
    if (expression->Op <= Operator::Subtract)
        HoistRisky(expression, _hoister);
    if (isLogic && expression->Of.IsScalar())
        operands[1] = _hoister.Detach(operands[1]);
    else if (isLogic || expression->Op == Operator::Modulo)
        _hoister.MakeReusable(operands);
    return expression;
}

Expression* ExpressionLowering::LowerIndex(Expression* expression)
{
    if (expression->Kind == ExpressionKind::Element) {
        if (expression->Operands.size() > 1)
            return expression;
        return _build.Element(LowerTarget(expression->Operands[0]), _build.Digit(expression->Row),
                              _build.Digit(expression->Column));
    }
    LowerOperands(expression->Operands);
    Expression* what = expression->Operands[0];
    if (what->Kind == ExpressionKind::Index && what->Operands[0]->Of.IsMatrix())
        return _build.Element(what->Operands[0], what->Operands[1], expression->Operands[1]);
    return expression;
}

Expression* ExpressionLowering::LowerConvert(Expression* expression)
{
    Expression* value = Lower(expression->Operands[0]);
    const bool isRisky = value->Of.HasFloats() && expression->Of.Of == Element::Int &&
                         IsConstant(*value) && !Evaluate(*value);
    return _shapes.Convert(isRisky ? _hoister.Hoist(value, "operand") : value, expression->Of);
}

// ---- built-in functions

Expression* ExpressionLowering::LowerIntrinsic(Expression* call)
{
    const Builtin id = call->Builtin->Id;
    if (id == Builtin::Sincos)
        return LowerSincos(call);
    if (id == Builtin::Modf)
        return LowerModf(call);
    LowerOperands(call->Operands);
    return _library.Lower(call);
}

/// @returns null, as the function has no value
Expression* ExpressionLowering::LowerSincos(Expression* call)
{
    const std::span<Expression*> operands = call->Operands;
    Expression* angle = _hoister.Stable(Lower(operands[0]));
    for (std::size_t i = 1; i <= 2; ++i) {
        Expression* target = LowerTarget(operands[i]);
        const Builtin function = i == 1 ? Builtin::Sin : Builtin::Cos;
        Store(target, _shapes.Convert(_build.Call(function, angle->Of, {angle}), target->Of));
    }
    return nullptr;
}

Expression* ExpressionLowering::LowerModf(Expression* call)
{
    const Type& type = call->Of;
    Expression* value = _hoister.Stable(Lower(call->Operands[0]));
    Expression* whole = _hoister.Hoist(_build.Call(Builtin::Trunc, type, {value}), "whole");
    Expression* target = LowerTarget(call->Operands[1]);
    Store(target, _shapes.Convert(whole, target->Of));
    return _build.Binary(Operator::Subtract, type, value, whole);
}

} // namespace Mox::Cg
