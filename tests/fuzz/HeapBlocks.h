#pragma once

#include <cstddef>

namespace component_fuzz {

/// Blocks of memory that this process has taken from any heap, its own, that of
/// the C library and those of system libraries, and has not given back. They are
/// counted as they come and go: a walk over a heap may show a whole group of small
/// blocks as one.
struct HeapBlocks {
    std::size_t count = 0;
    std::size_t bytes = 0;

    /// The first call begins the count, for the modules that are loaded by then; a
    /// later one takes in those that came since. A block that was there before
    /// is not counted.
    static HeapBlocks Now();
};

} // namespace component_fuzz
