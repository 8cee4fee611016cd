#pragma once

namespace tam {

/// Lets the host's message loop run once: every message that waits is
/// dispatched. Long loops call it once per item, so that the host stays alive.
void YieldToHost();

} // namespace tam
