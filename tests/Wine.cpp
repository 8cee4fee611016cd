#include "tests/Wine.h"

#include <windows.h>

#include <cstdlib>

namespace tests {

bool IsWine() {
    return WineVersion() != 0;
}

int WineVersion() {
    static const int version = [] {
        // Wine's own, which no Windows has.
        const FARPROC entry = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
        return entry != nullptr
                   ? std::atoi(reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(entry))())
                   : 0;
    }();
    return version;
}

unsigned long WithoutConsole() {
    return GetConsoleCP() == 0 ? DETACHED_PROCESS : 0;
}

} // namespace tests
