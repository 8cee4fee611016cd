#pragma once

#include "tests/fuzz/HeapBlocks.h"

#include <cstddef>

namespace component_fuzz {

/// What this process holds of the system.
struct Resources {
    HeapBlocks heap;
    /// Memory that is the process's alone.
    std::size_t privateBytes = 0;
    /// Handles of the kernel and graphics objects. Wine's own counts are always 0, so
    /// each is told there by the highest number of many made at once.
    std::size_t handles = 0;
    std::size_t graphics = 0;
    /// Windows of the thread with their children.
    std::size_t windows = 0;

    static Resources Now();
};

} // namespace component_fuzz
