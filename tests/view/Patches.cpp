#include "tests/view/Patches.h"

#include <psapi.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace viewtest {

namespace {

using Code = std::vector<BYTE>;

template <class T>
void Append(Code& code, T value) {
    const auto* const bytes = reinterpret_cast<const BYTE*>(&value);
    code.insert(code.end(), bytes, bytes + sizeof value);
}

template <class T>
T ReadAt(HANDLE process, const BYTE* place) {
    T value{};
    EXPECT_TRUE(ReadProcessMemory(process, place, &value, sizeof value, nullptr))
        << "error " << GetLastError();
    return value;
}

std::string TextAt(HANDLE process, const BYTE* place) {
    std::string text;
    for (char c; (c = ReadAt<char>(process, place)) != '\0'; ++place) {
        text += c;
    }
    return text;
}

void WriteAt(HANDLE process, BYTE* place, const void* bytes, std::size_t size) {
    DWORD before = 0;
    EXPECT_TRUE(VirtualProtectEx(process, place, size, PAGE_EXECUTE_READWRITE, &before));
    EXPECT_TRUE(WriteProcessMemory(process, place, bytes, size, nullptr)) << "error " << GetLastError();
    FlushInstructionCache(process, place, size);
}

/// Where a DLL, or with an empty name the program itself, is in a process; null when it is not.
BYTE* ModuleOf(HANDLE process, const wchar_t* name) {
    std::array<HMODULE, 256> modules{};
    DWORD size = 0;
    EXPECT_TRUE(EnumProcessModules(process, modules.data(), sizeof modules, &size));
    for (std::size_t i = 0; i < size / sizeof(HMODULE); ++i) {
        wchar_t known[MAX_PATH] = {};
        GetModuleBaseNameW(process, modules.at(i), known, MAX_PATH);
        if (*name == L'\0' || lstrcmpiW(known, name) == 0) {
            return reinterpret_cast<BYTE*>(modules.at(i));
        }
    }
    return nullptr;
}

/// The place in a program at which the address of an imported function stands.
BYTE* ImportOf(HANDLE process, const std::string& function) {
    BYTE* const base = ModuleOf(process, L"");
    const auto dos = ReadAt<IMAGE_DOS_HEADER>(process, base);
    const auto headers = ReadAt<IMAGE_NT_HEADERS>(process, base + dos.e_lfanew);
    const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const BYTE* at = base + directory.VirtualAddress;; at += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
        const auto dll = ReadAt<IMAGE_IMPORT_DESCRIPTOR>(process, at);
        if (dll.Name == 0) {
            ADD_FAILURE() << "the program does not import " << function;
            return nullptr;
        }
        for (std::size_t i = 0;; ++i) {
            const auto name =
                ReadAt<ULONG_PTR>(process, base + dll.OriginalFirstThunk + i * sizeof(ULONG_PTR));
            if (name == 0) {
                break;
            }
            constexpr ULONG_PTR kByNumber = ULONG_PTR{1} << (sizeof(ULONG_PTR) * 8 - 1);
            if ((name & kByNumber) == 0 && TextAt(process, base + name + sizeof(WORD)) == function) {
                return base + dll.FirstThunk + i * sizeof(ULONG_PTR);
            }
        }
    }
}

/// A function of a DLL that both this program and the process have loaded; null when one has not.
/// It may stand in another DLL than the one that offers it.
BYTE* FunctionOf(HANDLE process, const wchar_t* dll, const char* name) {
    const auto* const function =
        reinterpret_cast<const BYTE*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(dll), name)));
    HMODULE own = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(function), &own);
    wchar_t file[MAX_PATH] = {};
    GetModuleBaseNameW(GetCurrentProcess(), own, file, MAX_PATH);
    BYTE* const base = function != nullptr && own != nullptr ? ModuleOf(process, file) : nullptr;
    return base != nullptr ? base + (function - reinterpret_cast<const BYTE*>(own)) : nullptr;
}

/// Has the process load a DLL for good.
void Load(HANDLE process, const wchar_t* dll) {
    const std::size_t size = (std::wcslen(dll) + 1) * sizeof(wchar_t);
    const RemoteMemory name(process, size);
    name.Write(dll, size);
    // A system DLL that each program has is at one place in all of them.
    const auto load = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW")));
    const HANDLE thread = CreateRemoteThread(process, nullptr, 0, load, name.At(), 0, nullptr);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread, INFINITE));
    CloseHandle(thread);
}

} // namespace

