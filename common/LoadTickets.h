#pragma once

#include "core/RunTimeError.h"

#include <cstdint>

namespace tam {

/// The loads of one object, of which the last one begun counts. Each has a ticket. A load lets the
/// host's messages be handled, and one of them may begin another load. What two
/// loads read is never mixed: the earlier one ends with an error.
class LoadTickets {
  public:
    using Ticket = std::uint32_t;

    /// Begins a load. One that is under way is over.
    Ticket Begin() noexcept { return ++last_; }
    bool IsLast(Ticket ticket) const noexcept { return ticket == last_; }
    /// Throws E_ABORT when the load is over; asked behind each yield.
    void Check(Ticket ticket) const {
        if (!IsLast(ticket)) {
            throw RunTimeError(kAborted, {}, kText);
        }
    }

  private:
    static constexpr auto kAborted = static_cast<std::int32_t>(0x80004004u);
    static constexpr const wchar_t* kText =
        L"The load was ended, because the object was loaded again or destroyed meanwhile";

    Ticket last_ = 0;
};

} // namespace tam
