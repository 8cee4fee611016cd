// The writing of files itself, where each step of it fails.

#include "bench/WholeFile.h"
#include "bench/Text.h"
#include "tests/bench/DeviceRun.h"
#include "tests/support/ImportPatch.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace benchtest {

namespace {

using support::ImportPatch;

// What stands in the place of the system's functions.

BOOL WINAPI FailToWrite(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

/// As a disk that fills up: the call succeeds, with less than it was given.
BOOL WINAPI WriteLess(HANDLE, LPCVOID, DWORD size, LPDWORD written, LPOVERLAPPED) {
    *written = size - 1;
    return TRUE;
}

BOOL WINAPI FailToFlush(HANDLE) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

BOOL WINAPI FailToMove(LPCWSTR, LPCWSTR, DWORD) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

/// The code that writing throws while a function of the system's is another one.
HRESULT CodeWith(const char* function, const void* replacement, const std::wstring& file) {
    const ImportPatch patch(GetModuleHandleW(nullptr), function, replacement);
    EXPECT_TRUE(patch.IsImported()) << function;
    try {
        bench::WriteWholeFile(file, "new text");
    } catch (const bench::BenchError& error) {
        EXPECT_EQ(0U, std::string(error.what()).find(Narrow(file) + " cannot be written: ")) << error.what();
        return error.Code();
    }
    return S_OK;
}

template <class F>
const void* Address(F* function) {
    return reinterpret_cast<const void*>(function);
}

std::size_t FilesLike(const std::wstring& pattern) {
    std::size_t count = 0;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            ++count;
        } while (FindNextFileW(search, &found) != FALSE);
        FindClose(search);
    }
    return count;
}

TEST(WholeFileTest, AFailureOfAnyStepLeavesTheOldFile) {
    const struct {
        const char* function;
        const void* replacement;
        DWORD error;
    } steps[] = {{"WriteFile", Address(&FailToWrite), ERROR_DISK_FULL},
                 {"WriteFile", Address(&WriteLess), ERROR_DISK_FULL},
                 {"FlushFileBuffers", Address(&FailToFlush), ERROR_DISK_FULL},
                 {"MoveFileExW", Address(&FailToMove), ERROR_ACCESS_DENIED}};
    for (const auto& step : steps) {
        const std::wstring file = WrittenFile(L"steps.txt", "old");
        EXPECT_EQ(HRESULT_FROM_WIN32(step.error), CodeWith(step.function, step.replacement, file));
        EXPECT_EQ("old", ReadFileBytes(file)) << step.function;
        EXPECT_EQ(1U, FilesLike(ScratchFolder() + L"steps.txt*")) << step.function;
    }
}

TEST(WholeFileTest, AFailureWhereThereWasNoFileLeavesNone) {
    const std::wstring file = ScratchFolder() + L"no_steps.txt";
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), CodeWith("WriteFile", Address(&FailToWrite), file));
    EXPECT_EQ(0U, FilesLike(ScratchFolder() + L"no_steps.txt*"));
}

TEST(WholeFileTest, WritesWhatItIsGiven) {
    const std::wstring file = ScratchFolder() + L"written.txt";
    DeleteFileW(file.c_str());
    const std::string bytes("a\0\r\n\xFF", 5);
    bench::WriteWholeFile(file, bytes);
    EXPECT_EQ(bytes, ReadFileBytes(file));
    bench::WriteWholeFile(file, "");
    EXPECT_EQ("", ReadFileBytes(file));
}

// What a run that was ended has left beside the file is another's: it stays.
TEST(WholeFileTest, PassesOverWhatAnotherRunLeft) {
    const std::wstring file = WrittenFile(L"again.txt", "old");
    const std::wstring left = WrittenFile(L"again.txt.1.part", "left");
    bench::WriteWholeFile(file, "new");
    EXPECT_EQ("new", ReadFileBytes(file));
    EXPECT_EQ("left", ReadFileBytes(left));
    EXPECT_EQ(2U, FilesLike(ScratchFolder() + L"again.txt*"));
    DeleteFileW(left.c_str());
}

} // namespace

} // namespace benchtest
