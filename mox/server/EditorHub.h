#pragma once

#include "mox/editor/EditorSession.h"
#include "mox/server/JobThread.h"
#include "mox/server/MessageFrame.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string_view>

namespace Mox::Host {

/// A connected page.
class EditorPage
{
public:
    virtual ~EditorPage() = default;

    virtual void Send(std::shared_ptr<const MessageFrame> frame) = 0;

    /// Sends the answer of a finished job.
    virtual void FinishJob(std::shared_ptr<const MessageFrame> frame) = 0;

    /// Closes the connection because the server is shutting down.
    virtual void End() = 0;
};

/// Passes messages from pages to the session, and the session's answers and notices to the pages.
/// Jobs run one at a time on a separate thread; everything else runs on the calling thread.
class EditorHub
{
public:
    /// Schedules a function on the thread that uses the hub; may be called from any thread.
    using Executor = std::function<void(std::function<void()>)>;

    /// @param session must outlive the object
    EditorHub(EditorSession& session, Executor executor);

    /// @returns the number assigned to the page
    std::size_t Add(std::shared_ptr<EditorPage> page);
    void Remove(std::size_t number);

    std::size_t PageCount() const { return _pages.size(); }

    /// @param number of a page that was added and not removed
    /// @param bytes binary data sent with the message
    /// @param mayWait whether a job of the page may be queued; if not, it is refused
    /// @returns whether a job will send the answer later
    bool Handle(std::size_t number, std::string_view message, std::string_view bytes, bool mayWait);

    /// Notifies the pages if the content of the file has changed since the last call.
    void LookAtFile();

    void EndPages();

private:
    void Notify(std::string notice, std::size_t except);
    void StartJob(std::size_t number, EditorJob job);
    void Finish(std::size_t number, EditorReply reply);

    EditorSession& _session;
    Executor _executor;
    std::map<std::size_t, std::shared_ptr<EditorPage>> _pages;
    std::size_t _nextNumber = 1;
    JobThread _jobs;
};

} // namespace Mox::Host
