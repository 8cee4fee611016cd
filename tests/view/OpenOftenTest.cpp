// Opening files again and again leaves nothing behind.

#include "tests/view/Fixture.h"

#include <psapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iostream>
#include <string>
#include <utility>

namespace viewtest {

namespace {

/// What another program holds of the system.
struct Holdings {
    std::size_t handles = 0;
    std::size_t graphics = 0;
    std::size_t windows = 0;
    std::size_t privateBytes = 0;
};

/// The highest number of many handles made at once in that program: handles get the
/// lowest number that is free, and Wine's own count is always 0.
std::size_t HighestHandle(HANDLE process) {
    std::array<HANDLE, 300> copies{};
    std::size_t highest = 0;
    for (HANDLE& copy : copies) {
        DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), process, &copy, SYNCHRONIZE, FALSE, 0);
        highest = std::max(highest, reinterpret_cast<std::size_t>(copy) / 4);
    }
    for (const HANDLE copy : copies) {
        HANDLE taken = nullptr; // Wine closes no source that is given to nobody
        DuplicateHandle(process, copy, GetCurrentProcess(), &taken, 0, FALSE,
                        DUPLICATE_CLOSE_SOURCE | DUPLICATE_SAME_ACCESS);
        CloseHandle(taken);
    }
    return highest;
}

/// Runs a function of a system DLL, which is at the same place in all programs, in that one.
DWORD CallIn(HANDLE process, const char* function, DWORD argument) {
    const auto address = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"gdi32.dll"), function)));
    const HANDLE thread = CreateRemoteThread(
        process, nullptr, 0, address, reinterpret_cast<void*>(static_cast<UINT_PTR>(argument)), 0, nullptr);
    DWORD result = 0;
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &result);
    CloseHandle(thread);
    return result;
}

/// The same of graphics objects.
std::size_t HighestGraphics(HANDLE process) {
    std::array<DWORD, 100> brushes{};
    WORD highest = 0;
    for (DWORD& brush : brushes) {
        brush = CallIn(process, "CreateSolidBrush", RGB(1, 2, 3));
        highest = std::max(highest, LOWORD(brush));
    }
    for (const DWORD brush : brushes) {
        CallIn(process, "DeleteObject", brush);
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

Holdings HoldingsOf(const Viewer& viewer) {
    Holdings now;
    now.handles = HighestHandle(viewer.Process());
    now.graphics = HighestGraphics(viewer.Process());
    EnumThreadWindows(GetWindowThreadProcessId(viewer.Frame(), nullptr), &CountWindowAndChildren,
                      reinterpret_cast<LPARAM>(&now.windows));
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(viewer.Process(), &memory, sizeof memory);
    now.privateBytes = memory.PagefileUsage;
    return now;
}

void Print(const char* when, const Holdings& holdings) {
    std::cout << when << ": " << holdings.handles << " handles, " << holdings.graphics << " drawing objects, "
              << holdings.windows << " windows, " << holdings.privateBytes / 1024 << " KB\n";
}

class OpenOftenTest : public ViewTest {
  protected:
    /// Opens something again and again; the answer is what the program had before and behind it.
    static std::pair<Holdings, Holdings> ExpectNothingStays(const Viewer& viewer, int warmUp, int rounds,
                                                            const std::function<void()>& open) {
        for (int i = 0; i < warmUp; ++i) {
            open();
        }
        const Holdings before = HoldingsOf(viewer);
        Print("before", before);
        for (int i = 0; i < rounds && !HasFailure(); ++i) {
            open();
        }
        const Holdings after = HoldingsOf(viewer);
        Print("after ", after);
        EXPECT_EQ(before.handles, after.handles);
        // The highest number in use goes up and down by a few; what stays at each opening adds up.
        EXPECT_LT(after.graphics, before.graphics + static_cast<std::size_t>(rounds) / 2);
        EXPECT_EQ(before.windows, after.windows);
        return {before, after};
    }
};

/// How often a file is opened: as TAM_SOAK_OPENINGS says, else a hundred times.
int Openings() {
    std::array<wchar_t, 16> given{};
    const DWORD length =
        GetEnvironmentVariableW(L"TAM_SOAK_OPENINGS", given.data(), static_cast<DWORD>(given.size()));
    return length > 0 && length < given.size() ? std::stoi(given.data()) : 100;
}

TEST_F(OpenOftenTest, OpenedFilesLeaveNothing) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    viewer.Drop({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    auto open = [&viewer, isFirst = false]() mutable {
        // The second of the recent files is the one that is not open.
        viewer.Do(IDM_FILE_RECENT + 1);
        UpdateWindow(viewer.Frame());
        isFirst = !isFirst;
        EXPECT_TRUE(viewer.Title().starts_with(isFirst ? L"channels.xml" : L"oddities.xml"))
            << Narrow(viewer.Title());
        EXPECT_EQ(isFirst ? kAttributes : 8, viewer.Count(IDC_ATTRIBUTES));
    };
    constexpr int kWarmUp = 50;
    const auto [before, after] = ExpectNothingStays(viewer, kWarmUp, Openings(), open);
    EXPECT_EQ(8, viewer.Count(IDC_ATTRIBUTES));
    EXPECT_LT(after.privateBytes, before.privateBytes + 4U * 1024 * 1024);
    viewer.Close();
}

TEST_F(OpenOftenTest, OpenedEditorsLeaveNothing) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    viewer.Pick(IDC_ATTRIBUTES, L"AI1_Offset");
    const auto open = [&] {
        viewer.Begin(IDM_EDIT_VALUE);
        viewer.NextBox().Press(IDCANCEL);
        viewer.Settle();
    };
    constexpr int kWarmUp = 20;
    constexpr int kRounds = 60;
    ExpectNothingStays(viewer, kWarmUp, kRounds, open);
    viewer.Close();
}

} // namespace

} // namespace viewtest
