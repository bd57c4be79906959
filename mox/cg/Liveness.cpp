#include "mox/cg/Liveness.h"

#include "mox/cg/Dependencies.h"
#include "mox/cg/TreeBuilder.h"

#include <algorithm>
#include <unordered_set>

namespace Mox::Cg {

namespace {

/// Traverses "main" from its end to its start.
class DeadRemover
{
public:
    DeadRemover(Module& module, Function& main)
        : _module(module), _main(main), _dependencies(module), _build(module.Nodes)
    {}

    void Run(const std::function<bool(const Variable&)>& isRead)
    {
        for (const Variable* parameter : _main.Parameters) {
            if (parameter->Where != Storage::In && isRead(*parameter))
                _outputs.insert(parameter);
        }
        _live = _outputs;
        std::vector<Statement*> kept;
        for (std::size_t i = _main.Body.size(); i-- > 0;) {
            if (Visit(*_main.Body[i]))
                kept.push_back(_main.Body[i]);
        }
        std::vector<Variable*> parameters;
        for (Variable* parameter : _main.Parameters) {
            const bool isOutput = parameter->Where != Storage::In;
            if (isOutput ? _outputs.contains(parameter) : _named.contains(parameter)) {
                parameters.push_back(parameter);
            } else if (isOutput && _named.contains(parameter)) {
                // An unused output of a call still needs a variable to be written to.
                parameter->Where = Storage::Local;
                parameter->IsAssigned = true;
                kept.push_back(_build.Make(StatementKind::Declare, nullptr));
                kept.back()->Refers = parameter;
            }
        }
        std::reverse(kept.begin(), kept.end());
        _main.Body = _module.Nodes.Copy(kept);
        _main.Parameters = _module.Nodes.Copy(parameters);
        std::erase_if(_module.Uniforms,
                      [&](const Variable* uniform) { return !_named.contains(uniform); });
        DropFunctions();
    }

private:
    /// @returns whether the statement is kept
    bool Visit(Statement& statement)
    {
        switch (statement.Kind) {
        case StatementKind::Declare:
            if (statement.Value && !VisitEffect(*statement.Value, _live.contains(statement.Refers)))
                statement.Value = nullptr;
            _live.erase(statement.Refers);
            return statement.Value || _named.contains(statement.Refers);
        case StatementKind::Evaluate:
            return statement.Value->Kind == ExpressionKind::Assign
                       ? VisitAssign(*statement.Value)
                       : VisitEffect(*statement.Value, false);
        default:
            // The code of main is straight-line; any other statement is kept unchanged.
            KeepAll(statement);
            return true;
        }
    }

    bool VisitAssign(const Expression& assignment)
    {
        const Expression& target = *assignment.Operands[0];
        const Variable* root = RootOf(target);
        const bool isWhole = target.Kind == ExpressionKind::Name;
        const bool isLive = isWhole ? _live.erase(root) > 0 : _live.contains(root);
        if (!VisitEffect(*assignment.Operands[1], isLive))
            return false;
        _named.insert(root);
        if (!isWhole)
            Read(target);
        return true;
    }

    /// Visits a value that is an entire statement or is assigned to a variable.
    /// @returns whether the value is still computed
    bool VisitEffect(const Expression& value, bool isLive)
    {
        const bool hasLiveOutput = value.Kind == ExpressionKind::Call && HasLiveOutput(value);
        if (!isLive && !hasLiveOutput && !Discards(value))
            return false;
        VisitValue(value, isLive);
        return true;
    }

    void VisitValue(const Expression& value, bool isResultLive)
    {
        if (value.Kind != ExpressionKind::Call) {
            Read(value);
            return;
        }
        const Function& callee = *value.Callee;
        Dependencies::Set needed(callee.Parameters.size());
        const auto need = [&](const Dependencies::Set& set) {
            for (std::size_t i = 0; i < set.size(); ++i)
                needed[i] = needed[i] || set[i];
        };
        if (isResultLive && callee.Result.Of != Element::Void)
            need(_dependencies.OfResult(callee));
        if (callee.Does.Discards)
            need(_dependencies.OfDiscard(callee));
        for (std::size_t i = 0; i < callee.Parameters.size(); ++i) {
            if (callee.Parameters[i]->Where != Storage::In &&
                _live.contains(value.Operands[i]->Refers))
                need(_dependencies.OfOutput(callee, i));
        }
        for (std::size_t i = 0; i < callee.Parameters.size(); ++i) {
            const Variable& parameter = *callee.Parameters[i];
            Expression*& argument = value.Operands[i];
            if (parameter.Where == Storage::In)
                continue;
            _named.insert(argument->Refers);
            if (parameter.Where == Storage::Out)
                _live.erase(argument->Refers);
        }
        for (std::size_t i = 0; i < callee.Parameters.size(); ++i) {
            Expression*& argument = value.Operands[i];
            const bool isInput = callee.Parameters[i]->Where == Storage::In;
            const bool isNeeded = needed[i] || argument->Of.IsSampler();
            if (isNeeded || (isInput && Discards(*argument)))
                Read(*argument);
            else if (isInput)
                argument = _build.Make(ExpressionKind::Construct, argument->Of, {});
        }
    }

