#pragma once

#include "tests/support/ImportPatch.h"

#include <windows.h>

#include <cstddef>

namespace package {

/// Lets one allocation of a DLL fail, or every one from there on.
class MemoryFault {
  public:
    enum class Kind { Once, ForEver };

    /// The first allocation is number 1.
    MemoryFault(HMODULE dll, int number, Kind kind);
    ~MemoryFault();
    MemoryFault(const MemoryFault&) = delete;
    MemoryFault& operator=(const MemoryFault&) = delete;

    bool HasFailed() const noexcept { return allocations_ >= number_; }
    /// True when the DLL takes its memory from what is replaced here.
    bool IsComplete() const noexcept { return malloc_.IsImported(); }

  private:
    static void* Malloc(std::size_t size);

    int number_;
    Kind kind_;
    int allocations_ = 0;
    support::ImportPatch malloc_;
};

} // namespace package
