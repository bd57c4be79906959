#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Inserts, replaces or removes a record.
template <class Record>
struct RecordChange
{
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    std::size_t Index = None;      ///< index of the record
    std::optional<Record> Content; ///< the new record; empty to remove the record
    std::size_t Before = None;     ///< index of the record that follows it; None if it is the last
};

/// Records in an explicit order. The index of a record does not change while the record exists,
/// even if other records are added or removed. The indices of removed records are reused.
template <class Record>
class OrderedSlots
{
    static_assert(std::is_nothrow_move_constructible_v<Record> &&
                  std::is_nothrow_move_assignable_v<Record>);

    template <class Slots, class Item>
    class IteratorOver
    {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Record;
        using difference_type = std::ptrdiff_t;
        using pointer = Item*;
        using reference = Item&;

        IteratorOver() = default;
        IteratorOver(Slots& slots, std::size_t index) : _slots(&slots), _index(index) {}

        reference operator*() const { return (*_slots)[_index]; }
        pointer operator->() const { return &**this; }
        IteratorOver& operator++()
        {
            _index = _slots->Next(_index);
            return *this;
        }
        IteratorOver operator++(int)
        {
            IteratorOver old = *this;
            ++*this;
            return old;
        }
        IteratorOver& operator--()
        {
            _index = _index == None ? _slots->_records.Last : _slots->_slots[_index].Previous;
            return *this;
        }
        IteratorOver operator--(int)
        {
            IteratorOver old = *this;
            --*this;
            return old;
        }
        bool operator==(const IteratorOver& other) const { return _index == other._index; }

        std::size_t Index() const { return _index; }

    private:
        Slots* _slots = nullptr;
        std::size_t _index = None;
    };

public:
    static constexpr std::size_t None = RecordChange<Record>::None;

    using value_type = Record;
    using iterator = IteratorOver<OrderedSlots, Record>;
    using const_iterator = IteratorOver<const OrderedSlots, const Record>;

    OrderedSlots() = default;
    OrderedSlots(const OrderedSlots&) = default;
    OrderedSlots(OrderedSlots&& other) noexcept { Swap(other); }
    OrderedSlots& operator=(OrderedSlots other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~OrderedSlots() = default;

    /// Adds a record at the end.
    void push_back(Record record)
    {
        RecordChange<Record> change{ReserveIndex(), std::move(record), None};
        Exchange(change);
    }

    /// Returns the index for the next new record and allocates memory for it.
    std::size_t ReserveIndex()
    {
        if (_free.First == None) {
            _slots.emplace_back();
            Link(_free, _slots.size() - 1, None);
        }
        return _free.First;
    }

    /// Applies a change, and turns it into its inverse. A new record requires a reserved, unused
    /// index; other changes require the index of an existing record.
    void Exchange(RecordChange<Record>& change) noexcept
    {
        Slot& slot = _slots[change.Index];
        const std::size_t before = slot.Content ? slot.Next : None;
        Unlink(slot.Content ? _records : _free, change.Index);
        _size -= slot.Content ? 1 : 0;
        slot.Content.swap(change.Content);
        _size += slot.Content ? 1 : 0;
        if (slot.Content)
            Link(_records, change.Index, change.Before);
        else
            Link(_free, change.Index, _free.First);
        change.Before = before;
    }

    iterator erase(iterator record)
    {
        const std::size_t next = Next(record.Index());
        RecordChange<Record> change{record.Index(), std::nullopt, None};
        Exchange(change);
        return {*this, next};
    }

    void clear() { *this = OrderedSlots(); }

    bool Holds(std::size_t index) const
    {
        return index < _slots.size() && _slots[index].Content.has_value();
    }

    const Record& operator[](std::size_t index) const { return *_slots[index].Content; }
    Record& operator[](std::size_t index) { return *_slots[index].Content; }
    Record& back() { return (*this)[_records.Last]; }

    /// Returns the index of the record that follows, or None.
    std::size_t Next(std::size_t index) const { return _slots[index].Next; }

    iterator begin() { return {*this, _records.First}; }
    iterator end() { return {*this, None}; }
    const_iterator begin() const { return {*this, _records.First}; }
    const_iterator end() const { return {*this, None}; }
    std::size_t size() const { return _size; }
    bool empty() const { return _size == 0; }

    /// All indices are less than this value, so it is the size of an array with one entry per
    /// index.
    std::size_t IndexEnd() const { return _slots.size(); }

private:
    struct Slot
    {
        std::optional<Record> Content; ///< nothing if the index is unused
        std::size_t Previous = None;
        std::size_t Next = None;
    };

    /// The first and last slot of a chain: the records in order, or the unused indices.
    struct Chain
    {
        std::size_t First = None;
        std::size_t Last = None;
    };

    void Link(Chain& chain, std::size_t index, std::size_t before) noexcept
    {
        const std::size_t previous = before == None ? chain.Last : _slots[before].Previous;
        _slots[index].Previous = previous;
        _slots[index].Next = before;
        (previous == None ? chain.First : _slots[previous].Next) = index;
        (before == None ? chain.Last : _slots[before].Previous) = index;
    }

    void Unlink(Chain& chain, std::size_t index) noexcept
    {
        const auto [previous, next] = std::pair(_slots[index].Previous, _slots[index].Next);
        (previous == None ? chain.First : _slots[previous].Next) = next;
        (next == None ? chain.Last : _slots[next].Previous) = previous;
    }

    void Swap(OrderedSlots& other) noexcept
    {
        std::swap(_slots, other._slots);
        std::swap(_records, other._records);
        std::swap(_free, other._free);
        std::swap(_size, other._size);
    }

    std::vector<Slot> _slots;
    Chain _records;
    Chain _free;
    std::size_t _size = 0;
};

template <class Record, class Predicate>
void erase_if(OrderedSlots<Record>& records, Predicate predicate)
{
    for (auto record = records.begin(); record != records.end();)
        record = predicate(*record) ? records.erase(record) : std::next(record);
}

} // namespace Mox::Host
