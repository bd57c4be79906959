#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/NodeBuilder.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <map>
#include <set>
#include <string>

namespace Mox::Host {

/// Sets properties of one node as the library does it for a user, and finds the record that
/// results.
///
/// A node is loaded from the old record and builds its ports; then the values are set, and it
/// builds its ports again. The record takes over what a node that is loaded from it would not
/// settle to the same value by itself, and nothing else.
class PropertyEdit
{
public:
    /// @param index number of the record
    /// @param builder must outlive the edit
    PropertyEdit(const NodeBuilder& builder, std::size_t index, const DocumentNode& record);

    std::size_t Index() const { return _index; }

    /// The record; after Settle, the new one.
    const DocumentNode& Record() const { return _record; }

    /// The node with the values that are set, for what it refers to.
    const GraphNode& Live() const { return _live; }

    /// Sets a property. One that the type does not know is set in the record, if it is there.
    /// @throws HostError if the property does not take the value
    void Set(const DocumentProperty& value);

    /// Whether values have changed by Set, but for those that the host alone keeps.
    bool HasChanged() const;

    /// Writes the host's own values to the record. Enough if nothing else has changed.
    /// @returns whether they have changed
    bool WriteHostValues();

    /// Empties all properties that refer to an id.
    void EmptyReferences(const std::string& id);

    /// Builds the ports and finds the new record.
    /// @returns the node that is loaded from the new record
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
    bool _isRecordChanged = false; ///< by what the type does not know
    GraphNode _live;
    std::set<std::string> _leftOut; ///< properties of the old record that were left out
    std::map<std::string, boost::shared_ptr<Materials::GuiProperty>> _before; ///< of those set
};

} // namespace Mox::Host
