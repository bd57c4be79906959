#pragma once

#include "mox/authoring/GuiNodeFactory.h"
#include "mox/nodefile/NodeFile.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

/// The factory of node types defined by files. The catalogue is read from the start of each file;
/// the rest is read when the first node of the type is created.
class GuiNodeFactoryLibrary : public Mox::Materials::GuiNodeFactory
{
public:
    GuiNodeFactoryLibrary();

    /// Thread-safe.
    /// @throws ShaderError also if the file of the type is invalid, with file, line and reason
    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string& typeName) override;

private:
    std::shared_ptr<const Mox::Host::NodeFile> Find(const std::string& typeName);

    std::map<std::string, std::string> _files;                               ///< file of each type
    std::mutex _mutex;                                                       ///< protects _read
    std::map<std::string, std::shared_ptr<const Mox::Host::NodeFile>> _read; ///< by type
};
