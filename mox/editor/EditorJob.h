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

/// A document at one revision, for work that runs while the document keeps changing.
class DocumentSnapshot
{
public:
    /// @param document as it was at the revision; all snapshots of one revision share it
    /// @param current revision of the document, which may increase at any time
    DocumentSnapshot(std::shared_ptr<const MaterialDocument> document, std::uint64_t revision,
                     std::shared_ptr<const std::atomic<std::uint64_t>> current)
        : Revision(revision), _document(std::move(document)), _current(std::move(current))
    {}

    /// For work that needs no document and therefore never goes out of date.
    static DocumentSnapshot Lasting(std::uint64_t revision)
    {
        return {std::make_shared<const MaterialDocument>(), revision,
                std::make_shared<const std::atomic<std::uint64_t>>(revision)};
    }

    const MaterialDocument& Document() const { return *_document; }

    /// Whether the document has changed since the snapshot was taken.
    bool IsOutOfDate() const { return *_current != Revision; }

    std::uint64_t Revision;

private:
    std::shared_ptr<const MaterialDocument> _document;
    std::shared_ptr<const std::atomic<std::uint64_t>> _current;
};

/// An editor's answer to one message.
struct EditorReply
{
    std::string Text;                ///< JSON
    std::vector<std::uint8_t> Bytes; ///< pixels of an image in the order of Picture, a texture or a
                                     ///< mesh
};

/// Long-running work: building programs, checking, drawing. A job does not refer to the session, so
/// Run may be called on any thread. If the document has changed in the meantime, the job is
/// dropped: it does nothing, and its reply is "outOfDate". Run does not throw; an exception becomes
/// the reply.
class EditorJob
{
public:
    /// @param work adds its results to the reply; it may stop early if the snapshot is out of date
    using Work = std::function<void(const DocumentSnapshot&, Json& reply, EditorReply& answer)>;

    EditorJob(DocumentSnapshot snapshot, Json id, Work work)
        : _snapshot(std::move(snapshot)), _id(std::move(id)), _work(std::move(work))
    {}

    bool IsOutOfDate() const { return _snapshot.IsOutOfDate(); }

    /// May be called only once.
    EditorReply Run() const;

    /// The reply for a job that is not run or has failed.
    EditorReply Refuse(const HostError& reason) const;

private:
    DocumentSnapshot _snapshot;
    Json _id;
    Work _work;
};

/// Lists the problems of a material.
EditorJob::Work FindProblems(const EditorServices& services, const std::string& file);

/// Builds the material's programs for the given targets.
EditorJob::Work CompilePrograms(const EditorServices& services, const std::string& file,
                                const std::set<std::string>& targets);

/// Renders the material or one of its nodes.
EditorJob::Work DrawPicture(const EditorServices& services, const PictureRequest& request);

/// Loads the texture of one of the material's texture bindings.
EditorJob::Work LoadTexture(const EditorServices& services, const std::string& tag,
                            const std::string& sampler);

/// Reads a mesh file.
/// @param name of the file; empty for the host's own mesh
EditorJob::Work LoadMesh(const EditorServices& services, const std::string& name,
                         std::shared_ptr<const std::string> bytes);

/// Compares the material with the content that its file had when the job was created.
/// @param file name, for messages
EditorJob::Work CompareWithText(const EditorServices& services, const std::string& file,
                                const std::string& text);

} // namespace Mox::Host
