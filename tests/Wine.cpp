#include "tests/Wine.h"

#include <windows.h>

namespace tests {

bool IsWine() {
    // Wine's own, which no Windows has.
    static const bool isWine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return isWine;
}

} // namespace tests
