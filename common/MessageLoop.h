#pragma once

namespace tam {

/// Lets the host's messages have a turn: those that wait are handled, and those
/// that come meanwhile are left for the next turn. Long loops call it once per
/// item, so that the host stays alive. Called by the handler of such a message it
/// does nothing, except in a message loop that the handler runs. When it returns, the
/// host may have done anything: the caller's own object may have lost its last reference.
void YieldToHost();

} // namespace tam
