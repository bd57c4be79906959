#include "mox/program/CgWriter.h"

#include "mox/Text.h"
#include "mox/program/CgNames.h"
#include "mox/program/CrossingLayout.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Source = PlanOperand::Source;

/// Quotes an id so that it fits in a one-line comment.
std::string QuoteForComment(const std::string& id)
{
    std::string text = "\"";
    for (const char c : id)
        text += static_cast<unsigned char>(c) < ' ' ? '?' : c;
    return text + "\"";
}

/// Breaks the head of a function into one line per parameter if it is too long.
std::string WrapSignature(std::string signature)
{
    constexpr std::size_t longestLine = 100;
    if (signature.size() <= longestLine)
        return signature;
    for (std::size_t at = signature.find(", "); at != std::string::npos;
         at = signature.find(", ", at))
        signature.replace(at, 2, ",\n\t");
    return signature.replace(signature.find("( "), 2, "(\n\t");
}

/// Indents each line that does not already start with a tab; the code of a node may be unindented.
std::string Indent(const std::string& code)
{
    std::string text;
    bool isLineStart = true;
    for (const char c : code) {
        if (isLineStart && c != '\t' && c != '\n')
            text += '\t';
        text += c;
        isLineStart = c == '\n';
    }
    return text;
}

CgNames NamesOf(const ProgramPlan& plan)
{
    CgNames names;
    for (const std::string& name : plan.TakenNames)
        names.Take(name);
    for (const ProgramParameter& parameter : plan.Parameters)
        names.Take(parameter.CgName);
    for (const PlannedFunction& function : plan.Functions)
        names.Take(function.CgName);
    return names;
}

/// One line of a program that copies components to or from an interpolant.
struct CrossingLine
{
    std::size_t Crossing;
    CrossingPiece Piece;
};

/// Returns the pieces of all crossing values in register order.
std::vector<CrossingLine> SortPieces(const ProgramPlan& plan)
{
    std::vector<CrossingLine> lines;
    for (std::size_t i = 0; i < plan.Crossings.size(); ++i) {
        for (const CrossingPiece& piece : plan.Crossings[i].Pieces)
            lines.push_back({i, piece});
    }
    std::sort(lines.begin(), lines.end(), [](const CrossingLine& a, const CrossingLine& b) {
        return std::tuple(a.Piece.Register, a.Piece.RegisterComponent) <
               std::tuple(b.Piece.Register, b.Piece.RegisterComponent);
    });
    return lines;
}

/// Collects the lines of a program together with the node that each line comes from.
class ProgramText
{
public:
    /// Appends whole lines; adds a newline at the end if it is missing.
    /// @param node id of the node that they come from, if any
    void Append(std::string_view lines, const std::string& node = "")
    {
        _program.Lines.insert(_program.Lines.end(), AppendText(lines), {node});
    }

    /// Appends the body of a node's function in braces.
    void AppendBody(std::string_view lines, const std::string& node)
    {
        Append("{\n", node);
        const std::size_t count = AppendText(lines);
        for (std::size_t line = 1; line <= count; ++line)
            _program.Lines.push_back({node, line});
        _program.Lines.insert(_program.Lines.end(), AppendText("}\n"), {node, count});
    }

    /// Appends an empty line, unless the text is empty or ends with one.
    void Separate()
    {
        if (!_program.Text.empty() && !_program.Text.ends_with("\n\n"))
            Append("\n");
    }

    /// Marks the start of the entry point.
    void BeginMain() { _program.MainBegin = _program.Text.size(); }

    StageProgram Take() { return std::move(_program); }

private:
    /// @returns the number of lines appended
    std::size_t AppendText(std::string_view lines)
    {
        if (lines.empty())
            return 0;
        _program.Text += lines;
        const auto count = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
        if (lines.back() == '\n')
            return count;
        _program.Text += '\n';
        return count + 1;
    }

    StageProgram _program;
};

