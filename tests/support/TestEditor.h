#pragma once

#include "mox/editor/EditorServices.h"
#include "mox/editor/EditorSession.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

/// The plug-ins and the environment of the build tree, Cg as the only target, and a painter that
/// fills images with a single colour. The only texture, "grey", is filled with the same colour.
/// Drawing the node "slow" takes 200 milliseconds, and drawing "faulty" throws std::logic_error.
const Mox::Host::EditorServices& TestEditorServices();

/// The document that another process would restore if the process that edits it were killed now.
std::string TextAfterKill(const std::filesystem::path& file);

/// A client's copy of a document, updated from messages.
class EditorMirror
{
public:
    /// Takes the state from a reply to "state", or from one that replaces the document.
    void TakeState(const Mox::Host::Json& reply);

    /// Applies the changes in a reply or notice, if it contains any.
    void TakeChanges(const Mox::Host::Json& message);

    /// Everything that is known, in a fixed order.
    std::string Text() const;

private:
    void TakeRecords(const Mox::Host::Json& part);
    void TakeOthers(const Mox::Host::Json& part);

    std::map<std::size_t, Mox::Host::Json> _nodes;
    std::map<std::size_t, Mox::Host::Json> _edges;
    std::map<std::size_t, Mox::Host::Json> _annotations;
    Mox::Host::Json _others;
};
