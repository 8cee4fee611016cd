#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <functional>
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

/// Calls visit with each item that an enumerator still has, until it answers false. What
/// Next fails with is thrown.
void ForEachItem(IEnumVARIANT& items, const std::function<bool(Variant& item)>& visit);

} // namespace com
