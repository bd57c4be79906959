#include "Material.h"

#include "Errors.h"
#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/editor/StateJson.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/interchange/ReadMaterial.h"
#include "mox/layout/MaterialLayout.h"

namespace Mox::Python {

using Materials::Compose;

Material::Material(std::shared_ptr<const Library> library, Host::MaterialDocument document,
                   std::filesystem::path file, std::string text, Host::ProblemList reading)
    : _library(std::move(library)),
      _graph(std::move(document), Host::NodeMaker(_library->Plugins())), _history(_graph),
      _resolver(_graph), _reading(std::move(reading)), _file(std::move(file)),
      _saved(std::move(text))
{
    if (!_file.empty())
        _savedState = _history.State();
    Resolve();
}

std::shared_ptr<Material> Material::Open(std::shared_ptr<const Library> library,
                                         const std::filesystem::path& file)
{
    std::string text = Host::ReadFile(file);
    Host::ProblemList problems;
    Host::MaterialDocument document = Host::ParseMaterial(file.string(), text, problems);
    // Saving must not overwrite a file in another format, so a converted material has no file.
    const bool isOwn = !Host::IsMaterialX(file, text);
    return std::make_shared<Material>(std::move(library), std::move(document),
                                      isOwn ? file : std::filesystem::path(),
                                      isOwn ? std::move(text) : std::string(), std::move(problems));
}

std::shared_ptr<Material> Material::Parse(std::shared_ptr<const Library> library,
                                          const std::string& text, const std::string& file)
{
    Host::ProblemList problems;
    Host::MaterialDocument document = Host::ParseMaterial(file, text, problems);
    return std::make_shared<Material>(std::move(library), std::move(document),
                                      std::filesystem::path(), std::string(), std::move(problems));
}

std::shared_ptr<Material> Material::FromState(std::shared_ptr<const Library> library,
                                              const Host::Json& state, const std::string& file)
{
    const std::string text =
        Host::FormatMaterialDocument(Host::ReadState(Host::JsonCursor(state, file)));
    Host::ProblemList problems;
    // Only reading the document checks rules that concern several records, such as unique ids.
    Host::MaterialDocument document = Host::ParseMaterialDocument(file, text, problems);
    return std::make_shared<Material>(std::move(library), std::move(document),
                                      std::filesystem::path(), std::string(), std::move(problems));
}

std::size_t Material::FindNode(const Host::MaterialGraph& graph, const std::string& id)
{
    const auto number = graph.FindNode(id);
    if (!number)
        throw StaleView(Host::Place(graph.Document().File, 0, id), "the material has no such node");
    return *number;
}

std::filesystem::path Material::File() const
{
    return Use([this](const auto&) { return _file; });
}

void Material::RequireComplete() const
{
    _reading.ThrowFirstError();
}

std::string Material::Text() const
{
    RequireComplete(); // otherwise anything that could not be read would be lost
    return Use([](const auto& graph) { return Host::FormatMaterialDocument(graph.Document()); });
}

bool Material::IsUnsaved() const
{
    return Use([this](const auto&) { return _savedState != _history.State(); });
}

std::string Material::UndoTitle() const
{
    return Use([this](const auto&) { return _history.UndoTitle(); });
}

std::string Material::RedoTitle() const
{
    return Use([this](const auto&) { return _history.RedoTitle(); });
}

Host::MaterialDocument Material::CopyDocument(const Host::MaterialGraph& graph) const
{
    Host::MaterialDocument document = graph.Document();
    if (!_file.empty())
        document.File = _file.string();
    return document;
}

Host::MaterialDocument Material::CopyDocument() const
{
    return Use([this](const auto& graph) { return CopyDocument(graph); });
}

OpenedCopy Material::OpenCopy() const
{
    Host::MaterialDocument document = CopyDocument();
    const py::gil_scoped_release release;
    const std::filesystem::path file = document.File;
    Host::ProblemList problems = _reading;
    Host::MaterialGraph graph =
        Host::OpenMaterial(std::move(document), _library->Plugins(), problems);
    return {std::move(graph), std::move(problems), file};
}

std::vector<Host::Problem> Material::Problems() const
{
    const auto kept = Use([this](const auto&) {
        return _checkedState == _history.State() ? std::optional(_problems) : std::nullopt;
    });
    return kept ? *kept : Check();
}

std::vector<Host::Problem> Material::Check() const
{
    const std::uint64_t state = Use([this](const auto&) { return _history.State(); });
    OpenedCopy copy = OpenCopy();
    return Use([&](const auto&) {
        Host::CheckMaterial(copy.Graph, copy.File, _library->Environment(),
                            &_library->TargetCheck(), copy.Problems);
        _problems = copy.Problems.Problems();
        _checkedState = state;
        return _problems;
    });
}

std::vector<Host::PluginBinding> Material::Bindings() const
{
    const OpenedCopy copy = OpenCopy();
    const py::gil_scoped_release release;
    if (copy.Problems.HasErrors())
        throw FaultyMaterial(copy.Problems);
    return Host::CreateBindings(copy.Graph);
}

bool Material::Apply(const Host::GraphChange& change, const std::string& title)
{
    return Use([&](const auto&) {
        const bool hasEffect = !_history.Do(change, {}, title).IsEmpty();
        Resolve();
        return hasEffect;
    });
}

bool Material::Undo()
{
    return Use([this](const auto&) {
        if (!_history.CanUndo())
            return false;
        _history.Undo();
        Resolve();
        return true;
    });
}

bool Material::Redo()
{
    return Use([this](const auto&) {
        if (!_history.CanRedo())
            return false;
        _history.Redo();
        Resolve();
        return true;
    });
}

bool Material::LayOut(const std::vector<std::string>& ids)
{
    return Apply(Use([&](const auto& graph) {
                     return Host::LayOutMaterial(graph, {ids, {}});
                 }),
                 "lay out");
}

void Material::Save(const std::optional<std::filesystem::path>& file, bool force)
{
    Use([&](const auto& graph) {
        const std::filesystem::path target = file ? *file : _file;
        RequireSaveable(target, !file, force);
        std::string text = Host::FormatMaterialDocument(graph.Document());
        Host::WriteIfChanged(target, text);
        _file = target;
        _saved = std::move(text);
        _savedState = _history.State();
    });
}

void Material::RequireSaveable(const std::filesystem::path& file, bool isOwn, bool force) const
{
    const Host::Place where(file.string());
    if (file.empty())
        throw Host::HostError(where, "the material has no file yet; use save_as()");
    for (const Host::Problem& problem : _reading.Problems()) {
        if (problem.Level == Host::Severity::Error) {
            throw Host::HostError(
                where,
                Compose("is not written, because the part that could not be read would be lost: ",
                        problem.Format()));
        }
    }
    if (force)
        return;
    if (isOwn && (!std::filesystem::exists(file) || Host::ReadFile(file) != _saved)) {
        throw Host::HostError(
            where, "has changed on disk since it was read, and these changes would be lost");
    }
    const std::string obstacle = Host::ObstacleToReplacing(file);
    if (!obstacle.empty())
        throw Host::HostError(where, obstacle);
}

void Material::Resolve()
{
    Host::ProblemList problems; // discarded; problems are computed again on request
    _resolver.Resolve(problems);
}

} // namespace Mox::Python
