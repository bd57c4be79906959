#include "mox/program/StageWriter.h"

#include "mox/Text.h"
#include "mox/program/InterpolantPacking.h"
#include "mox/program/ProgramText.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// An id as it may stand in a comment of one line.
std::string QuoteForComment(const std::string& id)
{
    std::string text = "\"";
    for (const char c : id)
        text += static_cast<unsigned char>(c) < ' ' ? '?' : c;
    return text + "\"";
}

/// The head of a function, with a line for each parameter if it were too long.
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

/// Each line indented by at least a tab; a node's text may come without.
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

class StageWriter
{
public:
    StageWriter(const ProgramParts& parts, Stage stage)
        : _parts(parts), _isVertex(stage == Stage::Vertex), _names(parts.Names),
          _values(parts.Graph.ValueCount())
    {}

    StageProgram Write()
    {
        WriteUniforms();
        const std::string functions = FindCalledFunctions();
        WriteEnvironmentCode(functions);
        WriteFunctions();
        WriteMain();
        return _text.Take();
    }

private:
    bool RunsHere(std::size_t node) const
    {
        return _isVertex ? _parts.Plan.InVertex(node) : _parts.Plan.InFragment(node);
    }

    const ShaderOrigin& OriginOf(std::size_t node) const
    {
        return *_parts.Graph.Nodes()[node].Origin;
    }

    /// Whether a function that this stage calls gives the value.
    bool IsCall(const ProgramValue& value) const
    {
        return RunsHere(value.Node) &&
               _parts.Graph.Nodes()[value.Node].Definition->Kind == ShaderNodeKind::Function;
    }

    void WriteUniforms()
    {
        for (const ProgramParameter& parameter : _parts.Parameters.Parameters()) {
            if (parameter.Kind == ParameterKind::VertexStream ||
                !(_isVertex ? parameter.InVertex : parameter.InFragment))
                continue;
            const bool isBound = parameter.Register.Type != ShaderRegisterType::RegisterUnknown;
            _text.Append(Compose("uniform ", parameter.Type.FormatDeclaration(parameter.CgName),
                                 isBound ? " : " + parameter.Register.FormatRegister() : "",
                                 ";\n"));
        }
    }

    /// @returns the bodies of the functions that this stage calls
    std::string FindCalledFunctions()
    {
        std::string bodies;
        std::size_t calls = 0;
        for (const ProgramFunction& function : _parts.Functions.Functions()) {
            if (std::none_of(function.Nodes.begin(), function.Nodes.end(),
                             [this](std::size_t node) { return RunsHere(node); }))
                continue;
            _called.push_back(&function);
            calls += function.Nodes.size();
            bodies += function.Definition->Code;
        }
        _calls.reserve(calls);
        return bodies;
    }

    /// Of the environment's code what the bodies call, and what that calls in turn.
    void WriteEnvironmentCode(std::string bodies)
    {
        const std::vector<EnvironmentCode>& code = _parts.Surroundings.Code;
        std::vector<bool> isNeeded(code.size());
        for (bool isGrowing = true; isGrowing;) {
            isGrowing = false;
            for (std::size_t i = 0; i < code.size(); ++i) {
                const auto isCalled = [&](const std::string& name) {
                    return FindCgWord(bodies, name) != std::string::npos;
                };
                if (isNeeded[i] ||
                    std::none_of(code[i].Provides.begin(), code[i].Provides.end(), isCalled))
                    continue;
                isNeeded[i] = true;
                isGrowing = true;
                bodies += code[i].Text;
            }
        }
        for (std::size_t i = 0; i < code.size(); ++i) {
            if (isNeeded[i]) {
                _text.Separate();
                _text.Append(code[i].Text);
            }
        }
    }

    void WriteFunctions()
    {
        for (const ProgramFunction* function : _called) {
            const ShaderNode& shader = *function->Definition;
            const std::string& node = OriginOf(function->Nodes.front()).Node;
            _text.Separate();
            if (_parts.Options.WithComments)
                _text.Append(DescribeOrigins(*function));
            _text.Append(WrapSignature(FormatSignature(shader, function->CgName)), node);
            _text.Append("{\n");
            _text.Append(Indent(shader.Code), node);
            _text.Append("}\n");
        }
    }

