#include "tests/module/ShellPatch.h"

#include <cstring>
#include <stdexcept>

namespace modules {

namespace {

ShellPatch* current = nullptr;

template <class T>
T* At(HMODULE dll, ULONG_PTR offset) {
    return reinterpret_cast<T*>(reinterpret_cast<ULONG_PTR>(dll) + offset);
}

/// The import slot of a named function of a DLL; null when it imports none.
ULONG_PTR* ImportSlot(HMODULE dll, const char* function) {
    const auto* dos = At<IMAGE_DOS_HEADER>(dll, 0);
    const auto* nt = At<IMAGE_NT_HEADERS>(dll, static_cast<ULONG_PTR>(dos->e_lfanew));
    const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(dll, directory.VirtualAddress); library->Name != 0;
         ++library) {
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

std::string TextOf(LPCSTR text) {
    return text == nullptr ? "(none)" : text;
}

} // namespace

ShellPatch::ShellPatch(HMODULE dll) : slot_(ImportSlot(dll, "ShellExecuteA")) {
    if (slot_ == nullptr) {
        throw std::runtime_error("the component does not import the shell's open operation");
    }
    original_ = *slot_;
    current = this;
    Write(reinterpret_cast<ULONG_PTR>(&ShellPatch::Execute));
}

ShellPatch::~ShellPatch() {
    Write(original_);
    current = nullptr;
}

void ShellPatch::Write(ULONG_PTR function) {
    DWORD protection = 0;
    VirtualProtect(slot_, sizeof(*slot_), PAGE_READWRITE, &protection);
    *slot_ = function;
    VirtualProtect(slot_, sizeof(*slot_), protection, &protection);
}

HINSTANCE WINAPI ShellPatch::Execute(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR folder,
                                     INT show) {
    current->calls.push_back({owner, TextOf(verb), TextOf(file), TextOf(parameters), TextOf(folder), show});
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(current->answer));
}

} // namespace modules
