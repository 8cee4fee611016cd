#include "AllocationFault.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int kNone = -1;

/// Allocations until the one that fails; kNone when no more is to fail.
int allocationsLeft = kNone;

/// Null when this allocation is to fail, or does.
void* Allocate(std::size_t size) noexcept {
    if (allocationsLeft >= 0 && allocationsLeft-- == 0) {
        return nullptr;
    }
    return std::malloc(size != 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
    if (void* block = Allocate(size)) {
        return block;
    }
    throw std::bad_alloc();
}

} // namespace

// The program's own operators, so that the standard library's use fails too. All
// of them but those for aligned types, which have a delete of their own: what
// one of them takes, the sanitizer wants given back to the same set.
void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
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