    std::string DescribeOrigins(const ProgramFunction& function) const
    {
        const std::string& type = OriginOf(function.Nodes.front()).Type;
        if (type.empty())
            return "// environment\n";
        std::string nodes;
        std::unordered_set<std::string> seen;
        for (const std::size_t node : function.Nodes) {
            if (!RunsHere(node))
                continue;
            const std::string& id = OriginOf(node).Node;
            if (seen.insert(id).second)
                nodes += Compose(nodes.empty() ? "" : ", ", QuoteForComment(id));
        }
        return Compose("// ", nodes, " (", type, ")\n");
    }

    void WriteMain()
    {
        _text.Separate();
        WriteHead();
        _text.Append("{\n");
        if (!_isVertex)
            ReadInterpolants();
        for (std::size_t node = 0; node < _parts.Graph.Nodes().size(); ++node) {
            if (RunsHere(node))
                WriteNode(node);
        }
        if (_isVertex)
            WriteInterpolants();
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
            for (const ProgramParameter& parameter : _parts.Parameters.Parameters()) {
                if (parameter.Kind == ParameterKind::VertexStream)
                    add("in", parameter.Type, parameter.CgName, parameter.Register);
            }
        } else {
            AddInterpolantRegisters(parameters, "in");
        }
        for (std::size_t node = 0; node < _parts.Graph.Nodes().size(); ++node) {
            const ShaderNode& shader = *_parts.Graph.Nodes()[node].Definition;
            if (shader.Kind != ShaderNodeKind::CgRegisterParameter || !RunsHere(node))
                continue;
            const bool isOutput = shader.Register.IsWritable();
            const std::string& name =
                _registers
                    .emplace(node, _names.Claim(shader.Name.empty() ? "register" : shader.Name))
                    .first->second;
            add(isOutput ? "out" : "in", shader.Type, name, shader.Register);
            // The function that computes an output may write right into it.
            const bool isComputedHere =
                isOutput && IsCall(_parts.Graph.Nodes()[node].Inputs.front());
            if (!isComputedHere)
                continue;
            std::string& variable = ExpressionOf(_parts.Graph.Nodes()[node].Inputs.front());
            if (variable.empty())
                variable = name;
        }
        if (_isVertex)
            AddInterpolantRegisters(parameters, "out");

