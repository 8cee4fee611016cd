#pragma once

#include "com/Enumerator.h"
#include "com/Owned.h"
#include "com/Ref.h"
#include "core/CollectionKey.h"
#include "core/KeyedCollection.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// The ordered points of one kind, each under its name, and the two collection keys
/// that their owner gave.
template <class Point>
class PointItems {
  public:
    using Items = KeyedCollection<com::Owned<Point>>;

    long Count() const noexcept { return static_cast<long>(items_.Count()); }
    const std::wstring& GlobalKey() const noexcept { return globalKey_.Text(); }
    const std::wstring& ExtendedKey() const noexcept { return extendedKey_.Text(); }

    /// "Duplicate key" for a name that is present; nothing changes then.
    void Add(const std::wstring& name, const com::Ref<Point>& point) {
        ItemsChange();
        items_.Add(name, point);
    }

    /// By name, else by the 1-based position that the text begins with; empty
    /// when neither finds one.
    com::Ref<Point> Find(std::wstring_view index) const { return Found(items_.Lookup(index)); }
    com::Ref<Point> FindName(std::wstring_view name) const { return Found(items_.FindKey(name)); }
    /// Removes by name, else by position. "Invalid call" when there is none.
    void Remove(std::wstring_view index) {
        const com::Owned<Point>* found = items_.Lookup(index);
        if (found == nullptr) {
            throw RunTimeError(RunTime::InvalidCall);
        }
        ItemsChange();
        if (!items_.RemoveKey(index)) {
            items_.RemovePosition(items_.PositionOf(*found));
        }
    }
    /// Removes all after the first ones, the last one first.
    void KeepFirst(std::size_t count) {
        ItemsChange();
        while (items_.Count() > count) {
            items_.RemovePosition(items_.Count());
        }
    }
    void Clear() {
        ItemsChange();
        items_.Clear();
    }

    /// Gives every item the key. One that is added later has none until the next
    /// time, and one that was removed keeps what it has.
    void SetGlobalKey(NewCollectionKey key) noexcept {
        globalKey_.Set(std::move(key), items_,
                       [](const com::Owned<Point>& point, const SharedCollectionKey& shared) {
                           point->SetGlobalKeyUnder(shared);
                       });
    }
    void SetExtendedKey(NewCollectionKey key) noexcept {
        extendedKey_.Set(std::move(key), items_,
                         [](const com::Owned<Point>& point, const SharedCollectionKey& shared) {
                             point->SetExtendedKeyUnder(shared);
                         });
    }

    template <class I>
    com::Ref<IUnknown> Enumerate() const {
        return com::EnumeratorOf<I>(items_);
    }

    Items& All() noexcept { return items_; }
    const Items& All() const noexcept { return items_; }

  private:
    static com::Ref<Point> Found(const com::Owned<Point>* item) {
        return item != nullptr ? com::Ref<Point>(item->Get()) : com::Ref<Point>();
    }
    void ItemsChange() noexcept {
        globalKey_.ItemsChange();
        extendedKey_.ItemsChange();
    }

    CollectionKey globalKey_;
    CollectionKey extendedKey_;
    Items items_;
};

} // namespace tam
