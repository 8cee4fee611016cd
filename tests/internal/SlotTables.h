#pragma once

#include <windows.h>

#include <ostream>
#include <string>
#include <vector>

// The members of each interface between the component and its hosts in the
// order of their slots, as the hosts know them.

namespace internal_tests {

struct SlotCase {
    /// Such as "IInput"; with "Input" or "Output" after it where both have the interface.
    std::string place;
    const IID* iid = nullptr;
    /// From 7, the first after IDispatch.
    unsigned slot = 0;
    std::wstring name;
    /// Such as "put Path(text)".
    std::wstring signature;
    /// Handed to the inner object and nothing else.
    bool isForwarded = true;

    std::string Title() const;
};
inline void PrintTo(const SlotCase& one, std::ostream* out) {
    *out << one.Title();
}

/// Every slot of every interface.
const std::vector<SlotCase>& AllSlots();
/// Those that only forward.
std::vector<SlotCase> ForwardedSlots();

} // namespace internal_tests
