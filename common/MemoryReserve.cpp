#include "common/MemoryReserve.h"

#include "com/Boundary.h"

#include <cstddef>
#include <cstdlib>
#include <cxxabi.h>
#include <new>
#include <utility>

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): nothing else reaches malloc
bool refusesOnce = false;

} // namespace

// The linker gives every use of malloc in this DLL, the run-time library's
// included, to the first of these, and the C library's own to the second.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming): the linker makes the names up.
extern "C" {
void* __real_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size);

void* __wrap_malloc(std::size_t size) {
    return std::exchange(refusesOnce, false) ? nullptr : __real_malloc(size);
}
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)

namespace tam {

void PrepareForLackOfMemory() noexcept {
    // The first exception makes what the run-time library keeps of a thread's
    // exceptions; without memory for that it would end the process.
    com::Attempt([] { throw std::bad_alloc(); });
    // When an exception finds no memory it is made in a reserve whose lock the
    // thread library makes at its first use, from memory. Failing in that
    // throws an exception, and so on until the stack is full.
    refusesOnce = true;
    void* const reserved = abi::__cxa_allocate_exception(sizeof(std::bad_alloc));
    abi::__cxa_free_exception(reserved);
}

bool PrepareThisThread() noexcept {
    // The run-time library ends the process when it finds no memory for what it
    // keeps of a thread, so it is asked only where there is plenty.
    constexpr std::size_t kPlenty = 64 * 1024;
    // Whether malloc has it is the question. Volatile: the pair looks needless to the compiler.
    // NOLINTBEGIN(cppcoreguidelines-no-malloc)
    void* volatile const room = std::malloc(kPlenty);
    std::free(room);
    // NOLINTEND(cppcoreguidelines-no-malloc)
    return room != nullptr && abi::__cxa_get_globals() != nullptr;
}

} // namespace tam