/// Writes the source of one stage: parameters, functions, and the entry point that calls them.
class StageWriter
{
public:
    StageWriter(const ProgramPlan& plan, ProgramStage stage, const ProgramOptions& options)
        : _plan(plan), _stage(plan.StageOf(stage)), _isVertex(stage == ProgramStage::Vertex),
          _options(options), _names(NamesOf(plan)), _pieces(SortPieces(plan)),
          _crossings(plan.Crossings.size())
    {
        for (const PlannedCall& call : _stage.Calls)
            _results.emplace_back(call.ResultNames.size());
    }

    StageProgram Write()
    {
        WriteUniforms();
        for (const std::size_t code : _stage.Code) {
            _text.Separate();
            _text.Append(_plan.Code[code]);
        }
        WriteFunctions();
        WriteMain();
        return _text.Take();
    }

private:
    void WriteUniforms()
    {
        for (const ProgramParameter& parameter : _plan.Parameters) {
            if (parameter.Kind == ParameterKind::VertexStream ||
                !(_isVertex ? parameter.InVertex : parameter.InFragment))
                continue;
            const bool isBound = parameter.Register.Type != ShaderRegisterType::RegisterUnknown;
            _text.Append(Compose("uniform ", parameter.Type.FormatDeclaration(parameter.CgName),
                                 isBound ? " : " + parameter.Register.FormatRegister() : "",
                                 ";\n"));
        }
    }

    void WriteFunctions()
    {
        for (const FunctionUse& use : _stage.Functions) {
            const PlannedFunction& function = _plan.Functions[use.Function];
            _text.Separate();
            if (_options.WithComments)
                _text.Append(DescribeOrigins(function, use), function.Node);
            _text.Append(
                WrapSignature(FormatSignature(function.CgName, function.Inputs, function.Outputs)),
                function.Node);
            _text.AppendBody(Indent(function.Code), function.Node);
        }
    }

    static std::string DescribeOrigins(const PlannedFunction& function, const FunctionUse& use)
    {
        if (function.Type.empty())
            return "// environment\n";
        std::string nodes;
        for (const std::string& id : use.Nodes)
            nodes += Compose(nodes.empty() ? "" : ", ", QuoteForComment(id));
        return Compose("// ", nodes, " (", function.Type, ")\n");
    }

    void WriteMain()
    {
        _text.Separate();
        _text.BeginMain();
        WriteHead();
        _text.Append("{\n");
        if (!_isVertex)
            ReadCrossings();
        for (std::size_t i = 0; i < _stage.Calls.size(); ++i)
            WriteCall(i);
        for (std::size_t i = 0; i < _stage.Outputs.size(); ++i) {
            const std::string& value = Expression(_stage.Outputs[i].Value);
            if (value != _outputs[i])
                _text.Append(Compose("\t", _outputs[i], " = ", value, ";\n"));
        }
        if (_isVertex)
            WriteCrossings();
        _text.Append("}\n");
    }

    void WriteHead()
    {
        std::vector<std::string> parameters;
        const auto add = [&](const char* direction, const ShaderType& type, const std::string& name,
                             const ShaderRegister& place) {
            parameters.push_back(Compose("\t", direction, " ", type.FormatDeclaration(name), " : ",
                                         place.FormatRegister()));
        };
        if (_isVertex) {
            for (const ProgramParameter& parameter : _plan.Parameters) {
                if (parameter.Kind == ParameterKind::VertexStream)
                    add("in", parameter.Type, parameter.CgName, parameter.Register);
            }
        } else {
            AddCrossingRegisters(parameters, "in");
        }
        for (const PlannedRegister& input : _stage.Inputs) {
            _inputs.push_back(ClaimRegister(input));
            add("in", input.Type, _inputs.back(), input.Register);
        }
        for (const auto& [target, value] : _stage.Outputs) {
            _outputs.push_back(ClaimRegister(target));
            add("out", target.Type, _outputs.back(), target.Register);
            // Let the function that computes an output write to it directly.
            if (value.From == Source::Result && _results[value.Index][value.Output].empty())
                _results[value.Index][value.Output] = _outputs.back();
        }
        if (_isVertex)
            AddCrossingRegisters(parameters, "out");

        std::string head = "void main(";
        for (std::size_t i = 0; i < parameters.size(); ++i)
            head += (i == 0 ? "\n" : ",\n") + parameters[i];
        _text.Append(head + (parameters.empty() ? ")\n" : " )\n"));
    }