void ChooseHighContrast(const Viewer& viewer) {
    const HANDLE process = viewer.Process();
    BYTE* const slot = ImportOf(process, "SystemParametersInfoW");
    if (slot == nullptr) {
        return;
    }
    const auto system = ReadAt<ULONG_PTR>(process, slot);
    // Asked for SPI_GETHIGHCONTRAST, 0x42, it sets dwFlags to HCF_HIGHCONTRASTON; else it is the system's.
#ifdef _WIN64
    Code code = {0x83, 0xF9, 0x42,                               // cmp ecx, 42h
                 0x75, 0x0E,                                     // jne
                 0x41, 0xC7, 0x40, 0x04, 0x01, 0x00, 0x00, 0x00, // mov dword ptr [r8 + 4], 1
                 0xB8, 0x01, 0x00, 0x00, 0x00,                   // mov eax, 1
                 0xC3,                                           // ret
                 0x48, 0xB8};                                    // mov rax, the system's function
#else
    Code code = {0x83, 0x7C, 0x24, 0x04, 0x42,             // cmp dword ptr [esp + 4], 42h
                 0x75, 0x13,                               // jne
                 0x8B, 0x44, 0x24, 0x0C,                   // mov eax, [esp + 12]
                 0xC7, 0x40, 0x04, 0x01, 0x00, 0x00, 0x00, // mov dword ptr [eax + 4], 1
                 0xB8, 0x01, 0x00, 0x00, 0x00,             // mov eax, 1
                 0xC2, 0x10, 0x00,                         // ret 16
                 0xB8};                                    // mov eax, the system's function
#endif
    Append(code, system);
    code.insert(code.end(), {0xFF, 0xE0}); // jmp
    void* const place =
        VirtualAllocEx(process, nullptr, code.size(), MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
    ASSERT_NE(nullptr, place);
    WriteAt(process, static_cast<BYTE*>(place), code.data(), code.size());
    WriteAt(process, slot, &place, sizeof place);
}

void ChooseScale(const Viewer& viewer, DWORD dpi) {
    BYTE* const place = FunctionOf(viewer.Process(), L"user32.dll", "GetDpiForWindow");
    ASSERT_NE(nullptr, place);
    Code code = {0xB8}; // mov eax, the dots to an inch
    Append(code, dpi);
#ifdef _WIN64
    code.insert(code.end(), {0xC3}); // ret
#else
    code.insert(code.end(), {0xC2, 0x04, 0x00});           // ret 4
#endif
    WriteAt(viewer.Process(), place, code.data(), code.size());
    RECT area{};
    GetWindowRect(viewer.Frame(), &area);
    const RemoteMemory memory(viewer.Process(), sizeof area);
    memory.Write(&area, sizeof area);
    SendMessageW(viewer.Frame(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(memory.At()));
}

TitleRecord::TitleRecord(const Viewer& viewer) : memory_(viewer.Process(), 2 * sizeof(DWORD)) {
    const HANDLE process = viewer.Process();
    const HMODULE own = LoadLibraryW(L"dwmapi.dll");
    Load(process, L"dwmapi.dll");
    BYTE* const place = FunctionOf(process, L"dwmapi.dll", "DwmSetWindowAttribute");
    if (own != nullptr) {
        FreeLibrary(own);
    }
    if (place == nullptr) {
        ADD_FAILURE() << "no dwmapi.dll";
        return;
    }
#ifdef _WIN64
    Code code = {0x48, 0xB8}; // mov rax, the memory
    Append(code, memory_.At());
    code.insert(code.end(), {0x89, 0x10,             // mov [rax], edx
                             0x45, 0x8B, 0x10,       // mov r10d, [r8]
                             0x44, 0x89, 0x50, 0x04, // mov [rax + 4], r10d
                             0x31, 0xC0,             // xor eax, eax
                             0xC3});                 // ret
#else
    Code code = {0x8B, 0x44, 0x24, 0x08,                   // mov eax, [esp + 8]
                 0xA3};                                    // mov the memory, eax
    Append(code, memory_.At());
    code.insert(code.end(), {0x8B, 0x44, 0x24, 0x0C, // mov eax, [esp + 12]
                             0x8B, 0x00,             // mov eax, [eax]
                             0xA3});                 // mov the memory + 4, eax
    Append(code, memory_.At(sizeof(DWORD)));
    code.insert(code.end(), {0x31, 0xC0,         // xor eax, eax
                             0xC2, 0x10, 0x00}); // ret 16
#endif
    WriteAt(process, place, code.data(), code.size());
}

std::array<DWORD, 2> TitleRecord::Last() const {
    std::array<DWORD, 2> last{};
    memory_.Read(last.data(), sizeof last);
    return last;
}

} // namespace viewtest
