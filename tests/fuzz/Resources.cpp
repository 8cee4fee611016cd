#include "tests/fuzz/Resources.h"

#include "tests/Wine.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <array>

namespace component_fuzz {

namespace {

/// A graphics object has the lowest number that is free, so that the highest of
/// many made at once says how many others there are.
std::size_t HighestGraphicsNumber() {
    std::array<HBRUSH, 400> brushes{};
    WORD highest = 0;
    for (HBRUSH& brush : brushes) {
        brush = CreateSolidBrush(RGB(1, 2, 3));
        highest = std::max(highest, LOWORD(brush));
    }
    for (const HBRUSH brush : brushes) {
        DeleteObject(brush);
    }
    return highest;
}

/// The same of handles, which are numbered in steps of four.
std::size_t HighestHandleNumber() {
    std::array<HANDLE, 400> events{};
    std::size_t highest = 0;
    for (HANDLE& event : events) {
        event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        highest = std::max(highest, reinterpret_cast<std::size_t>(event) / 4);
    }
    for (const HANDLE event : events) {
        CloseHandle(event);
    }
    return highest;
}

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<std::size_t*>(count);
    return TRUE;
}

BOOL CALLBACK CountWindowAndChildren(HWND window, LPARAM count) {
    EnumChildWindows(window, &CountWindow, count);
    return CountWindow(window, count);
}

} // namespace

Resources Resources::Now() {
    Resources now;
    now.heap = HeapBlocks::Now();
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    now.privateBytes = memory.PagefileUsage;
    if (tests::IsWine()) {
        now.handles = HighestHandleNumber();
        now.graphics = HighestGraphicsNumber();
    } else {
        DWORD handles = 0;
        GetProcessHandleCount(GetCurrentProcess(), &handles);
        now.handles = handles;
        now.graphics = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    }
    EnumThreadWindows(GetCurrentThreadId(), &CountWindowAndChildren, reinterpret_cast<LPARAM>(&now.windows));
    return now;
}

} // namespace component_fuzz