    std::string ClaimRegister(const PlannedRegister& place)
    {
        return _names.Claim(place.Name.empty() ? "register" : place.Name);
    }

    /// A register is as wide as the values packed into it, and has float precision if any of them
    /// has.
    void AddCrossingRegisters(std::vector<std::string>& parameters, const char* direction)
    {
        for (const auto& [crossing, piece] : _pieces) {
            const auto entry =
                _registers
                    .try_emplace(piece.Register, Interpolant{{}, {ComponentType::Half, 1, 1, 1}})
                    .first;
            ShaderType& type = entry->second.Type;
            type.Columns = std::max(type.Columns, piece.RegisterComponent + piece.Width);
            if (_plan.Crossings[crossing].Type.Component == ComponentType::Float)
                type.Component = ComponentType::Float;
        }
        for (auto& [index, interpolant] : _registers) {
            interpolant.Name = _names.Claim(Compose("interpolant", index));
            parameters.push_back(Compose(
                "\t", direction, " ", interpolant.Type.FormatDeclaration(interpolant.Name), " : ",
                ShaderRegister(ShaderRegisterType::VertexTexCoord, index).FormatRegister()));
        }
    }

    /// Formats a read or write of the components of a register that a piece occupies.
    std::string SlotOf(const CrossingPiece& piece) const
    {
        const Interpolant& interpolant = _registers.at(piece.Register);
        if (piece.Width == interpolant.Type.Columns)
            return interpolant.Name;
        return Compose(interpolant.Name, ".", LettersOf(piece.RegisterComponent, piece.Width));
    }

    /// Whether a crossing value is a single piece with all of its components.
    static bool IsWhole(const PlannedCrossing& crossing)
    {
        return crossing.Pieces.size() == 1 && crossing.Pieces[0].Width == crossing.Type.Columns;
    }

    void ReadCrossings()
    {
        for (const auto& [index, piece] : _pieces) {
            if (_crossings[index].empty())
                ReadCrossing(index);
        }
        for (std::size_t i = 0; i < _crossings.size(); ++i) {
            if (_crossings[i].empty())
                ReadCrossing(i);
        }
    }

    void ReadCrossing(std::size_t index)
    {
        const PlannedCrossing& crossing = _plan.Crossings[index];
        // A stream keeps its name because nothing else in this program has that name.
        const bool isStream =
            crossing.Value.From == Source::Parameter &&
            _plan.Parameters[crossing.Value.Index].Kind == ParameterKind::VertexStream;
        const std::string name = isStream ? crossing.Name : _names.Claim(crossing.Name);
        _text.Append(Compose("\t", crossing.Type.FormatDeclaration(name), " = ",
                             IsWhole(crossing) ? SlotOf(crossing.Pieces[0]) : Gather(crossing),
                             ";\n"));
        _crossings[index] = name;
    }

    /// Formats a constructor that assembles a value from its pieces, with 0 for components that are
    /// never read.
    std::string Gather(const PlannedCrossing& crossing) const
    {
        std::string components;
        const std::size_t count = ComponentCount(crossing.Type);
        for (std::size_t i = 0; i < count; ++i) {
            const auto component = static_cast<std::int32_t>(i);
            const auto piece =
                std::find_if(crossing.Pieces.begin(), crossing.Pieces.end(),
                             [component](const CrossingPiece& candidate) {
                                 return component >= candidate.Component &&
                                        component < candidate.Component + candidate.Width;
                             });
            components += i == 0 ? " " : ", ";
            if (piece == crossing.Pieces.end()) {
                components += "0.0";
            } else {
                const std::int32_t offset = component - piece->Component;
                components +=
                    SlotOf({component, 1, piece->Register, piece->RegisterComponent + offset});
            }
        }
        return Compose(crossing.Type.Format(), "(", components, " )");
    }

