#pragma once

#include "Convert.h"
#include "Views.h"
#include "mox/graph/GraphChange.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Python {

/// Collects the steps of one change to a material in JSON, so that they are validated by the rules
/// for changes from outside.
class Edit : public std::enable_shared_from_this<Edit>
{
public:
    using Texts = std::vector<std::pair<std::string, std::string>>;

    Edit(std::shared_ptr<Material> material, std::string title)
        : _material(std::move(material)), _title(std::move(title))
    {}

    /// Whether more steps can be added.
    bool IsOpen() const { return _isOpen; }

    /// @param id if empty, an unused one is derived from the type
    /// @param before id of the node to insert before; empty to append
    NodeView Add(const std::string& type, const std::optional<std::string>& id,
                 const std::vector<GivenValue>& values, const std::string& before);
    void Remove(const std::string& node);
    NodeView Rename(const std::string& node, const std::string& newId);

    /// @param replace removes an existing edge to the input
    void Connect(const PortView& tail, const PortView& head, bool replace);
    void Disconnect(const PortView& tail, const PortView& head);
    void Set(const std::string& node, const std::vector<GivenValue>& values);
    void SetDescription(const Texts& values) { SetPart("setDescription", values); }
    void SetRenderState(const Texts& values) { SetPart("setRenderState", values); }
    void SetBinding(const std::string& stream, const std::string& tag, const Texts& values);
    void RemoveBinding(const std::string& stream, const std::string& tag);

    /// The steps so far.
    /// @throws HostError naming a value that no document can hold
    Host::GraphChange Change() const;

    /// Finishes the edit and applies the change.
    /// @throws HostError as Change and Material::Apply do
    void Finish();

    /// Ends the edit without changing anything.
    void Discard() { _isOpen = false; }

private:
    void AddStep(Host::Json step);
    void SetPart(const char* name, const Texts& values);
    bool IsTaken(const std::string& id) const;
    std::string KindOf(const std::string& node, const GivenValue& value) const;
    Host::Json ToProperty(const std::string& node, const GivenValue& value) const;

    std::shared_ptr<Material> _material;
    std::string _title;
    bool _isOpen = true;
    Host::Json _steps = Host::Json::array();
    std::map<std::string, std::string> _added;   ///< node types, keyed by id
    std::map<std::string, std::string> _renamed; ///< current ids in the material, keyed by new id
};

} // namespace Mox::Python
