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

/// The result of handling a message.
struct EditorAnswer
{
    std::string Reply;            ///< JSON for the sender; empty if the job produces the reply
    std::string Notice;           ///< JSON for all other clients; empty if there is nothing to
                                  ///< report
    std::optional<EditorJob> Job; ///< remaining work, to be run later
};

/// Lets several clients edit one document: it receives messages and returns answers as values.
/// docs/json.md lists the messages. The class uses neither sockets nor threads: jobs may run on
/// other threads, but everything else must be called from one thread.
///
/// A client is a window, identified by a number that the session's host chooses. All clients share
/// one document and one history.
class EditorSession
{
public:
    /// @throws HostError as EditedDocument does
    EditorSession(const std::filesystem::path& file, EditorServices services);

    /// Executes a message. It never throws anything but std::bad_alloc, whatever the message
    /// contains; the reply states what was refused. Every change that a reply acknowledges is in
    /// the journal.
    /// @param bytes binary data sent with the message, such as a texture
    EditorAnswer Handle(std::size_t client, std::string_view message, std::string_view bytes = {});

    /// Returns a notice for all clients if the content of the file has changed since the last call,
    /// otherwise an empty string.
    std::string LookAtFile();

    const EditedDocument& Document() const { return _document; }

private:
    struct Request;
    struct Command;

    void Dispatch(const Request& request, EditorAnswer& answer, Json& reply);
    void Publish(const ChangedRecords& records, EditorAnswer& answer, Json& reply);
    void Replace(EditorAnswer& answer, Json& reply);
    std::string FormatAnswer(Json json) const;
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
    std::shared_ptr<std::atomic<std::uint64_t>> _revision; ///< shared with the jobs
    std::optional<DocumentSnapshot> _snapshot;             ///< the most recent one
    std::weak_ptr<const std::string> _meshFile;            ///< mesh that a job is reading or
                                                           ///< waiting to read
    std::string _seenFile; ///< content of the file, or why it was unreadable, at the last notice
};

} // namespace Mox::Host
