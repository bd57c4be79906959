#include "mox/cg/ShapeLowering.h"

#include <algorithm>

namespace Mox::Cg {

namespace {

constexpr std::string_view allLetters = "xyzw";

}

Expression* ShapeLowering::Convert(Expression* value, const Type& type)
{
    const auto convertElements = [&](Expression* from) {
        return from->Of.Of == type.Of
                   ? from
                   : _build.Make(ExpressionKind::Convert, from->Of.With(type.Of), {from});
    };
    if (value->Of == type || !type.IsNumeric())
        return value;
    if (value->Of.IsScalar() && type.IsMatrix()) {
        Expression* row = _build.Splat(_hoister.Reusable(convertElements(value)),
                                       VectorType(type.Of, type.Columns));
        return _build.Make(ExpressionKind::Construct, type,
                           std::vector<Expression*>(type.Rows, row));
    }
    if (value->Of.IsScalar())
        return _build.Splat(convertElements(value), type);
    if (type.IsMatrix())
        return _build.Make(ExpressionKind::Convert, type, {_hoister.Reusable(value)});
    return convertElements(_build.Swizzle(value, allLetters.substr(0, type.Columns)));
}

Expression* ShapeLowering::LowerConstruct(Expression* expression)
{
    const Type& type = expression->Of;
    if (!type.IsMatrix() || expression->Operands.size() < 2)
        return expression;
    // The components of the operands fill the matrix row by row.
    const Type row = VectorType(type.Of, type.Columns);
    std::vector<Expression*> rows;
    std::vector<Expression*> parts;
    int filled = 0;
    for (Expression* part : expression->Operands) {
        const int width = part->Of.Columns;
        if (filled + width > type.Columns)
            part = _hoister.Reusable(part);
        for (int taken = 0; taken < width;) {
            const int count = std::min(width - taken, type.Columns - filled);
            const auto letters =
                allLetters.substr(static_cast<std::size_t>(taken), static_cast<std::size_t>(count));
            parts.push_back(part->Of.IsScalar() ? part : _build.Swizzle(part, letters));
            taken += count;
            filled += count;
            if (filled < type.Columns)
                continue;
            rows.push_back(parts.size() == 1 ? parts[0]
                                             : _build.Make(ExpressionKind::Construct, row, parts));
            parts.clear();
            filled = 0;
        }
    }
    return _build.Make(ExpressionKind::Construct, type, rows);
}

Expression* ShapeLowering::LowerSelect(Expression* expression)
{
    std::span<Expression*> operands = expression->Operands;
    if (expression->Of.IsNumeric() && !expression->Of.IsMatrix()) {
        for (std::size_t i = 1; i < operands.size(); ++i)
            operands[i] = _hoister.Detach(operands[i]);
        if (operands[0]->Of.IsVector() && !expression->Of.HasFloats())
            _hoister.MakeReusable(operands);
        return expression;
    }
    // Not all languages can select between matrices, structs or arrays.
    operands[1] = _hoister.Detach(operands[1]);
    Expression* chosen = _hoister.Hoist(operands[2], "chosen");
    chosen->Refers->IsAssigned = true;
    Statement* choice = _build.Make(StatementKind::If, operands[0]);
    Statement* assignment = _build.Assign(chosen, operands[1]);
    choice->Body = _build.Nodes().Copy(std::vector<Statement*>{assignment});
    _hoister.Emit(choice);
    return chosen;
}

} // namespace Mox::Cg
