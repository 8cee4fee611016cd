#pragma once

#include "core/Case.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tam {

/// The keys and the order of a keyed collection. Each key has a slot, a number
/// below Count under which the collection keeps the key's item; the order is a
/// list of slots. So moving an item moves numbers, and no key is looked at.
///
/// Letter case does not count in keys. A member that throws has changed nothing.
class KeyOrder {
  public:
    KeyOrder() = default;
    KeyOrder(KeyOrder&&) noexcept = default;
    KeyOrder& operator=(KeyOrder&&) noexcept = default;
    // The slots point to the map's entries.
    KeyOrder(const KeyOrder&) = delete;
    KeyOrder& operator=(const KeyOrder&) = delete;
    ~KeyOrder() = default;

    std::size_t Count() const noexcept { return order_.size(); }
    /// Positions are from 0 here. "Subscript out of range" past the end.
    std::size_t SlotAt(std::size_t position) const;
    /// For tests, as SlotAt.
    std::wstring_view KeyAt(std::size_t position) const { return entries_[SlotAt(position)]->first; }
    std::optional<std::size_t> SlotOf(std::wstring_view key) const;
    /// Position of a slot that is there. Walks the order.
    std::size_t PositionOfSlot(std::size_t slot) const noexcept;
    const std::vector<std::size_t>& Slots() const noexcept {
        Settle();
        return order_;
    }

    /// Adds at the end; the new key's slot is the old Count. "Duplicate key"
    /// when the key is present.
    void Add(std::wstring_view key);
    /// Removes a key and returns its slot. The key with the highest slot has
    /// that slot from then on.
    std::size_t Erase(std::size_t position);
    /// Takes a slot that is there out and puts it back so that it stands at the
    /// position. "Subscript out of range" when that is past the end.
    void Bring(std::size_t slot, std::size_t position);

    /// Makes Bring cheap for the positions 0, 1, 2 and so on: what lies between is not
    /// shifted each time, but put in its place once, by Settle. Whatever asks for the
    /// order or changes it in another way settles it, and from then on Bring shifts.
    void BeginArranging();
    void Settle() const noexcept;

  private:
    using SlotOfKey = std::unordered_map<std::wstring, std::size_t, FoldedHash, FoldedEqual>;
    struct Arranging {
        /// What was brought to the first positions, in its order. The others follow as
        /// they stand in the order so far.
        std::vector<std::size_t> first;
        /// By slot.
        std::vector<bool> isFirst;
    };

    SlotOfKey slotOfKey_;
    /// By slot: the key's entry in the map.
    std::vector<SlotOfKey::value_type*> entries_;
    // Settled by whoever asks.
    mutable std::vector<std::size_t> order_;
    mutable std::optional<Arranging> arranging_;
};

} // namespace tam
