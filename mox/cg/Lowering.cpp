#include "mox/cg/Lowering.h"

#include "mox/cg/ExpressionLowering.h"
#include "mox/cg/Initialization.h"

namespace Mox::Cg {

namespace {

class StatementLowering
{
public:
    explicit StatementLowering(Module& module)
        : _build(module.Nodes), _hoister(module.Nodes), _expressions(module.Nodes, _hoister)
    {}

    void Lower(Variable& constant)
    {
        // The value of a constant requires no statements before it.
        std::vector<Statement*> none;
        const Hoister::Target target(_hoister, none, nullptr);
        constant.Value = _expressions.Lower(constant.Value);
    }

    void Lower(Function& function)
    {
        std::vector<Statement*> statements;
        _expressions.CopyAssigned(function, statements);
        LowerInto(function.Body, statements);
        function.Body = _build.Nodes().Copy(statements);
        Initialize(function, _build);
    }

private:
    Statements LowerList(Statements list)
    {
        std::vector<Statement*> lowered;
        LowerInto(list, lowered);
        return _build.Nodes().Copy(lowered);
    }

    void LowerInto(Statements list, std::vector<Statement*>& lowered)
    {
        const Hoister::Target target(_hoister, lowered, nullptr);
        for (Statement* statement : list) {
            const std::size_t before = lowered.size();
            LowerOne(*statement, lowered);
            for (std::size_t i = before; i < lowered.size(); ++i)
                lowered[i]->Line = statement->Line;
            // The comment belongs to the first of the statements that replace this one.
            if (lowered.size() > before && lowered[before] != statement) {
                lowered[before]->Comment = statement->Comment;
                statement->Comment = {};
            }
        }
    }

    void LowerOne(Statement& statement, std::vector<Statement*>& lowered)
    {
        switch (statement.Kind) {
        case StatementKind::Block:
            statement.Body = LowerList(statement.Body);
            break;
        case StatementKind::Declare:
        case StatementKind::Return:
            if (statement.Value)
                statement.Value = _expressions.LowerWhole(statement.Value);
            break;
        case StatementKind::Evaluate:
            _expressions.LowerEffect(statement.Value);
            return;
        case StatementKind::If:
            statement.Value = _expressions.Lower(statement.Value);
            statement.Body = LowerList(statement.Body);
            statement.Else = LowerList(statement.Else);
            break;
        case StatementKind::While:
        case StatementKind::Do:
        case StatementKind::For:
            LowerLoop(statement, lowered);
            return;
        default:
            break;
        }
        lowered.push_back(&statement);
    }

    /// Declares all variables that the test and the step need before the loop, so that both are
    /// lists of assignments.
    void LowerLoop(Statement& loop, std::vector<Statement*>& lowered)
    {
        std::vector<Statement*> start;
        LowerInto(loop.Start, start);
        std::vector<Statement*> block;
        std::vector<Statement*>& around = start.size() > 1 ? block : lowered;
        if (start.size() > 1) {
            block = std::move(start);
            start.clear();
        }
        loop.Start = _build.Nodes().Copy(start);
        std::vector<Statement*> test;
        std::vector<Statement*> step;
        {
            const Hoister::Target target(_hoister, test, &around);
            if (loop.Value)
                loop.Value = _expressions.Lower(loop.Value);
        }
        {
            const Hoister::Target target(_hoister, step, &around);
            for (const Statement* statement : loop.Step)
                _expressions.LowerEffect(statement->Value);
        }
        loop.Test = _build.Nodes().Copy(test);
        loop.Step = _build.Nodes().Copy(step);
        loop.Body = LowerList(loop.Body);
        around.push_back(&loop);
        if (&around == &block) {
            Statement* outer = _build.Make(StatementKind::Block, nullptr);
            outer->Body = _build.Nodes().Copy(block);
            lowered.push_back(outer);
        }
    }

    TreeBuilder _build;
    Hoister _hoister;
    ExpressionLowering _expressions;
};

} // namespace

void LowerModule(Module& module)
{
    StatementLowering lowering(module);
    for (Variable* constant : module.Constants)
        lowering.Lower(*constant);
    for (Function* function : module.Functions)
        lowering.Lower(*function);
}

} // namespace Mox::Cg
