#include "bench/ImportPatch.h"

#include <cstring>

namespace bench {

namespace {

template <class T>
T* At(HMODULE dll, ULONG_PTR offset) {
    return reinterpret_cast<T*>(reinterpret_cast<ULONG_PTR>(dll) + offset);
}

/// The first of a DLL's import tables, after the last of which is one without a
/// name. Null when it imports nothing.
IMAGE_IMPORT_DESCRIPTOR* ImportTables(HMODULE dll) {
    const auto* dos = At<IMAGE_DOS_HEADER>(dll, 0);
    const auto* nt = At<IMAGE_NT_HEADERS>(dll, static_cast<ULONG_PTR>(dos->e_lfanew));
    const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    return directory.VirtualAddress == 0 ? nullptr
                                         : At<IMAGE_IMPORT_DESCRIPTOR>(dll, directory.VirtualAddress);
}

/// The import slot of a named function of a DLL; null when it imports none.
ULONG_PTR* ImportSlot(HMODULE dll, const char* function) {
    for (auto* library = ImportTables(dll); library != nullptr && library->Name != 0; ++library) {
        const auto* names = At<IMAGE_THUNK_DATA>(dll, library->OriginalFirstThunk);
        auto* slots = At<ULONG_PTR>(dll, library->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            const bool byName = !IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal);
            if (byName &&
                std::strcmp(At<IMAGE_IMPORT_BY_NAME>(dll, names->u1.AddressOfData)->Name, function) == 0) {
                return slots;
            }
        }
    }
    return nullptr;
}

} // namespace

void ForEachImport(HMODULE dll, const std::function<void(ULONG_PTR* slot)>& each) {
    for (auto* library = ImportTables(dll); library != nullptr && library->Name != 0; ++library) {
        for (auto* slot = At<ULONG_PTR>(dll, library->FirstThunk); *slot != 0; ++slot) {
            each(slot);
        }
    }
}

void WriteProtected(ULONG_PTR* place, ULONG_PTR value) noexcept {
    DWORD protection = 0;
    VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &protection);
    *place = value;
    VirtualProtect(place, sizeof(*place), protection, &protection);
}

ImportPatch::ImportPatch(HMODULE dll, const char* function, const void* replacement)
    : slot_(ImportSlot(dll, function)) {
    if (slot_ != nullptr) {
        original_ = *slot_;
        WriteProtected(slot_, reinterpret_cast<ULONG_PTR>(replacement));
    }
}

ImportPatch::~ImportPatch() {
    if (slot_ != nullptr) {
        WriteProtected(slot_, original_);
    }
}

} // namespace bench