        std::string head = "void main(";
        for (std::size_t i = 0; i < parameters.size(); ++i)
            head += (i == 0 ? "\n" : ",\n") + parameters[i];
        _text.Append(head + (parameters.empty() ? ")\n" : " )\n"));
    }

    /// A register is as wide as what stands in it, and of float precision if one of its values is.
    void AddInterpolantRegisters(std::vector<std::string>& parameters, const char* direction)
    {
        std::map<std::int32_t, ShaderType> types;
        for (const auto& [value, interpolant] : _parts.Interpolants) {
            const auto entry =
                types.try_emplace(interpolant.Register, ShaderType(ComponentType::Half, 1, 1, 1))
                    .first;
            ShaderType& type = entry->second;
            type.Columns = std::max(type.Columns, interpolant.Component + interpolant.Type.Columns);
            if (interpolant.Type.Component == ComponentType::Float)
                type.Component = ComponentType::Float;
        }
        for (const auto& [index, type] : types) {
            const std::string& name =
                _interpolants.emplace(index, _names.Claim(Compose("interpolant", index)))
                    .first->second;
            _widths.emplace(index, type.Columns);
            parameters.push_back(Compose(
                "\t", direction, " ", type.FormatDeclaration(name), " : ",
                ShaderRegister(ShaderRegisterType::VertexTexCoord, index).FormatRegister()));
        }
    }

    /// The place of a value in the registers between the stages.
    std::string SlotOf(const ProgramInterpolant& interpolant) const
    {
        std::string text = _interpolants.at(interpolant.Register);
        if (interpolant.Type.Columns < _widths.at(interpolant.Register)) {
            text += '.';
            text += LettersOf(interpolant.Component, interpolant.Type.Columns);
        }
        return text;
    }

    std::vector<std::pair<ProgramValue, const ProgramInterpolant*>> SortedInterpolants() const
    {
        std::vector<std::pair<ProgramValue, const ProgramInterpolant*>> order;
        for (const auto& [value, interpolant] : _parts.Interpolants)
            order.emplace_back(value, &interpolant);
        std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
            return std::tuple(a.second->Register, a.second->Component) <
                   std::tuple(b.second->Register, b.second->Component);
        });
        return order;
    }

    void ReadInterpolants()
    {
        for (const auto& [value, interpolant] : SortedInterpolants()) {
            // A stream keeps its name, which means nothing else in this program.
            const bool isStream = _parts.Graph.Nodes()[value.Node].Definition->Kind ==
                                  ShaderNodeKind::VaryingParameter;
            const std::string name = isStream ? interpolant->Name : _names.Claim(interpolant->Name);
            _text.Append(Compose("\t", interpolant->Type.FormatDeclaration(name), " = ",
                                 SlotOf(*interpolant), ";\n"));
            ExpressionOf(value) = name;
        }
    }

    void WriteInterpolants()
    {
        for (const auto& [value, interpolant] : SortedInterpolants())
            _text.Append(Compose("\t", SlotOf(*interpolant), " = ", Expression(value), ";\n"));
    }

    void WriteNode(std::size_t index)
    {
        const ProgramNode& node = _parts.Graph.Nodes()[index];
        if (node.Definition->Kind == ShaderNodeKind::Function) {
            WriteCall(index);
        } else if (const auto name = _registers.find(index); name != _registers.end()) {
            if (!node.Definition->Register.IsWritable())
                ExpressionOf({index, 0}) = name->second;
            else if (const std::string& value = Expression(node.Inputs.front());
                     value != name->second)
                _text.Append(Compose("\t", name->second, " = ", value, ";\n"));
        }
    }

    /// The same function of the same values is called once.
    void WriteCall(std::size_t index)
    {
        const ProgramNode& node = _parts.Graph.Nodes()[index];
        const std::string& name = _parts.Functions.FunctionOf(index).CgName;
        std::string arguments;
        for (const ProgramValue& input : node.Inputs) {
            arguments += arguments.empty() ? " " : ", ";
            arguments += Expression(input);
        }
        const auto [known, isNew] = _calls.try_emplace(name + "(" + arguments, index);
        if (!isNew) {
            for (std::size_t port = 0; port < node.Definition->Outputs.size(); ++port)
                ExpressionOf({index, port}) = ExpressionOf({known->second, port});
            return;
        }
        const std::string& origin = node.Origin->Node;
        for (std::size_t port = 0; port < node.Definition->Outputs.size(); ++port) {
            const ShaderPort& output = node.Definition->Outputs[port];
            const ProgramValue value{index, port};
            std::string& variable = ExpressionOf(value);
            if (variable.empty()) {
                variable = _names.Claim(_parts.Graph.NameOf(value));
                _text.Append(Compose("\t", output.Type.FormatDeclaration(variable), ";\n"), origin);
            }
            arguments += arguments.empty() ? " " : ", ";
            arguments += variable;
        }
        _text.Append(Compose("\t", name, "(", arguments, arguments.empty() ? ");\n" : " );\n"),
                     origin);
    }

    std::string& ExpressionOf(const ProgramValue& value)
    {
        return _values[_parts.Graph.NumberOf(value)];
    }

    /// How the text reads a value.
    const std::string& Expression(const ProgramValue& wanted) const
    {
        const ProgramValue value = _parts.Plan.SourceOf(wanted);
        const std::string& known = _values[_parts.Graph.NumberOf(value)];
        if (!known.empty())
            return known;
        return _parts.Parameters.ParameterOf(value.Node).CgName;
    }

    const ProgramParts& _parts;
    bool _isVertex;
    CgNames _names; ///< a copy: names of variables are the stage's own
    ProgramText _text;
    std::vector<const ProgramFunction*> _called;
    std::map<std::size_t, std::string> _registers;       ///< names of register parameters, by node
    std::map<std::int32_t, std::string> _interpolants;   ///< names of registers, by number
    std::map<std::int32_t, std::int32_t> _widths;        ///< of the same registers
    std::unordered_map<std::string, std::size_t> _calls; ///< node of a call, by its text
    std::vector<std::string> _values; ///< expressions by value number; empty if there is none yet
};

} // namespace

StageProgram WriteStage(const ProgramParts& parts, Stage stage)
{
    return StageWriter(parts, stage).Write();
}

} // namespace Mox::Host
