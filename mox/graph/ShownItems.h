#pragma once

#include "mox/document/OrderedSlots.h"

#include <cstddef>
#include <iterator>
#include <vector>

namespace Mox::Host {

/// The shown nodes or edges of a graph, in the order and with the indices of the document's
/// records. Valid until the next change.
template <class Record, class Item>
class ShownItems
{
public:
    class Iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using pointer = const Item*;
        using reference = const Item&;

        Iterator() = default;
        Iterator(const ShownItems& items, typename OrderedSlots<Record>::const_iterator record)
            : _items(items), _record(record)
        {
            Skip();
        }

        reference operator*() const { return _items[Index()]; }
        pointer operator->() const { return &**this; }
        Iterator& operator++()
        {
            ++_record;
            Skip();
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator old = *this;
            ++*this;
            return old;
        }
        bool operator==(const Iterator& other) const { return _record == other._record; }

        std::size_t Index() const { return _record.Index(); }

    private:
        void Skip()
        {
            while (_record != _items._records->end() && !_items.Holds(Index()))
                ++_record;
        }

        ShownItems _items;
        typename OrderedSlots<Record>::const_iterator _record;
    };

    ShownItems() = default;
    /// @param count number of shown items
    ShownItems(const OrderedSlots<Record>& records, const std::vector<Item>& items,
               std::size_t count)
        : _records(&records), _items(&items), _count(count)
    {}

    const Item& operator[](std::size_t index) const { return (*_items)[index]; }

    /// Whether there is a shown item with an index; accepts any index.
    bool Holds(std::size_t index) const
    {
        return _records->Holds(index) && (*_items)[index].IsShown();
    }

    Iterator begin() const { return {*this, _records->begin()}; }
    Iterator end() const { return {*this, _records->end()}; }

    std::size_t size() const { return _count; }
    bool empty() const { return _count == 0; }

    /// An upper bound of all indices: the size of an array with an entry for each.
    std::size_t IndexEnd() const { return _records->IndexEnd(); }

private:
    const OrderedSlots<Record>* _records = nullptr;
    const std::vector<Item>* _items = nullptr;
    std::size_t _count = 0;
};

} // namespace Mox::Host
