#pragma once

#include "com/Enumerator.h"
#include "com/Owned.h"
#include "core/KeyedCollection.h"
#include "internal/InternalParent.h"

namespace tam {

/// The wrappers of one kind of point, one per inner point, in the inner
/// collection's order, each under its name.
template <class Wrapper, class Point>
class InternalItems {
  public:
    /// Wraps each point of the inner collection.
    template <class Collection>
    void Fill(const com::Ref<Collection>& inner, ITamInternalAppObject& parent) {
        com::CheckSet(inner.Get());
        WalkPoints<Point>(inner, [&](const com::Ref<Point>& point) {
            items_.Add(NameOf(point), Wrapper::Make(point, parent));
            return true;
        });
    }

    /// By name, else by the position that the text begins with. Never fails:
    /// nothing found, or a failure on the way, gives an empty reference.
    com::Ref<Wrapper> Find(BSTR index) const noexcept {
        com::Ref<Wrapper> result;
        com::Attempt([&] {
            if (const com::Owned<Wrapper>* found = items_.Lookup(com::View(index))) {
                result = *found;
            }
        });
        return result;
    }

    com::Ref<IUnknown> Enumerate() const { return com::EnumeratorOf<Point>(items_); }

  private:
    KeyedCollection<com::Owned<Wrapper>> items_;
};

} // namespace tam
