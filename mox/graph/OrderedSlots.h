#pragma once

#include <cstddef>
#include <deque>
#include <iterator>
#include <optional>
#include <utility>

namespace Mox::Host {

/// Records under small numbers that stay theirs for life, whatever comes and goes beside them, and
/// in an order of their own. A record is detached first, which takes it out of the order alone and
/// can be taken back without fail, and released later, which frees its number.
template <class Record>
class OrderedSlots
{
public:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    /// Walks the attached records in order.
    class Iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Record;
        using difference_type = std::ptrdiff_t;
        using pointer = const Record*;
        using reference = const Record&;

        Iterator() = default;
        Iterator(const OrderedSlots& slots, std::size_t index) : _slots(&slots), _index(index) {}

        reference operator*() const { return (*_slots)[_index]; }
        pointer operator->() const { return &**this; }
        Iterator& operator++()
        {
            _index = _slots->Next(_index);
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator old = *this;
            ++*this;
            return old;
        }
        bool operator==(const Iterator& other) const { return _index == other._index; }

        std::size_t Index() const { return _index; }

    private:
        const OrderedSlots* _slots = nullptr;
        std::size_t _index = None;
    };

    OrderedSlots() = default;
    /// What is left behind is empty, and even that takes memory, so moving may fail; nothing has
    /// changed then.
    // NOLINTBEGIN(performance-noexcept-move-constructor)
    OrderedSlots(OrderedSlots&& other) { Swap(other); }
    OrderedSlots& operator=(OrderedSlots&& other)
    {
        OrderedSlots(std::move(other)).Swap(*this);
        return *this;
    }
    // NOLINTEND(performance-noexcept-move-constructor)
    ~OrderedSlots() = default;

    /// Keeps a record, detached, and gives its number.
    std::size_t Add(Record&& record)
    {
        if (_firstFree == None) {
            _slots.emplace_back(std::move(record));
            return _slots.size() - 1;
        }
        const std::size_t index = _firstFree;
        Slot& slot = _slots[index];
        slot.Content.emplace(std::move(record));
        _firstFree = slot.Next;
        slot.Next = None;
        return index;
    }

    /// Puts a detached record into the order, ahead of another one or at the end.
    void Attach(std::size_t index, std::size_t before) noexcept
    {
        const std::size_t previous = before == None ? _last : _slots[before].Previous;
        _slots[index].Previous = previous;
        _slots[index].Next = before;
        (previous == None ? _first : _slots[previous].Next) = index;
        (before == None ? _last : _slots[before].Previous) = index;
        ++_size;
    }

    void Detach(std::size_t index) noexcept
    {
        const auto [previous, next] = std::pair(_slots[index].Previous, _slots[index].Next);
        (previous == None ? _first : _slots[previous].Next) = next;
        (next == None ? _last : _slots[next].Previous) = previous;
        --_size;
    }

    /// Destroys a detached record; its number may go to another one.
    void Release(std::size_t index) noexcept
    {
        _slots[index].Content.reset();
        _slots[index].Next = _firstFree;
        _firstFree = index;
    }

    bool Holds(std::size_t index) const
    {
        return index < _slots.size() && _slots[index].Content.has_value();
    }

    const Record& operator[](std::size_t index) const { return *_slots[index].Content; }
    Record& operator[](std::size_t index) { return *_slots[index].Content; }

    /// The record behind an attached one, or None.
    std::size_t Next(std::size_t index) const { return _slots[index].Next; }

    Iterator begin() const { return Iterator(*this, _first); }
    Iterator end() const { return Iterator(*this, None); }
    std::size_t size() const { return _size; } ///< of the attached records

    /// All numbers in use are below this one: the size for an array with an entry for each.
    std::size_t IndexEnd() const { return _slots.size(); }

private:
    struct Slot
    {
        explicit Slot(Record&& record) : Content(std::move(record)) {}

        std::optional<Record> Content;
        std::size_t Previous = None;
        std::size_t Next = None; ///< of a free slot: the next free one
    };

    void Swap(OrderedSlots& other) noexcept
    {
        std::swap(_slots, other._slots);
        std::swap(_first, other._first);
        std::swap(_last, other._last);
        std::swap(_firstFree, other._firstFree);
        std::swap(_size, other._size);
    }

    std::deque<Slot> _slots;
    std::size_t _first = None;
    std::size_t _last = None;
    std::size_t _firstFree = None;
    std::size_t _size = 0;
};

} // namespace Mox::Host
