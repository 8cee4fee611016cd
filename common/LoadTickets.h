#pragma once

#include "core/RunTimeError.h"

#include <cstdint>

namespace tam {

/// Tells a load of an object that it is over. A load lets the host's messages be
/// handled, and one of them may begin another load of the same object. Each load
/// takes a number, its ticket, when it begins; only the last one counts. An earlier
/// one ends with an error, so what two loads read is never mixed.
class LoadTickets {
  public:
    using Ticket = std::uint32_t;

    /// Begins a load. One that is under way is over.
    Ticket Begin() noexcept { return ++last_; }
    bool IsLast(Ticket ticket) const noexcept { return ticket == last_; }
    /// Throws E_ABORT when the load is over; asked after each yield.
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
