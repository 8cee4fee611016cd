// Opening files again and again leaves nothing behind.

#include "tests/view/Fixture.h"

#include <psapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iostream>
#include <string>

namespace viewtest {

namespace {

/// What another program holds of the system.
struct Holdings {
    std::size_t handles = 0;
    std::size_t graphics = 0;
    std::size_t userObjects = 0;
    std::size_t windows = 0;
    std::size_t privateBytes = 0;
};

/// The highest number of many handles made at once in that program: in Wine handles get the
/// lowest number that is free, and its own count is always 0.
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
DWORD CallIn(HANDLE process, const wchar_t* dll, const char* function, DWORD argument) {
    const auto address = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(dll), function)));
    const HANDLE thread = CreateRemoteThread(
        process, nullptr, 0, address, reinterpret_cast<void*>(static_cast<UINT_PTR>(argument)), 0, nullptr);
    DWORD result = 0;
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &result);
    CloseHandle(thread);
    return result;
}

/// The same of objects that functions of a system DLL make and delete.
template <std::size_t kMany>
std::size_t HighestObject(HANDLE process, const wchar_t* dll, const char* make, DWORD argument,
                          const char* remove) {
    std::array<DWORD, kMany> objects{};
    WORD highest = 0;
    for (DWORD& object : objects) {
        object = CallIn(process, dll, make, argument);
        highest = std::max(highest, LOWORD(object));
    }
    for (const DWORD object : objects) {
        CallIn(process, dll, remove, object);
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
    const HANDLE process = viewer.Process();
    if (tests::IsWine()) {
        now.handles = HighestHandle(process);
        // Enough to fill every gap, which are not taken from the lowest on.
        constexpr std::size_t kMany = 300;
        now.graphics =
            HighestObject<kMany>(process, L"gdi32.dll", "CreateSolidBrush", RGB(1, 2, 3), "DeleteObject");
        // Windows, menus, icons and tables of keys have their numbers in common.
        now.userObjects = HighestObject<60>(process, L"user32.dll", "CreateMenu", 0, "DestroyMenu");
    } else {
        DWORD handles = 0;
        GetProcessHandleCount(process, &handles);
        now.handles = handles;
        now.graphics = GetGuiResources(process, GR_GDIOBJECTS);
        now.userObjects = GetGuiResources(process, GR_USEROBJECTS);
    }
    EnumThreadWindows(GetWindowThreadProcessId(viewer.Frame(), nullptr), &CountWindowAndChildren,
                      reinterpret_cast<LPARAM>(&now.windows));
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(process, &memory, sizeof memory);
    now.privateBytes = memory.PagefileUsage;
    return now;
}

void Print(const char* when, const Holdings& holdings) {
    std::cout << when << ": " << holdings.handles << " handles, " << holdings.graphics << " drawing objects, "
              << holdings.userObjects << " user objects, " << holdings.windows << " windows, "
              << holdings.privateBytes / 1024 << " KB\n";
}

/// What is held after something was opened again and again, and was not before.
std::string Growth(const Holdings& before, const Holdings& after) {
    // The highest number in use goes up and down by a few, however often something is opened.
    constexpr std::size_t kFew = 16;
    constexpr std::size_t kFewBytes = 4U * 1024 * 1024;
    std::string growth;
    const auto compare = [&growth](const char* what, std::size_t first, std::size_t second, std::size_t few) {
        if (second >= first + few) {
            growth += std::to_string(second - first) + " " + what + "; ";
        }
    };
    compare("handles", before.handles, after.handles, 1);
    compare("drawing objects", before.graphics, after.graphics, kFew);
    compare("user objects", before.userObjects, after.userObjects, kFew);
    compare("windows", before.windows, after.windows, 1);
    compare("bytes", before.privateBytes, after.privateBytes, kFewBytes);
    return growth;
}

class OpenOftenTest : public ViewTest {
  protected:
    /// Opens something again and again. What is made once, however late a busy machine comes
    /// to it, is not left behind: what is left behind grows in each of three runs.
    static void ExpectNothingStays(const Viewer& viewer, int warmUp, int rounds,
                                   const std::function<void()>& open) {
        for (int i = 0; i < warmUp; ++i) {
            open();
        }
        Holdings before = HoldingsOf(viewer);
        Print("before", before);
        std::string growth;
        constexpr int kRuns = 3;
        for (int run = 0; run < kRuns && !HasFailure(); ++run) {
            for (int i = 0; i < rounds && !HasFailure(); ++i) {
                open();
            }
            const Holdings after = HoldingsOf(viewer);
            Print("after ", after);
            growth = Growth(before, after);
            if (growth.empty()) {
                return;
            }
            before = after;
        }
        EXPECT_EQ("", growth) << "in the last of " << kRuns << " runs of " << rounds;
    }
};

std::wstring NameOf(const std::wstring& path) {
    return path.substr(path.find_last_of(L'\\') + 1);
}

/// The context menu of a list, and the menu that has the recent files.
void ShowMenus(const Viewer& viewer) {
    const auto list = reinterpret_cast<WPARAM>(viewer.Part(IDC_ATTRIBUTES));
    const auto show = [&viewer](UINT message, WPARAM wParam, LPARAM lParam) {
        PostMessageW(viewer.Frame(), message, wParam, lParam);
        Await("the menu", [&] { return viewer.ShownMenu() != nullptr; });
        SendMessageW(viewer.Frame(), WM_CANCELMODE, 0, 0);
        Await("the menu's end", [&] { return viewer.ShownMenu() == nullptr && !viewer.IsInMenu(); });
    };
    show(WM_CONTEXTMENU, list, -1);
    show(WM_SYSCOMMAND, SC_KEYMENU, L'f');
}

/// How often a file is opened: as TAM_SOAK_OPENINGS says, else a hundred times.
int Openings() {
    std::array<wchar_t, 16> given{};
    const DWORD length =
        GetEnvironmentVariableW(L"TAM_SOAK_OPENINGS", given.data(), static_cast<DWORD>(given.size()));
    return length > 0 && length < given.size() ? std::stoi(given.data()) : 100;
}

TEST_F(OpenOftenTest, OpenedFilesLeaveNothing) {
    struct File {
        std::wstring path;
        int attributes;
    };
    const std::wstring project = FileNamed(L"hall.project.xml");
    const std::array<File, 4> files = {{{Sample(L"channels.xml"), kAttributes},
                                        {Sample(L"oddities.xml"), 8},
                                        {benchtest::SamplesFolder() + L"device.xml", kAttributes},
                                        {project, kAttributes}}};
    Viewer viewer({files[0].path});
    AwaitAttributes(viewer, kAttributes);
    viewer.Begin(IDM_FILE_SAVE);
    viewer.NextBox().ChooseFile(project);
    Await("the project", [&] { return IsFile(project); });
    viewer.Settle();
    // The first one is open.
    for (std::size_t i = 1; i < files.size(); ++i) {
        viewer.Drop({files[i].path});
        Await(Narrow(files[i].path), [&] { return viewer.Title().starts_with(NameOf(files[i].path)); });
        AwaitAttributes(viewer, files[i].attributes);
    }
    auto open = [&, next = std::size_t{0}]() mutable {
        // The last of the recent files is the one that was open longest ago.
        viewer.Do(IDM_FILE_RECENT + static_cast<int>(files.size()) - 1);
        UpdateWindow(viewer.Frame());
        const File& file = files.at(next);
        EXPECT_TRUE(viewer.Title().starts_with(NameOf(file.path))) << Narrow(viewer.Title());
        EXPECT_EQ(file.attributes, viewer.Count(IDC_ATTRIBUTES));
        next = (next + 1) % files.size();
        if (next == 0) {
            ShowMenus(viewer);
        }
    };
    constexpr int kWarmUp = 48;
    ExpectNothingStays(viewer, kWarmUp, Openings(), open);
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
