#include "core/KeyOrder.h"

#include "core/MakeRoom.h"
#include "core/RunTimeError.h"

#include <algorithm>
#include <utility>

namespace tam {

namespace {

std::ptrdiff_t Offset(std::size_t position) {
    return static_cast<std::ptrdiff_t>(position);
}

} // namespace

std::size_t KeyOrder::SlotAt(std::size_t position) const {
    if (position >= order_.size()) {
        throw RunTimeError(RunTime::Subscript);
    }
    Settle();
    return order_[position];
}

std::optional<std::size_t> KeyOrder::SlotOf(std::wstring_view key) const {
    const auto found = slotOfKey_.find(key);
    return found != slotOfKey_.end() ? std::optional(found->second) : std::nullopt;
}

std::size_t KeyOrder::PositionOfSlot(std::size_t slot) const noexcept {
    Settle();
    // From both ends: an order that is turned round asks for the last one each time.
    std::size_t low = 0;
    std::size_t high = order_.size();
    while (low < high) {
        if (order_[low] == slot) {
            return low;
        }
        ++low;
        --high;
        if (order_[high] == slot) {
            return high;
        }
    }
    return order_.size();
}

void KeyOrder::Add(std::wstring_view key) {
    Settle();
    MakeRoom(entries_);
    MakeRoom(order_);
    const std::size_t slot = order_.size();
    const auto [entry, isNew] = slotOfKey_.try_emplace(std::wstring(key), slot);
    if (!isNew) {
        throw RunTimeError(RunTime::DuplicateKey);
    }
    entries_.push_back(&*entry);
    order_.push_back(slot);
}

std::size_t KeyOrder::Erase(std::size_t position) {
    const std::size_t slot = SlotAt(position);
    const std::size_t last = order_.size() - 1;
    slotOfKey_.erase(entries_[slot]->first);
    order_.erase(order_.begin() + Offset(position));
    if (slot != last) {
        order_[PositionOfSlot(last)] = slot;
        entries_[slot] = entries_[last];
        entries_[slot]->second = slot;
    }
    entries_.pop_back();
    return slot;
}

void KeyOrder::Bring(std::size_t slot, std::size_t position) {
    if (arranging_ && position == arranging_->first.size() && !arranging_->isFirst[slot]) {
        arranging_->first.push_back(slot);
        arranging_->isFirst[slot] = true;
        return;
    }
    if (SlotAt(position) == slot) {
        return;
    }
    // One shift of what lies between.
    const auto from = order_.begin() + Offset(PositionOfSlot(slot));
    const auto to = order_.begin() + Offset(position);
    if (to < from) {
        std::rotate(to, from, from + 1);
    } else {
        std::rotate(from, from + 1, to + 1);
    }
}

void KeyOrder::BeginArranging() {
    Settle();
    Arranging arranging{{}, std::vector<bool>(order_.size())};
    arranging.first.reserve(order_.size());
    arranging_ = std::move(arranging);
}

void KeyOrder::Settle() const noexcept {
    if (!arranging_) {
        return;
    }
    for (const std::size_t slot : order_) {
        if (!arranging_->isFirst[slot]) {
            arranging_->first.push_back(slot); // there is room for all
        }
    }
    order_.swap(arranging_->first);
    arranging_.reset();
}

} // namespace tam
