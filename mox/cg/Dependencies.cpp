#include "mox/cg/Dependencies.h"

#include <unordered_set>

namespace Mox::Cg {

/// Collects, for each variable of a function, all variables that flow into it anywhere.
class Dependencies::Reader
{
public:
    Reader(const Dependencies& dependencies, const Function& function)
        : _dependencies(dependencies), _function(function)
    {
        VisitList(function.Body);
    }

    Summary Summarize()
    {
        Summary summary;
        for (const Variable* parameter : _function.Parameters)
            summary.Outputs.push_back(parameter->Where == Storage::In ? Set() : Reach(parameter));
        summary.Result = Reach(&_result);
        summary.Discard = Reach(&_discard);
        return summary;
    }

private:
    void VisitList(Statements statements)
    {
        for (const Statement* statement : statements)
            Visit(*statement);
    }

    void Visit(const Statement& statement)
    {
        switch (statement.Kind) {
        case StatementKind::Declare:
            if (statement.Value)
                Store(statement.Refers, *statement.Value);
            return;
        case StatementKind::Evaluate:
            if (statement.Value->Kind == ExpressionKind::Assign) {
                const Variable* target = RootOf(*statement.Value->Operands[0]);
                // The indices that select a part of the target flow into it, too.
                Store(target, *statement.Value->Operands[0]);
                Store(target, *statement.Value->Operands[1]);
            } else {
                Store(nullptr, *statement.Value);
            }
            return;
        case StatementKind::Return:
            if (statement.Value)
                Store(&_result, *statement.Value);
            LeaveEarly();
            return;
        case StatementKind::Break:
        case StatementKind::Continue:
            LeaveEarly();
            return;
        case StatementKind::Discard:
            FlowInto(&_discard); // later statements only matter for a fragment that is kept
            return;
        case StatementKind::Block:
            VisitList(statement.Body);
            return;
        default:
            break;
        }
        VisitList(statement.Start);
        const std::size_t outer = _conditions.size();
        if (statement.Value)
            _dependencies.VisitReads(*statement.Value, [&](const Variable* variable) {
                _conditions.push_back(variable);
            });
        for (const Statements& list :
             {statement.Test, statement.Body, statement.Else, statement.Step})
            VisitList(list);
        _conditions.resize(outer);
    }

    /// Records that the statements that follow may be skipped.
    void LeaveEarly()
    {
        for (const Variable* condition : _conditions)
            _flow.insert(condition);
    }

    void FlowInto(const Variable* target)
    {
        auto& sources = _sources[target];
        sources.insert(_conditions.begin(), _conditions.end());
    }

    /// Records a value that is assigned to a variable or evaluated only for its effects.
    void Store(const Variable* target, const Expression& value)
    {
        if (value.Kind == ExpressionKind::Call) {
            const Function& callee = *value.Callee;
            const auto store = [&](const Variable* variable, const Set& set) {
                FlowInto(variable);
                for (std::size_t i = 0; i < set.size(); ++i) {
                    if (set[i])
                        _dependencies.VisitReads(*value.Operands[i], [&](const Variable* read) {
                            _sources[variable].insert(read);
                        });
                }
            };
            for (std::size_t i = 0; i < callee.Parameters.size(); ++i) {
                if (callee.Parameters[i]->Where != Storage::In)
                    store(value.Operands[i]->Refers, _dependencies.OfOutput(callee, i));
            }
            if (target)
                store(target, _dependencies.OfResult(callee));
        } else if (target) {
            FlowInto(target);
            _dependencies.VisitReads(value,
                                     [&](const Variable* read) { _sources[target].insert(read); });
        }
        NoteDiscards(value);
    }

    void NoteDiscards(const Expression& value)
    {
        if (value.Kind == ExpressionKind::Call && value.Callee->Does.Discards) {
            FlowInto(&_discard);
            const Set& set = _dependencies.OfDiscard(*value.Callee);
            for (std::size_t i = 0; i < set.size(); ++i) {
                if (set[i])
                    _dependencies.VisitReads(*value.Operands[i], [&](const Variable* read) {
                        _sources[&_discard].insert(read);
                    });
            }
        }
        for (const Expression* operand : value.Operands)
            NoteDiscards(*operand);
    }

    static const Variable* RootOf(const Expression& target)
    {
        const Expression* root = &target;
        while (root->Kind != ExpressionKind::Name)
            root = root->Operands[0];
        return root->Refers;
    }

    /// Returns the parameters that flow into a variable, directly or indirectly.
    Set Reach(const Variable* target) const
    {
        std::unordered_set<const Variable*> seen{target};
        std::vector<const Variable*> open{target};
        const auto add = [&](const Variable* variable) {
            if (seen.insert(variable).second)
                open.push_back(variable);
        };
        for (const Variable* variable : _flow)
            add(variable);
        while (!open.empty()) {
            const auto sources = _sources.find(open.back());
            open.pop_back();
            if (sources == _sources.end())
                continue;
            for (const Variable* source : sources->second)
                add(source);
        }
        Set set;
        for (const Variable* parameter : _function.Parameters)
            set.push_back(parameter->Where != Storage::Out && seen.contains(parameter) &&
                          (parameter != target || parameter->Where == Storage::InOut));
        return set;
    }

    const Dependencies& _dependencies;
    const Function& _function;
    const Variable _result;
    const Variable _discard;
    std::unordered_map<const Variable*, std::unordered_set<const Variable*>> _sources;
    std::vector<const Variable*> _conditions;  ///< variables that decide whether the current
                                               ///< statement runs
    std::unordered_set<const Variable*> _flow; ///< variables that decide whether the function
                                               ///< returns early
};

Dependencies::Dependencies(const Module& module)
{
    const Function* main = module.Main();
    for (const Function* function : module.Functions) {
        if (function != main)
            _summaries.emplace(function, Reader(*this, *function).Summarize());
    }
}

const Dependencies::Set& Dependencies::OfOutput(const Function& function, std::size_t output) const
{
    return _summaries.at(&function).Outputs[output];
}

const Dependencies::Set& Dependencies::OfResult(const Function& function) const
{
    return _summaries.at(&function).Result;
}

const Dependencies::Set& Dependencies::OfDiscard(const Function& function) const
{
    return _summaries.at(&function).Discard;
}

void Dependencies::VisitReads(const Expression& value,
                              const std::function<void(const Variable*)>& visit) const
{
    if (value.Kind == ExpressionKind::Name)
        visit(value.Refers);
    const Set* set = value.Kind == ExpressionKind::Call ? &OfResult(*value.Callee) : nullptr;
    for (std::size_t i = 0; i < value.Operands.size(); ++i) {
        if (!set || (*set)[i])
            VisitReads(*value.Operands[i], visit);
    }
}

} // namespace Mox::Cg
