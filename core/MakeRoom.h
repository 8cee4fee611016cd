#pragma once

#include <vector>

namespace tam {

/// Sees to it that the next push_back cannot fail. Grows by doubling, which
/// reserve(size() + 1) would not.
template <class T>
void MakeRoom(std::vector<T>& list) {
    if (list.size() == list.capacity()) {
        list.reserve(list.empty() ? 8 : list.size() * 2);
    }
}

} // namespace tam
