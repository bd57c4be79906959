#include "mox/pictures/ShaderStages.h"

#include "mox/Text.h"

#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

bool IsInterface(const ShaderNode& node)
{
    return node.Kind == ShaderNodeKind::InterfaceParameter;
}

} // namespace

ShaderStages::ShaderStages(const GeneratedShader& shader, ProblemList& problems)
{
    if (problems.HasErrors())
        return;
    _program.emplace(shader.Graph, shader.Origins, problems);
    if (problems.HasErrors())
        return;
    _layout.emplace(*_program, StageCopies::HandedOn, problems);
    for (std::size_t i = 0; i < _program->Nodes().size(); ++i)
        _index.emplace(_program->Nodes()[i].Shader, i);
    CollectReadNames();
}

void ShaderStages::CollectReadNames()
{
    // Follow chains of interface parameters backwards from each node of the program.
    struct Reader
    {
        const ShaderNode* Node;
        bool IsInFragment;
    };
    std::vector<Reader> readers;
    for (std::size_t i = 0; i < _program->Nodes().size(); ++i)
        readers.push_back({_program->Nodes()[i].Shader, _layout->Stages().InFragment(i)});
    while (!readers.empty()) {
        const Reader reader = readers.back();
        readers.pop_back();
        for (const auto& weak : reader.Node->InEdges) {
            const ShaderEdgeHandle edge = weak.lock();
            const ShaderNodeHandle name = edge ? edge->Tail.lock() : nullptr;
            if (!name || !IsInterface(*name))
                continue;
            const bool isNew = _read.insert(name.get()).second;
            const bool isNewInFragment =
                reader.IsInFragment && _readInFragment.insert(name.get()).second;
            if (isNew || isNewInFragment)
                readers.push_back({name.get(), reader.IsInFragment});
        }
    }
}

DrawnStage ShaderStages::StageOf(const ShaderNode& node) const
{
    if (!IsKnown())
        return DrawnStage::None;
    const auto entry = _index.find(&node);
    if (entry == _index.end())
        return _read.contains(&node) ? DrawnStage::None : DrawnStage::Dead;
    const bool isInVertex = _layout->Stages().InVertex(entry->second);
    const bool isInFragment = _layout->Stages().InFragment(entry->second);
    if (isInVertex && isInFragment)
        return DrawnStage::Both;
    return isInVertex ? DrawnStage::Vertex : DrawnStage::Fragment;
}

std::optional<std::string> ShaderStages::CrossingOf(const ShaderEdge& edge) const
{
    const ShaderNodeHandle head = edge.Head.lock();
    if (!IsKnown() || !head)
        return std::nullopt;
    const auto reader = _index.find(head.get());
    const bool isReadInFragment = reader == _index.end()
                                      ? _readInFragment.contains(head.get())
                                      : _layout->Stages().InFragment(reader->second);
    const std::optional<ProgramValue> value =
        isReadInFragment ? ValueOf(edge) : std::optional<ProgramValue>();
    if (!value)
        return std::nullopt;
    const std::optional<ProgramValue> source = _layout->Stages().CrossingOf(*value);
    if (!source)
        return std::nullopt;
    const auto pieces = _layout->Pieces().find(*source);
    if (pieces == _layout->Pieces().end() || IsInterface(*edge.Tail.lock()))
        return "";
    std::string places;
    for (const CrossingPiece& piece : pieces->second) {
        const ShaderRegister place(ShaderRegisterType::FragmentTexCoord, piece.Register);
        places += Compose(places.empty() ? "" : " ", place.FormatRegister(), ".",
                          LettersOf(piece.RegisterComponent, piece.Width));
    }
    return places;
}

/// Returns the value at the tail of an edge, following interface parameters.
std::optional<ProgramValue> ShaderStages::ValueOf(const ShaderEdge& edge) const
{
    ShaderNodeHandle tail = edge.Tail.lock();
    std::string port = edge.TailPort;
    while (tail && IsInterface(*tail)) {
        // Terminates, since nothing that the program reads is part of a cycle.
        const ShaderEdgeHandle write =
            tail->InEdges.empty() ? nullptr : tail->InEdges.front().lock();
        port = write ? write->TailPort : "";
        tail = write ? write->Tail.lock() : nullptr;
    }
    const auto entry = _index.find(tail.get());
    const std::int32_t index = tail ? tail->FindOutputPort(port) : -1;
    if (entry == _index.end() || index < 0)
        return std::nullopt;
    return ProgramValue{entry->second, static_cast<std::size_t>(index)};
}

} // namespace Mox::Host
