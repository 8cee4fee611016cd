#pragma once

#include "com/Enumerator.h"
#include "com/Owned.h"
#include "core/KeyedCollection.h"
#include "internal/ChannelLookUp.h"

namespace tam {

/// The points of a channel object of one kind, one for each inner point, in the
/// inner collection's order, each under its name.
template <class ChannelPoint, class Point>
class ChannelItems {
  public:
    /// Makes a point for each of the inner collection.
    template <class Collection>
    void Fill(const com::Ref<Collection>& inner, ITamInternalAppObject& owner) {
        com::CheckSet(inner.Get());
        WalkPoints<Point>(inner, [&](const com::Ref<Point>& point) {
            items_.Add(NameOf(point), ChannelPoint::Make(point, owner));
            return true;
        });
    }

    /// By name, else by the position that the text begins with. Never fails:
    /// nothing found, or a failure on the way, gives an empty reference.
    com::Ref<ChannelPoint> Find(BSTR index) const noexcept {
        com::Ref<ChannelPoint> result;
        com::Attempt([&] {
            if (const com::Owned<ChannelPoint>* found = items_.Lookup(com::View(index))) {
                result = *found;
            }
        });
        return result;
    }

    com::Ref<IUnknown> Enumerate() const { return com::EnumeratorOf<Point>(items_); }

  private:
    KeyedCollection<com::Owned<ChannelPoint>> items_;
};

} // namespace tam
