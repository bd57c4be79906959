#pragma once

#include "mox/editor/EditedDocument.h"
#include "mox/editor/EditorJob.h"
#include "mox/editor/EditorServices.h"
#include "mox/json/JsonText.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The outcome of a message.
struct EditorAnswer
{
    std::string Reply;            ///< JSON for its sender; empty if the job produces the reply
    std::string Notice;           ///< JSON for all other clients; empty if there is none
    std::optional<EditorJob> Job; ///< the rest of the work
};

/// The editing of one document by all its clients: messages in, values out. docs/json.md lists the
/// messages. It uses neither sockets nor threads: jobs may run on other threads, everything else
/// must be called on one.
///
/// A client is a window and has a number, which the session's host chooses. All clients share one
/// document and one history.
class EditorSession
{
public:
    /// @throws HostError as EditedDocument does
    EditorSession(const std::filesystem::path& file, EditorServices services);

    /// Executes a message. Whatever it holds, nothing but std::bad_alloc is thrown: the reply says
    /// what is refused. What a reply acknowledges is in the journal.
    /// @param bytes sent along with the message, such as those of a texture
    EditorAnswer Handle(std::size_t client, std::string_view message, std::string_view bytes = {});

    /// A notice for all clients if the content of the file has changed since the last call, else an
    /// empty text.
    std::string LookAtFile();

    const EditedDocument& Document() const { return _document; }

private:
    struct Request;
    struct Command;

    void Dispatch(const Request& request, EditorAnswer& answer, Json& reply);
    void Publish(const ChangedRecords& records, EditorAnswer& answer, Json& reply);
    void Replace(EditorAnswer& answer, Json& reply);
    void AddStatus(Json& json) const;
    DocumentSnapshot TakeSnapshot();
    void RequirePainter(const Request& request) const;
    void StartJob(const Request& request, EditorJob::Work work, EditorAnswer& answer);

    void Apply(const Request& request, EditorAnswer& answer, Json& reply);
    void Undo(const Request& request, EditorAnswer& answer, Json& reply);
    void Redo(const Request& request, EditorAnswer& answer, Json& reply);
    void LayOut(const Request& request, EditorAnswer& answer, Json& reply);
    void Copy(const Request& request, EditorAnswer& answer, Json& reply);
    void Paste(const Request& request, EditorAnswer& answer, Json& reply);
    void GetState(const Request& request, EditorAnswer& answer, Json& reply);
    void GetText(const Request& request, EditorAnswer& answer, Json& reply);
    void GetCatalogue(const Request& request, EditorAnswer& answer, Json& reply);
    void Save(const Request& request, EditorAnswer& answer, Json& reply);
    void Reload(const Request& request, EditorAnswer& answer, Json& reply);
    void Restore(const Request& request, EditorAnswer& answer, Json& reply);
    void Discard(const Request& request, EditorAnswer& answer, Json& reply);
    void Check(const Request& request, EditorAnswer& answer, Json& reply);
    void Compile(const Request& request, EditorAnswer& answer, Json& reply);
    void Draw(const Request& request, EditorAnswer& answer, Json& reply);
    void PutTexture(const Request& request, EditorAnswer& answer, Json& reply);
    void GetTexture(const Request& request, EditorAnswer& answer, Json& reply);
    void GetMesh(const Request& request, EditorAnswer& answer, Json& reply);
    void Compare(const Request& request, EditorAnswer& answer, Json& reply);

    EditorServices _services;
    EditedDocument _document;
    std::shared_ptr<std::atomic<std::uint64_t>> _revision; ///< for the jobs
    std::optional<DocumentSnapshot> _snapshot;             ///< the last one
    std::weak_ptr<const std::string> _meshFile;            ///< one that a job is to read or reads
    std::string _seenFile; ///< content of the file at the last notice, or why it was unreadable
};

} // namespace Mox::Host
