#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <utility>
#include <vector>

namespace com {

/// An enumerator over the objects as they stand now. It keeps its own list, so
/// that a loop that removes items goes on over those that were there at its
/// start, and none that it still has to hand out can vanish.
Ref<IUnknown> MakeEnumerator(std::vector<Ref<IDispatch>> items);

/// The same from any range of references to objects with interface I.
template <class I, class Range>
Ref<IUnknown> EnumeratorOf(const Range& range) {
    std::vector<Ref<IDispatch>> items;
    items.reserve(std::size(range));
    for (const auto& item : range) {
        items.push_back(Ref<IDispatch>(static_cast<I*>(item.Get())));
    }
    return MakeEnumerator(std::move(items));
}

} // namespace com
