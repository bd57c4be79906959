#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/NodeBuilder.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <map>
#include <set>
#include <string>

namespace Mox::Host {

/// Sets properties of one node as the library does for a user, and determines the resulting record.
///
/// A node is loaded from the old record and builds its ports; then the values are set, and it
/// builds its ports again. The only values added to the record are those that a node loaded from it
/// would not derive by itself.
class PropertyEdit
{
public:
    /// @param index of the record
    /// @param builder must outlive the edit
    PropertyEdit(const NodeBuilder& builder, std::size_t index, const DocumentNode& record);

    std::size_t Index() const { return _index; }

    /// The record; after Settle, the new record.
    const DocumentNode& Record() const { return _record; }

    /// The node with the values set so far, which determine its references.
    const GraphNode& Live() const { return _live; }

    /// Sets a property. A property unknown to the type is set in the record if the record has it.
    /// @throws HostError if the property does not accept the value
    void Set(const DocumentProperty& value);

    /// Whether Set has changed any values other than the host's own.
    bool HasChanged() const;

    /// Writes the host's own values to the record. Sufficient if nothing else has changed.
    /// @returns whether they have changed
    bool WriteHostValues();

    /// Clears all properties that refer to an id.
    void EmptyReferences(const std::string& id);

    /// Builds the ports and determines the new record.
    /// @returns the node loaded from the new record
    GraphNode Settle();

private:
    template <class IsWanted>
    bool TakeOver(IsWanted isWanted);

    std::set<std::string> DropSettled();
    bool IsSet(const Materials::GuiProperty& property) const;
    bool IsChanged(const std::string& name) const;
    void SetInRecord(const DocumentProperty& value);
    bool Write(const Materials::GuiProperty& property);

    const NodeBuilder& _builder;
    std::size_t _index;
    DocumentNode _record;
    bool _isRecordChanged = false; ///< by properties unknown to the type
    GraphNode _live;
    std::set<std::string> _leftOut; ///< properties of the old record that were omitted
    std::map<std::string, boost::shared_ptr<Materials::GuiProperty>> _before; ///< values before Set
};

} // namespace Mox::Host
