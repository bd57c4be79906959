#pragma once

#include "mox/editor/EditorServices.h"
#include "mox/editor/EditorSession.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

/// The plug-ins and the environment of the build tree, Cg as the only target, and a painter that
/// paints every pixel in one colour, also that of the only texture, "grey". The node "slow" takes
/// 200 milliseconds, and "faulty" has a fault.
const Mox::Host::EditorServices& TestEditorServices();

/// The text of a document as another process would restore it if the one that edits it were killed
/// now.
std::string TextAfterKill(const std::filesystem::path& file);

/// What a client knows of a document by what it was told.
class EditorMirror
{
public:
    /// Takes the state out of a reply to "state", or of one that replaces the document.
    void TakeState(const Mox::Host::Json& reply);

    /// Takes what a reply or a notice says has changed, if it says so.
    void TakeChanges(const Mox::Host::Json& message);

    /// All that is known, in one order.
    std::string Text() const;

private:
    void TakeRecords(const Mox::Host::Json& part);
    void TakeOthers(const Mox::Host::Json& part);

    std::map<std::size_t, Mox::Host::Json> _nodes;
    std::map<std::size_t, Mox::Host::Json> _edges;
    std::map<std::size_t, Mox::Host::Json> _annotations;
    Mox::Host::Json _others;
};
