#pragma once

#include "core/RunTimeError.h"

#include <cstdint>

namespace tam {

/// The loads of one object, of which the last one begun counts. A load lets the
/// host's messages be handled, and one of them may begin another load. What two
/// loads read is never mixed: the earlier one ends with an error.
class LoadTurns {
  public:
    using Turn = std::uint32_t;

    /// Begins a load. One that is under way is over.
    Turn Begin() noexcept { return ++last_; }
    bool IsLast(Turn turn) const noexcept { return turn == last_; }
    /// Throws E_ABORT when the load is over; asked behind each yield.
    void Check(Turn turn) const {
        if (!IsLast(turn)) {
            throw RunTimeError(kAborted, {}, kText);
        }
    }

  private:
    static constexpr auto kAborted = static_cast<std::int32_t>(0x80004004u);
    static constexpr const wchar_t* kText =
        L"The load was ended, because the object was loaded again or destroyed meanwhile";

    Turn last_ = 0;
};

} // namespace tam
