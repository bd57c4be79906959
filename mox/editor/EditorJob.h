#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/editor/EditorServices.h"
#include "mox/json/JsonText.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Mox::Host {

/// The state of a document at one revision, for work that runs while the document changes.
class DocumentSnapshot
{
public:
    /// @param document as it was at the revision; all snapshots of one revision share it
    /// @param current revision of the document, which may grow at any time
    DocumentSnapshot(std::shared_ptr<const MaterialDocument> document, std::uint64_t revision,
                     std::shared_ptr<const std::atomic<std::uint64_t>> current)
        : Revision(revision), _document(std::move(document)), _current(std::move(current))
    {}

    /// For work that needs no document, so that it is never out of date.
    static DocumentSnapshot Lasting(std::uint64_t revision)
    {
        return {std::make_shared<const MaterialDocument>(), revision,
                std::make_shared<const std::atomic<std::uint64_t>>(revision)};
    }

    const MaterialDocument& Document() const { return *_document; }

    /// Whether the document has changed since.
    bool IsOutOfDate() const { return *_current != Revision; }

    std::uint64_t Revision;

private:
    std::shared_ptr<const MaterialDocument> _document;
    std::shared_ptr<const std::atomic<std::uint64_t>> _current;
};

/// The answer of an editor to one message.
struct EditorReply
{
    std::string Text;                ///< JSON
    std::vector<std::uint8_t> Bytes; ///< of a picture, in the order of Picture, a texture or a mesh
};

/// Work that takes long: building programs, checking, drawing. Run may be called on any thread, as
/// a job does not refer to the session. A job whose document has changed in the meantime is
/// dropped: it does nothing and its reply says so. Run throws nothing: whatever a job throws
/// becomes its reply.
class EditorJob
{
public:
    /// @param work adds its results to the reply, and may stop if the snapshot is out of date
    using Work = std::function<void(const DocumentSnapshot&, Json& reply, EditorReply& answer)>;

    EditorJob(DocumentSnapshot snapshot, Json id, Work work)
        : _snapshot(std::move(snapshot)), _id(std::move(id)), _work(std::move(work))
    {}

    bool IsOutOfDate() const { return _snapshot.IsOutOfDate(); }

    /// Call it once.
    EditorReply Run() const;

    /// The reply if it is not run, or has failed.
    EditorReply Refuse(const HostError& reason) const;

private:
    DocumentSnapshot _snapshot;
    Json _id;
    Work _work;
};

/// Finds the problems of a material.
EditorJob::Work FindProblems(const EditorServices& services, const std::string& file);

/// Builds its programs for some targets.
EditorJob::Work CompilePrograms(const EditorServices& services, const std::string& file,
                                const std::set<std::string>& targets);

/// Draws it or one of its nodes.
EditorJob::Work DrawPicture(const EditorServices& services, const PictureRequest& request);

/// Loads the texture of one of its texture bindings.
EditorJob::Work LoadTexture(const EditorServices& services, const std::string& tag,
                            const std::string& sampler);

/// Reads a mesh.
/// @param name of its file; empty for the mesh of the host
EditorJob::Work LoadMesh(const EditorServices& services, const std::string& name,
                         std::shared_ptr<const std::string> bytes);

/// Compares it with what its file held when the job was made.
/// @param file name, for messages
EditorJob::Work CompareWithText(const EditorServices& services, const std::string& file,
                                const std::string& text);

} // namespace Mox::Host