    void WriteCrossings()
    {
        for (const auto& [index, piece] : _pieces) {
            const PlannedCrossing& crossing = _plan.Crossings[index];
            const std::string& value = Expression(crossing.Value);
            _text.Append(Compose(
                "\t", SlotOf(piece), " = ", value,
                IsWhole(crossing) ? "" : Compose(".", LettersOf(piece.Component, piece.Width)),
                ";\n"));
        }
    }

    void WriteCall(std::size_t index)
    {
        const PlannedCall& call = _stage.Calls[index];
        const PlannedFunction& function = _plan.Functions[call.Function];
        std::string arguments;
        const auto add = [&](const std::string& argument) {
            arguments += arguments.empty() ? " " : ", ";
            arguments += argument;
        };
        for (const PlanOperand& argument : call.Arguments)
            add(Expression(argument));
        for (std::size_t output = 0; output < call.ResultNames.size(); ++output) {
            std::string& variable = _results[index][output];
            if (variable.empty()) {
                variable = _names.Claim(call.ResultNames[output]);
                const ShaderType& type = function.Outputs[output].Type;
                _text.Append(Compose("\t", type.FormatDeclaration(variable), ";\n"), call.Node);
            }
            add(variable);
        }
        _text.Append(
            Compose("\t", function.CgName, "(", arguments, arguments.empty() ? ");\n" : " );\n"),
            call.Node);
    }

    /// Returns the Cg expression that reads a value.
    const std::string& Expression(const PlanOperand& operand) const
    {
        switch (operand.From) {
        case Source::Parameter:
            return _plan.Parameters[operand.Index].CgName;
        case Source::Crossing:
            return _crossings[operand.Index];
        case Source::Register:
            return _inputs[operand.Index];
        case Source::Result:
            break;
        }
        return _results[operand.Index][operand.Output];
    }

    struct Interpolant
    {
        std::string Name;
        ShaderType Type;
    };

    const ProgramPlan& _plan;
    const PlannedStage& _stage;
    bool _isVertex;
    const ProgramOptions& _options;
    CgNames _names; ///< includes the local variables of this stage
    ProgramText _text;
    std::vector<CrossingLine> _pieces;
    std::map<std::int32_t, Interpolant> _registers; ///< registers between the stages, by number
    std::vector<std::string> _crossings;            ///< name of the variable that holds each
                                                    ///< crossing value
    std::vector<std::string> _inputs;               ///< names of the input registers
    std::vector<std::string> _outputs;              ///< names of the output registers
    std::vector<std::vector<std::string>> _results; ///< variables by call and output; empty if not
                                                    ///< yet declared
};

} // namespace

CgProgram WriteCg(ProgramPlan plan, const ProgramOptions& options)
{
    CgProgram program{std::move(plan), {}, {}};
    program.Vertex = StageWriter(program.Plan, ProgramStage::Vertex, options).Write();
    program.Fragment = StageWriter(program.Plan, ProgramStage::Fragment, options).Write();
    return program;
}

std::string FormatSignature(const std::string& name, const std::vector<ShaderPort>& inputs,
                            const std::vector<ShaderPort>& outputs)
{
    std::string parameters;
    const auto append = [&](const char* direction, const ShaderPort& port) {
        parameters += Compose(parameters.empty() ? " " : ", ", direction, " ",
                              port.Type.FormatDeclaration(port.Name));
    };
    for (const ShaderPort& port : inputs)
        append("in", port);
    for (const ShaderPort& port : outputs)
        append("out", port);
    return Compose("void ", name, "(", parameters, parameters.empty() ? ")" : " )");
}

} // namespace Mox::Host
