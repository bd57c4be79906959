#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/interchange/InterchangeValue.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// Fills a material document with nodes and edges, node after node, and gives them names of their
/// own.
class MaterialBuilder
{
public:
    /// @param file as it is named in messages
    explicit MaterialBuilder(const std::string& file) { _document.File = file; }

    /// Adds a node. Its id is completed by a number if another node has it.
    /// @returns the id
    /// @throws HostError if there are too many nodes
    std::string Add(DocumentNode node);

    void Connect(const InterchangeValue& tail, const std::string& head, const std::string& port,
                 int line);

    /// A node with numbers that are locked into the program; equal numbers share one.
    /// @param id of a new node, as far as it is free
    InterchangeValue Constant(const std::vector<float>& numbers, const std::string& id, int line);

    /// The same as a node of its own.
    InterchangeValue Locked(const std::vector<float>& numbers, DocumentNode node);

    /// A node with numbers that the user of the material sets.
    /// @param name of the binding, completed by a number if another one has it
    InterchangeValue Parameter(const std::vector<float>& numbers, DocumentNode node,
                               const std::string& name);

    /// Gives a value as many components: one stands for all, further ones are 0 and a fourth is 1.
    InterchangeValue Resize(const InterchangeValue& value, int count, const std::string& id,
                            int line);

    /// A name that no binding has yet, made of one that someone chose.
    std::string BindingName(const std::string& wanted);

    void Bind(DocumentBinding binding) { _document.Bindings.push_back(std::move(binding)); }

    /// Removes nodes of a type that nothing reads, as they were made in case something does.
    void Prune(const std::string& type);

    /// The document itself, to set what has nothing to do with nodes.
    MaterialDocument& Document() { return _document; }

    static void Set(DocumentNode& node, const std::string& property,
                    Materials::GuiPropertyKind kind, const std::string& value);

    /// The same with the kind that the form of the value suggests: a truth value, a whole number, a
    /// number with a point or an exponent, or else a choice.
    static void Set(DocumentNode& node, const std::string& property, const std::string& value);

private:
    MaterialDocument _document;
    std::unordered_map<std::string, int> _ids; ///< with the last number that completed one
    std::unordered_map<std::string, int> _bindings;
    std::map<std::vector<float>, InterchangeValue> _constants;
};

} // namespace Mox::Host
