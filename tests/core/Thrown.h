#pragma once

#include "core/RunTimeError.h"

#include <cstdint>

namespace tam {

/// Number of the run-time error that a call ends with; 0 when it ends well.
template <class F>
std::int32_t ErrorOf(F&& call) {
    try {
        call();
    } catch (const RunTimeError& error) {
        return error.Number();
    }
    return 0;
}

constexpr std::int32_t kInvalidCall = 5;
constexpr std::int32_t kOverflow = 6;
constexpr std::int32_t kSubscript = 9;
constexpr std::int32_t kTypeMismatch = 13;
constexpr std::int32_t kDuplicateKey = 457;

} // namespace tam
