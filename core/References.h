#pragma once

#include <cstddef>
#include <string_view>

namespace tam {

/// False for a reference of zeros, up to six of them, and for an empty one: they stand for
/// "no connection". Of wide and of narrow texts.
template <class Char>
constexpr bool LeadsToAnOutput(std::basic_string_view<Char> reference) {
    constexpr std::size_t kMostZeros = 6;
    return reference.size() > kMostZeros ||
           reference.find_first_not_of(static_cast<Char>('0')) != std::basic_string_view<Char>::npos;
}

} // namespace tam
