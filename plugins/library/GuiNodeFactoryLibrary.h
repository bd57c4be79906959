#pragma once

#include "mox/authoring/GuiNodeFactory.h"
#include "mox/nodefile/NodeFile.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

/// The factory of node types that are files. The catalogue comes from the beginnings of the files;
/// the rest of a file is read when the first node of its type is created.
class GuiNodeFactoryLibrary : public Mox::Materials::GuiNodeFactory
{
public:
    GuiNodeFactoryLibrary();

    /// May be called from several threads at a time.
    /// @throws ShaderError also if the file of the type is wrong; with file, line and reason
    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string& typeName) override;

private:
    std::shared_ptr<const Mox::Host::NodeFile> Find(const std::string& typeName);

    std::map<std::string, std::string> _files;                               ///< by type
    std::mutex _mutex;                                                       ///< of what follows
    std::map<std::string, std::shared_ptr<const Mox::Host::NodeFile>> _read; ///< by type
};
