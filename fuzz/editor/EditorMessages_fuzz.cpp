// Arbitrary messages of two clients to an editor, one per line: each client knows the document from
// the messages it receives, the journal contains the document, and undoing everything restores the
// initial state.

#include "mox/editor/EditorSession.h"
#include "tests/support/Claim.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestEditor.h"

#include <cstdint>
#include <string_view>

using namespace Mox::Host;

namespace {

constexpr int mostMessages = 20;
constexpr int mostJobs = 3;

const char* const document = R"(<material version="1"><nodes>
<node id="a" type="CoreConstant" version="0"/>
<node id="b" type="CoreMaths" version="0"/>
<node id="c" type="Surface" version="0"/>
</nodes><edges>
<edge tail="a" tailPort="read" head="b" headPort="in_value1"/>
<edge tail="b" tailPort="out_value" head="c" headPort="in_colour"/>
</edges></material>)";

class Clients
{
public:
    explicit Clients(EditorSession& session) : _session(session) { Begin(); }

    void Send(std::string_view message)
    {
        const std::size_t client = _count++ % 2;
        const EditorAnswer answer = _session.Handle(client, message);
        if (answer.Job) {
            if (_jobCount++ < mostJobs)
                Claim(Json::accept(answer.Job->Run().Text), "the reply of a job is JSON");
            return;
        }
        _mirrors[client].TakeChanges(Json::parse(answer.Reply));
        if (answer.Notice.empty())
            return;
        const Json notice = Json::parse(answer.Notice);
        _mirrors[1 - client].TakeChanges(notice);
        if (notice["event"] == "replaced")
            Begin();
    }

    void Check()
    {
        EditorMirror truth;
        truth.TakeState(State());
        for (const EditorMirror& mirror : _mirrors)
            ClaimEqual(mirror.Text(), truth.Text(), "a client knows what it was told");
        const std::string text = Text(_session);
        ClaimEqual(TextAfterKill(_session.Document().File()), text,
                   "the journal has what is not in the file");

        while (!_session.Document().UndoTitle().empty())
            Send(R"({"do": "undo"})");
        ClaimEqual(Text(_session), _start, "undoing everything restores the start");
    }

private:
    static std::string Text(const EditorSession& session)
    {
        return FormatMaterialDocument(session.Document().Graph().Document());
    }

    Json State() { return Json::parse(_session.Handle(0, R"({"do": "state"})").Reply); }

    void Begin()
    {
        const Json state = State();
        for (EditorMirror& mirror : _mirrors)
            mirror.TakeState(state);
        _start = Text(_session);
    }

    EditorSession& _session;
    EditorMirror _mirrors[2];
    std::string _start;
    std::size_t _count = 0;
    int _jobCount = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const TemporaryFolder folder;
    EditorSession session(folder.Write("m.xml", document), TestEditorServices());
    Clients clients(session);
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    for (int i = 0; i < mostMessages && !rest.empty(); ++i) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        clients.Send(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    clients.Check();
    return 0;
}
