#include "AllocationFault.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int kNone = -1;

/// Allocations until the one that fails; kNone when no more is to fail.
int allocationsLeft = kNone;

} // namespace

// The program's own operators, so that the standard library's use fails too.
void* operator new(std::size_t size) {
    if (allocationsLeft >= 0 && allocationsLeft-- == 0) {
        throw std::bad_alloc();
    }
    if (void* block = std::malloc(size != 0 ? size : 1)) {
        return block;
    }
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace tam {

AllocationFault::AllocationFault(int n) noexcept {
    allocationsLeft = n;
}
AllocationFault::~AllocationFault() {
    allocationsLeft = kNone;
}
bool AllocationFault::HasHappened() const noexcept {
    return allocationsLeft == kNone;
}

} // namespace tam
