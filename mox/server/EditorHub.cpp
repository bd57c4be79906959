#include "mox/server/EditorHub.h"

#include "mox/host/HostError.h"

#include <string>
#include <utility>

namespace Mox::Host {

EditorHub::EditorHub(EditorSession& session, Executor executor)
    : _session(session), _executor(std::move(executor))
{}

std::size_t EditorHub::Add(std::shared_ptr<EditorPage> page)
{
    _pages.emplace(_nextNumber, std::move(page));
    return _nextNumber++;
}

void EditorHub::Remove(std::size_t number)
{
    _pages.erase(number);
}

bool EditorHub::Handle(std::size_t number, std::string_view message, std::string_view bytes,
                       bool mayWait)
{
    EditorAnswer answer = _session.Handle(number, message, bytes);
    if (!answer.Notice.empty())
        Notify(std::move(answer.Notice), number);
    if (answer.Job && mayWait) {
        StartJob(number, std::move(*answer.Job));
        return true;
    }
    if (answer.Job) {
        const HostError reason({}, "too many requests from this page are still unanswered");
        answer.Reply = answer.Job->Refuse(reason).Text;
    }
    _pages.at(number)->Send(
        std::make_shared<const MessageFrame>(MakeFrame(std::move(answer.Reply))));
    return false;
}

void EditorHub::LookAtFile()
{
    std::string notice = _session.LookAtFile();
    if (!notice.empty())
        Notify(std::move(notice), 0);
}

void EditorHub::EndPages()
{
    for (const auto& [number, page] : _pages)
        page->End();
}

void EditorHub::Notify(std::string notice, std::size_t except)
{
    const auto frame = std::make_shared<const MessageFrame>(MakeFrame(std::move(notice)));
    for (const auto& [number, page] : _pages) {
        if (number != except)
            page->Send(frame);
    }
}

void EditorHub::StartJob(std::size_t number, EditorJob job)
{
    _jobs.Add([this, number, job = std::move(job)] {
        auto reply = std::make_shared<EditorReply>(job.Run());
        _executor([this, number, reply] { Finish(number, std::move(*reply)); });
    });
}

void EditorHub::Finish(std::size_t number, EditorReply reply)
{
    const auto page = _pages.find(number);
    if (page == _pages.end()) // the page has been closed
        return;
    page->second->FinishJob(
        std::make_shared<const MessageFrame>(MakeFrame(std::move(reply.Text), reply.Bytes)));
}

} // namespace Mox::Host
