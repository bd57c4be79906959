#include "mox/cg/Initialization.h"

#include <algorithm>
#include <unordered_map>

namespace Mox::Cg {

namespace {

class Initializer
{
public:
    Initializer(Function& function, TreeBuilder& build) : _function(function), _build(build) {}

    void Run()
    {
        for (Variable* parameter : _function.Parameters) {
            if (parameter->Where == Storage::Out)
                _open.emplace(parameter, Open{nullptr, 1});
        }
        VisitList(_function.Body);
        std::vector<Statement*> statements;
        for (Variable* parameter : _function.Parameters) {
            const bool isOpen = _open.contains(parameter);
            if (isOpen || std::find(_zeros.begin(), _zeros.end(), parameter) != _zeros.end())
                statements.push_back(_build.Assign(_build.Name(*parameter), Zero(parameter->Of)));
        }
        if (statements.empty())
            return;
        statements.insert(statements.end(), _function.Body.begin(), _function.Body.end());
        _function.Body = _build.Nodes().Copy(statements);
    }

private:
    /// A variable that has not been used yet.
    struct Open
    {
        Statement* Declaration; ///< null for an output
        int Depth;              ///< nesting level of the list that declares it
    };

    Expression* Zero(const Type& type) { return _build.Make(ExpressionKind::Construct, type, {}); }

    void VisitList(Statements statements)
    {
        ++_depth;
        for (Statement* statement : statements)
            Visit(*statement);
        --_depth;
    }

    void Visit(Statement& statement)
    {
        switch (statement.Kind) {
        case StatementKind::Declare:
            if (statement.Value)
                VisitEffect(*statement.Value);
            else
                _open.emplace(statement.Refers, Open{&statement, _depth});
            return;
        case StatementKind::Evaluate:
            VisitEffect(*statement.Value);
            return;
        case StatementKind::Return:
            if (statement.Value)
                VisitEffect(*statement.Value);
            for (Variable* parameter : _function.Parameters)
                Touch(parameter);
            return;
        case StatementKind::For:
            VisitList(statement.Start);
            break;
        default:
            break;
        }
        ++_depth; // the test of a loop may be evaluated several times
        VisitList(statement.Test);
        if (statement.Value)
            VisitValue(*statement.Value);
        --_depth;
        VisitList(statement.Body);
        VisitList(statement.Else);
        VisitList(statement.Step);
    }

    /// Visits an expression that is an entire statement, or the value of one.
    void VisitEffect(const Expression& expression)
    {
        if (expression.Kind == ExpressionKind::Assign) {
            VisitEffect(*expression.Operands[1]);
            const Expression& target = *expression.Operands[0];
            if (target.Kind == ExpressionKind::Name)
                Assign(target.Refers);
            else
                VisitValue(target);
        } else if (expression.Kind == ExpressionKind::Call) {
            const auto& parameters = expression.Callee->Parameters;
            for (std::size_t i = 0; i < parameters.size(); ++i) {
                if (parameters[i]->Where != Storage::Out)
                    VisitValue(*expression.Operands[i]);
            }
            for (std::size_t i = 0; i < parameters.size(); ++i) {
                if (parameters[i]->Where == Storage::Out)
                    Assign(expression.Operands[i]->Refers);
            }
        } else {
            VisitValue(expression);
        }
    }

    void VisitValue(const Expression& expression)
    {
        if (expression.Kind == ExpressionKind::Name)
            Touch(expression.Refers);
        for (const Expression* operand : expression.Operands)
            VisitValue(*operand);
    }

    void Assign(const Variable* variable)
    {
        const auto open = _open.find(variable);
        if (open != _open.end() && open->second.Depth == _depth)
            _open.erase(open);
        else
            Touch(variable);
    }

    void Touch(const Variable* variable)
    {
        const auto open = _open.find(variable);
        if (open == _open.end())
            return;
        if (Statement* declaration = open->second.Declaration)
            declaration->Value = Zero(variable->Of);
        else
            _zeros.push_back(variable);
        _open.erase(open);
    }

    Function& _function;
    TreeBuilder& _build;
    std::unordered_map<const Variable*, Open> _open;
    std::vector<const Variable*> _zeros;
    int _depth = 0;
};

} // namespace

void Initialize(Function& function, TreeBuilder& build)
{
    Initializer(function, build).Run();
}

} // namespace Mox::Cg
