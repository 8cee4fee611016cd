#pragma once

#include "core/Unattended.h"

namespace tam {

/// True when nobody attends this process. Asks the environment, and takes no memory.
bool IsUnattended() noexcept;

/// Writes down what is not shown: to the debugger's output, and at the end of the
/// file that the environment names. A file that cannot be written is passed over: there is
/// nobody to tell.
void WriteUnshown(const Unshown& unshown) noexcept;

} // namespace tam
