// As it comes, the run-time library ends a host that has no memory left, and leaves
// things behind when the DLL goes. Three mends stand here. First: to throw an exception
// it takes memory for the thread and makes a lock, and ends the process when it gets
// none; PrepareForLackOfMemory makes it take both while there is memory. Second: the
// slots for threads' own values, which it never gives back, are given back when the DLL
// goes. Third: its handler for uncaught exceptions is replaced by a small one.
#include "com/LackOfMemory.h"

#include "com/Boundary.h"

#include <windows.h>

#include <algorithm>
#include <array>
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

// The thread library takes a slot for each thread's own values when it is first
// used and never gives it back. A process has 1,088 of them, and the run-time
// library ends it when there is none: so it would end with the 1,083rd load of this
// DLL. What is taken through these two pointers, which stand in place of the
// system's import pointers, is given back when the DLL goes.
namespace {

constexpr std::size_t kMostSlots = 8;
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): taken before anything is constructed
std::array<DWORD, kMostSlots> slots{};
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): likewise
std::size_t slotCount = 0;

template <class Function>
Function SystemFunction(const char* name) noexcept {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

DWORD WINAPI TakeSlot() {
    const DWORD slot = SystemFunction<DWORD(WINAPI*)()>("TlsAlloc")();
    if (slot != TLS_OUT_OF_INDEXES && slotCount < slots.size()) {
        slots[slotCount++] = slot;
    }
    return slot;
}

BOOL WINAPI GiveSlotBack(DWORD slot) {
    const auto end = slots.begin() + slotCount;
    const auto found = std::find(slots.begin(), end, slot);
    if (found != end) {
        *found = slots[--slotCount];
    }
    return SystemFunction<BOOL(WINAPI*)(DWORD)>("TlsFree")(slot);
}

void GiveAllSlotsBack() {
    while (slotCount > 0) {
        GiveSlotBack(slots[slotCount - 1]);
    }
}

// What is handed to atexit first is called last: whatever else ends may still use
// its slot.
constexpr int kFirstOfAll = 101;
[[gnu::constructor(kFirstOfAll)]] void GiveSlotsBackAtTheEnd() {
    static_cast<void>(std::atexit(&GiveAllSlotsBack)); // without it the slots stay taken, no more
}

} // namespace

#ifdef _WIN64
#define TAM_IMPORT(name, bytes) asm("__imp_" name)
#else
#define TAM_IMPORT(name, bytes) asm("__imp__" name "@" bytes)
#endif
extern "C" {
// The names that the compiler gives to imports.
// NOLINTBEGIN(readability-identifier-naming, cppcoreguidelines-avoid-non-const-global-variables)
extern DWORD(WINAPI* const importOfTlsAlloc)() TAM_IMPORT("TlsAlloc", "0");
extern BOOL(WINAPI* const importOfTlsFree)(DWORD) TAM_IMPORT("TlsFree", "4");
DWORD(WINAPI* const importOfTlsAlloc)() = &TakeSlot;
BOOL(WINAPI* const importOfTlsFree)(DWORD) = &GiveSlotBack;
// NOLINTEND(readability-identifier-naming, cppcoreguidelines-avoid-non-const-global-variables)
}
#undef TAM_IMPORT

// The run-time library's own handler writes the exception's type to the error output
// that a host does not have, and brings a demangler for it, a twentieth of the DLL.
// This one stands in its place: the linker takes the first that it finds.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming): the library's name
namespace __gnu_cxx {
void __verbose_terminate_handler() {
    std::abort();
}
} // namespace __gnu_cxx
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
