#pragma once

#include "core/KeyOrder.h"
#include "core/MakeRoom.h"
#include "core/Numbers.h"
#include "core/RunTimeError.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tam {

/// Items in the order of their insertion, each under a key in which letter
/// case does not count. A look-up by key or position takes constant time. A
/// member that throws has changed nothing; pointers and references to items
/// last until the next change.
template <class T>
class KeyedCollection {
    // Items are moved into place when nothing may fail any more.
    static_assert(std::is_nothrow_move_constructible_v<T> && std::is_nothrow_move_assignable_v<T>);

  public:
    class Iterator;

    KeyedCollection() = default;
    KeyedCollection(KeyedCollection&&) noexcept = default;
    /// The old items end with `other`: what their ends call finds this
    /// collection whole.
    KeyedCollection& operator=(KeyedCollection other) noexcept {
        std::swap(order_, other.order_);
        std::swap(items_, other.items_);
        return *this;
    }
    ~KeyedCollection() = default;

    std::size_t Count() const noexcept { return order_.Count(); }

    /// Adds at the end. "Duplicate key" when the key is present.
    void Add(std::wstring_view key, T item) {
        MakeRoom(items_);
        order_.Add(key);
        items_.push_back(std::move(item));
    }

    /// Null when the key is absent.
    const T* FindKey(std::wstring_view key) const {
        const auto slot = order_.SlotOf(key);
        return slot ? &items_[*slot] : nullptr;
    }
    /// By 1-based position, rounded to the nearest, the even one of two. Null
    /// when that is out of range or NaN.
    const T* FindPosition(double oneBased) const {
        const double position = RoundToEven(oneBased);
        const bool isInRange = position >= 1 && position <= static_cast<double>(Count());
        return isInRange ? &ItemAt(static_cast<std::size_t>(position) - 1) : nullptr;
    }
    /// By key, else by the 1-based position that the text begins with. Null
    /// when neither finds one.
    const T* Lookup(std::wstring_view index) const {
        if (const T* found = FindKey(index)) {
            return found;
        }
        const std::size_t position = PositionIn(index, Count());
        return position != 0 ? &ItemAt(position - 1) : nullptr;
    }
    /// "Subscript out of range" past the end.
    const T& ItemAt(std::size_t zeroBased) const { return items_[order_.SlotAt(zeroBased)]; }
    /// The key as it was given to Add; for tests, which look at the keys by it. "Subscript out
    /// of range" past the end.
    std::wstring_view KeyAt(std::size_t zeroBased) const { return order_.KeyAt(zeroBased); }

    /// First 1-based position of an equal item; 0 when there is none. Walks
    /// the collection.
    std::size_t PositionOf(const T& item) const {
        const auto& slots = order_.Slots();
        const auto found =
            std::find_if(slots.begin(), slots.end(), [&](std::size_t slot) { return items_[slot] == item; });
        return found != slots.end() ? static_cast<std::size_t>(found - slots.begin()) + 1 : 0;
    }

    /// False when the key is absent.
    bool RemoveKey(std::wstring_view key) {
        const auto slot = order_.SlotOf(key);
        return slot && RemovePosition(order_.PositionOfSlot(*slot) + 1);
    }
    /// False when there is no such position.
    bool RemovePosition(std::size_t oneBased) {
        if (oneBased == 0 || oneBased > Count()) {
            return false;
        }
        const std::size_t slot = order_.Erase(oneBased - 1);
        // Ends last: what its end calls finds the collection whole.
        [[maybe_unused]] const T removed = std::exchange(items_[slot], std::move(items_.back()));
        items_.pop_back();
        return true;
    }
    /// Takes the item of a key out and puts it back so that it stands at the position.
    /// "Subscript out of range" when there is no such key or position.
    void Bring(std::wstring_view key, std::size_t toOneBased) {
        const auto slot = order_.SlotOf(key);
        if (!slot) {
            throw RunTimeError(RunTime::Subscript);
        }
        order_.Bring(*slot, toOneBased - 1);
    }
    /// As long as it lives, Bring is cheap for the positions 1, 2 and so on, until
    /// something else asks for the order.
    class Arranging {
      public:
        explicit Arranging(KeyedCollection& items) : items_(&items) { items_->order_.BeginArranging(); }
        Arranging(const Arranging&) = delete;
        Arranging& operator=(const Arranging&) = delete;
        ~Arranging() { items_->order_.Settle(); }

      private:
        KeyedCollection* items_;
    };
    void Clear() { *this = KeyedCollection(); }

    // In order. A walk during which items come or go ends after the item that
    // is then the last one.
    Iterator begin() const noexcept { return Iterator(*this, 0); }
    Iterator end() const noexcept { return Iterator(*this, std::numeric_limits<std::size_t>::max()); }
    std::size_t size() const noexcept { return Count(); }

  private:
    KeyOrder order_;
    /// By slot.
    std::vector<T> items_;
};

template <class T>
class KeyedCollection<T>::Iterator {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = const T*;
    using reference = const T&;

    Iterator() noexcept = default;
    Iterator(const KeyedCollection& owner, std::size_t index) noexcept : owner_(&owner), index_(index) {}

    const T& operator*() const { return owner_->ItemAt(index_); }
    const T* operator->() const { return &**this; }
    Iterator& operator++() noexcept {
        ++index_;
        return *this;
    }
    Iterator operator++(int) noexcept { return std::exchange(*this, Iterator(*owner_, index_ + 1)); }
    bool operator==(const Iterator& other) const noexcept {
        return IsAtEnd() ? other.IsAtEnd() : index_ == other.index_;
    }

  private:
    bool IsAtEnd() const noexcept { return owner_ == nullptr || index_ >= owner_->Count(); }

    const KeyedCollection* owner_ = nullptr;
    std::size_t index_ = 0;
};

} // namespace tam
