#include "mox/targets/MadePrograms.h"

#include "mox/Text.h"
#include "mox/host/ContentHash.h"

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr std::size_t mostBytes = std::size_t(32) << 20;

/// Computes a key that is equal for programs whose results differ only in the header. It must
/// include all data that affects the sources or the reflection.
std::string HashProgram(const CgProgram& program)
{
    std::vector<std::string> parts{program.Vertex.Text, program.Fragment.Text};
    for (const ProgramParameter& parameter : program.Plan.Parameters) {
        parts.push_back(parameter.Name);
        parts.push_back(Compose(parameter.CgName, " ", parameter.Type.Format(), " ",
                                parameter.Register.FormatRegister(), " ",
                                static_cast<int>(parameter.Kind), parameter.IsBinding,
                                parameter.InVertex, parameter.InFragment));
        const SamplerState& sampler = parameter.Sampler;
        for (const std::string* part :
             {&sampler.WrapU, &sampler.WrapV, &sampler.Filter, &sampler.Anisotropy})
            parts.push_back(*part);
    }
    for (const EnvironmentUniform& uniform : program.Plan.EnvironmentUniforms) {
        parts.push_back(
            Compose(uniform.Name, " ", uniform.Type.Format(), " ", static_cast<int>(uniform.Rate)));
    }
    for (const PlannedCrossing& crossing : program.Plan.Crossings) {
        parts.push_back(crossing.Name);
        for (const CrossingPiece& piece : crossing.Pieces)
            parts.push_back(Compose(piece.Register, " ", piece.RegisterComponent));
    }
    parts.emplace_back(program.Header.empty() ? "" : "header");
    return HashContent(parts, "");
}

std::string HeaderLine(const std::string& header)
{
    return "// " + header + "\n";
}

} // namespace

MadePrograms::Headless::Headless(Files files, const std::string& header) : Parts(std::move(files))
{
    const std::string line = HeaderLine(header);
    for (ProgramFile& part : Parts) {
        const bool hasHeader = !header.empty() && !part.CgLines.empty(); // only sources have one
        HeaderAt.push_back(hasHeader ? part.Text.find(line) : std::string::npos);
        if (HeaderAt.back() == std::string::npos)
            continue;
        part.Text.erase(HeaderAt.back(), line.size());
        // Neither the header nor a line before it comes from a line of Cg.
        part.CgLines.erase(part.CgLines.begin());
    }
}

MadePrograms::Files MadePrograms::Headless::With(const std::string& header) const
{
    Files files = Parts;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (HeaderAt[i] == std::string::npos)
            continue;
        files[i].Text.insert(HeaderAt[i], HeaderLine(header));
        files[i].CgLines.insert(files[i].CgLines.begin(), 0);
    }
    return files;
}

MadePrograms::Files MadePrograms::Get(const CgProgram& program, const std::function<Files()>& make)
{
    const std::string key = HashProgram(program);
    std::promise<std::shared_ptr<const Headless>> promise;
    Made made;
    bool isMaker = false;
    {
        const std::lock_guard lock(_mutex);
        const auto [entry, isNew] = _made.try_emplace(key);
        if (isNew)
            entry->second = promise.get_future().share();
        made = entry->second;
        isMaker = isNew;
    }
    if (!isMaker) {
        const std::shared_ptr<const Headless>& found = made.get();
        return found ? found->With(program.Header) : make();
    }
    std::shared_ptr<const Headless> result;
    try {
        Files files = make();
        std::size_t size = 0;
        for (const ProgramFile& file : files)
            size += file.Text.size() + file.CgLines.size() * sizeof(int);
        if (!files.empty()) {
            result = std::make_shared<const Headless>(std::move(files), program.Header);
            Keep(key, size);
        } else {
            Forget(key);
        }
    } catch (...) {
        Forget(key);
        promise.set_value(nullptr);
        throw;
    }
    promise.set_value(result);
    return result ? result->With(program.Header) : Files();
}

void MadePrograms::Keep(const std::string& key, std::size_t size)
{
    const std::lock_guard lock(_mutex);
    _kept.emplace_back(key, size);
    _size += size;
    while (_size > mostBytes) {
        _made.erase(_kept.front().first);
        _size -= _kept.front().second;
        _kept.pop_front();
    }
}

void MadePrograms::Forget(const std::string& key)
{
    const std::lock_guard lock(_mutex);
    _made.erase(key);
}

} // namespace Mox::Host