    void Read(const Expression& value)
    {
        if (value.Kind == ExpressionKind::Call) {
            VisitValue(value, true);
            return;
        }
        if (value.Kind == ExpressionKind::Name) {
            _live.insert(value.Refers);
            _named.insert(value.Refers);
        }
        for (const Expression* operand : value.Operands)
            Read(*operand);
    }

    void KeepAll(const Statement& statement)
    {
        if (statement.Kind == StatementKind::Return)
            _live.insert(_outputs.begin(), _outputs.end());
        if (statement.Value)
            ReadAll(*statement.Value);
        for (const Statements& list :
             {statement.Start, statement.Test, statement.Body, statement.Else, statement.Step}) {
            for (const Statement* inner : list)
                KeepAll(*inner);
        }
    }

    void ReadAll(const Expression& value)
    {
        if (value.Kind == ExpressionKind::Name) {
            _live.insert(value.Refers);
            _named.insert(value.Refers);
        }
        for (const Expression* operand : value.Operands)
            ReadAll(*operand);
    }

    bool HasLiveOutput(const Expression& call) const
    {
        const auto& parameters = call.Callee->Parameters;
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            if (parameters[i]->Where != Storage::In && _live.contains(call.Operands[i]->Refers))
                return true;
        }
        return false;
    }

    static bool Discards(const Expression& value)
    {
        return (value.Kind == ExpressionKind::Call && value.Callee->Does.Discards) ||
               std::any_of(value.Operands.begin(), value.Operands.end(),
                           [](const Expression* operand) { return Discards(*operand); });
    }

    static const Variable* RootOf(const Expression& target)
    {
        const Expression* root = &target;
        while (root->Kind != ExpressionKind::Name)
            root = root->Operands[0];
        return root->Refers;
    }

    /// Removes functions that "main" does not call, directly or indirectly.
    void DropFunctions()
    {
        std::unordered_set<const Function*> called{&_main};
        for (std::size_t i = _module.Functions.size(); i-- > 0;) {
            if (called.contains(_module.Functions[i])) {
                for (const Statement* statement : _module.Functions[i]->Body)
                    NoteCalls(*statement, called);
            }
        }
        std::erase_if(_module.Functions,
                      [&](const Function* function) { return !called.contains(function); });
    }

    static void NoteCalls(const Statement& statement, std::unordered_set<const Function*>& called)
    {
        if (statement.Value)
            NoteCalls(*statement.Value, called);
        for (const Statements& list :
             {statement.Start, statement.Test, statement.Body, statement.Else, statement.Step}) {
            for (const Statement* inner : list)
                NoteCalls(*inner, called);
        }
    }

    static void NoteCalls(const Expression& value, std::unordered_set<const Function*>& called)
    {
        if (value.Kind == ExpressionKind::Call)
            called.insert(value.Callee);
        for (const Expression* operand : value.Operands)
            NoteCalls(*operand, called);
    }

    Module& _module;
    Function& _main;
    Dependencies _dependencies;
    TreeBuilder _build;
    std::unordered_set<const Variable*> _outputs; ///< outputs of "main" that are read
    std::unordered_set<const Variable*> _live;    ///< variables whose value is read later
    std::unordered_set<const Variable*> _named;   ///< variables that remaining statements refer to
};

} // namespace

void DropDead(Module& module, const std::function<bool(const Variable&)>& isRead)
{
    const auto main = std::find(module.Functions.begin(), module.Functions.end(), module.Main());
    if (main != module.Functions.end())
        DeadRemover(module, **main).Run(isRead);
}

} // namespace Mox::Cg
