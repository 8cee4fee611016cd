#include "tests/package/MemoryFault.h"

#include <cstdlib>

namespace package {

namespace {

MemoryFault* current = nullptr;

} // namespace

MemoryFault::MemoryFault(HMODULE dll, int number, Kind kind)
    : number_(number)
    , kind_(kind)
    , malloc_(dll, "malloc", reinterpret_cast<const void*>(&MemoryFault::Malloc)) {
    current = this;
}

MemoryFault::~MemoryFault() {
    current = nullptr;
}

void* MemoryFault::Malloc(std::size_t size) {
    const int allocation = ++current->allocations_;
    const bool fails =
        current->kind_ == Kind::Once ? allocation == current->number_ : allocation >= current->number_;
    // This program's malloc is the DLL's: both are the system's run-time library.
    return fails ? nullptr : std::malloc(size);
}

} // namespace package
