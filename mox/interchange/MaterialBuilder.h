#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/interchange/InterchangeValue.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// Builds a material document node by node and assigns unique names.
class MaterialBuilder
{
public:
    /// @param file the name of the file, for messages
    explicit MaterialBuilder(const std::string& file) { _document.File = file; }

    /// Adds a node. A number is appended to its id if another node already has it.
    /// @returns the id
    /// @throws HostError if there are too many nodes
    std::string Add(DocumentNode node);

    void Connect(const InterchangeValue& tail, const std::string& head, const std::string& port,
                 int line);

    /// Returns a node whose numbers are compiled into the program; equal numbers share one node.
    /// @param id the id of a new node, made unique if necessary
    InterchangeValue Constant(const std::vector<float>& numbers, const std::string& id, int line);

    /// Like Constant, but always creates a new node.
    InterchangeValue Locked(const std::vector<float>& numbers, DocumentNode node);

    /// Creates a node whose numbers the user of the material sets.
    /// @param name the name of the binding, made unique by a number if necessary
    InterchangeValue Parameter(const std::vector<float>& numbers, DocumentNode node,
                               const std::string& name);

    /// Converts a value to the given number of components: a single component is broadcast;
    /// otherwise, missing components are 0 and a missing fourth component is 1.
    InterchangeValue Resize(const InterchangeValue& value, int count, const std::string& id,
                            int line);

    /// Makes a binding name unique, based on the given one.
    std::string BindingName(const std::string& wanted);

    void Bind(DocumentBinding binding) { _document.Bindings.push_back(std::move(binding)); }

    /// Removes unread nodes of a type whose nodes are created in advance.
    void Prune(const std::string& type);

    /// Returns the document, for settings that do not concern nodes.
    MaterialDocument& Document() { return _document; }

    static void Set(DocumentNode& node, const std::string& property,
                    Materials::GuiPropertyKind kind, const std::string& value);

    /// Sets a property whose type is derived from the format of the value: a boolean, an integer, a
    /// number with a decimal point or exponent, or a choice.
    static void Set(DocumentNode& node, const std::string& property, const std::string& value);

private:
    MaterialDocument _document;
    std::unordered_map<std::string, int> _ids; ///< used ids, each with the last number appended to
                                               ///< it
    std::unordered_map<std::string, int> _bindings;
    std::map<std::vector<float>, InterchangeValue> _constants;
};

} // namespace Mox::Host
