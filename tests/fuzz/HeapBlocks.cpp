#include "tests/fuzz/HeapBlocks.h"

#include "tests/support/ImportPatch.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <array>
#include <functional>
#include <new>
#include <unordered_map>
#include <utility>
#include <vector>

namespace component_fuzz {

namespace {

// The functions below all others: whatever a module calls, its own heap function or
// that of the C library, comes by one of these through the import of some library.
using Allocate = PVOID(WINAPI*)(PVOID heap, ULONG flags, SIZE_T bytes);
using Reallocate = PVOID(WINAPI*)(PVOID heap, ULONG flags, PVOID block, SIZE_T bytes);
using Free = ULONG(WINAPI*)(PVOID heap, ULONG flags, PVOID block);
using Destroy = PVOID(WINAPI*)(PVOID heap);

template <class F>
F Function(const char* name) {
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

struct System {
    Allocate allocate = Function<Allocate>("RtlAllocateHeap");
    Reallocate reallocate = Function<Reallocate>("RtlReAllocateHeap");
    Free free = Function<Free>("RtlFreeHeap");
    Destroy destroy = Function<Destroy>("RtlDestroyHeap");
    /// Where the count keeps its own blocks, which it does not see.
    HANDLE heap = HeapCreate(0, 0, 0);
};

const System& Original() {
    static const System system;
    return system;
}

/// Memory that is not counted.
template <class T>
struct Uncounted {
    using value_type = T;

    Uncounted() = default;
    template <class U>
    explicit(false) Uncounted(const Uncounted<U>&) noexcept {}

    T* allocate(std::size_t count) {
        void* const block = Original().allocate(Original().heap, 0, count * sizeof(T));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { Original().free(Original().heap, 0, block); }
    bool operator==(const Uncounted&) const = default;
};

/// The blocks that are in use, whichever thread took them.
class Table {
  public:
    struct Block {
        HANDLE heap;
        std::size_t bytes;
    };

    void Add(const void* place, const Block& block) {
        AcquireSRWLockExclusive(&lock_);
        if (const auto [old, isNew] = blocks_.try_emplace(place, block); !isNew) {
            bytes_ -= old->second.bytes; // given back where the count does not see it
            old->second = block;
        }
        bytes_ += block.bytes;
        ReleaseSRWLockExclusive(&lock_);
    }
    /// What the block was; no bytes when it was not counted.
    Block Remove(const void* place) {
        AcquireSRWLockExclusive(&lock_);
        Block removed{};
        if (const auto found = blocks_.find(place); found != blocks_.end()) {
            removed = found->second;
            bytes_ -= removed.bytes;
            blocks_.erase(found);
        }
        ReleaseSRWLockExclusive(&lock_);
        return removed;
    }
    void RemoveAllOf(HANDLE heap) {
        AcquireSRWLockExclusive(&lock_);
        std::erase_if(blocks_, [&](const auto& entry) {
            const bool isOfHeap = entry.second.heap == heap;
            bytes_ -= isOfHeap ? entry.second.bytes : 0;
            return isOfHeap;
        });
        ReleaseSRWLockExclusive(&lock_);
    }
    HeapBlocks Count() {
        AcquireSRWLockExclusive(&lock_);
        const HeapBlocks now{blocks_.size(), bytes_};
        ReleaseSRWLockExclusive(&lock_);
        return now;
    }

  private:
    SRWLOCK lock_ = SRWLOCK_INIT;
    std::unordered_map<const void*, Block, std::hash<const void*>, std::equal_to<>,
                       Uncounted<std::pair<const void* const, Block>>>
        blocks_;
    std::size_t bytes_ = 0;
};

/// Never destroyed: modules give blocks back until the process has ended.
Table& Blocks() {
    alignas(Table) static std::array<std::byte, sizeof(Table)> place;
    static Table* const table = new (place.data()) Table;
    return *table;
}

// What modules call instead.

PVOID WINAPI CountAllocate(PVOID heap, ULONG flags, SIZE_T bytes) {
    void* const block = Original().allocate(heap, flags, bytes);
    if (block != nullptr) {
        Blocks().Add(block, {heap, bytes});
    }
    return block;
}

PVOID WINAPI CountReallocate(PVOID heap, ULONG flags, PVOID block, SIZE_T bytes) {
    // Before the call: after it, the old place may be another thread's already.
    const Table::Block old = Blocks().Remove(block);
    void* const moved = Original().reallocate(heap, flags, block, bytes);
    if (moved != nullptr) {
        Blocks().Add(moved, {heap, bytes});
    } else if (old.heap != nullptr) {
        Blocks().Add(block, old);
    }
    return moved;
}

ULONG WINAPI CountFree(PVOID heap, ULONG flags, PVOID block) {
    Blocks().Remove(block);
    return Original().free(heap, flags, block);
}

PVOID WINAPI CountDestroy(PVOID heap) {
    Blocks().RemoveAllOf(heap);
    return Original().destroy(heap);
}

/// What stands in for the function of the system at this address; 0 for any other address.
ULONG_PTR ReplacementOf(ULONG_PTR function) {
    const auto address = [](auto* any) { return reinterpret_cast<ULONG_PTR>(any); };
    static const std::array replacements{
        std::pair(address(Original().allocate), address(&CountAllocate)),
        std::pair(address(Original().reallocate), address(&CountReallocate)),
        std::pair(address(Original().free), address(&CountFree)),
        std::pair(address(Original().destroy), address(&CountDestroy)),
    };
    const auto found = std::find_if(replacements.begin(), replacements.end(),
                                    [&](const auto& replacement) { return replacement.first == function; });
    return found == replacements.end() ? 0 : found->second;
}

std::vector<HMODULE> Modules() {
    std::vector<HMODULE> modules(1024);
    DWORD bytes = 0;
    EnumProcessModules(GetCurrentProcess(), modules.data(),
                       static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &bytes);
    modules.resize(std::min<std::size_t>(modules.size(), bytes / sizeof(HMODULE)));
    return modules;
}

} // namespace

HeapBlocks HeapBlocks::Now() {
    for (const HMODULE module : Modules()) {
        support::ForEachImport(module, [](ULONG_PTR* slot) {
            if (const ULONG_PTR replacement = ReplacementOf(*slot); replacement != 0) {
                support::WriteProtected(slot, replacement);
            }
        });
    }
    return Blocks().Count();
}

} // namespace component_fuzz
