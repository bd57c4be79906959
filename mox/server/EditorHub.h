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

/// A page that is connected.
class EditorPage
{
public:
    virtual ~EditorPage() = default;

    virtual void Send(std::shared_ptr<const MessageFrame> frame) = 0;

    /// Sends the answer of a job.
    virtual void FinishJob(std::shared_ptr<const MessageFrame> frame) = 0;

    /// The server ends.
    virtual void End() = 0;
};

/// Brings messages of pages to the session and what it says to the pages. Jobs are done on a thread
/// of their own, one after the other; all else happens on the thread that calls.
class EditorHub
{
public:
    /// Lets a function be called on the thread that calls the hub; may be called from any thread.
    using Executor = std::function<void(std::function<void()>)>;

    /// @param session must outlive the object
    EditorHub(EditorSession& session, Executor executor);

    /// @returns the number of the page
    std::size_t Add(std::shared_ptr<EditorPage> page);
    void Remove(std::size_t number);

    std::size_t PageCount() const { return _pages.size(); }

    /// @param bytes that go along with the message
    /// @returns whether a job gives the answer
    bool Handle(std::size_t number, std::string_view message, std::string_view bytes);

    /// Tells the pages if the file has another content than at the last call.
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
